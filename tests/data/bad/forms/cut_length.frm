VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Tag             =   "cut_length.frx":0006
End
