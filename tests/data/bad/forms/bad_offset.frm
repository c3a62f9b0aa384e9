VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Icon            =   "bad_offset.frx":
End
