VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   ClientHeight    =   1.2.3
End
