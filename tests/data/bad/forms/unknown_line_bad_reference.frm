VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Mystery         =   Load("unknown_line_bad_reference.frx":0100)
End
