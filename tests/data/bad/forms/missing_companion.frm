VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Icon            =   "ausente.frx":0000
End
