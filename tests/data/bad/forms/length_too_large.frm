VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Tag             =   "length_too_large.frx":0000
End
