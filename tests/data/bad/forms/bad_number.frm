VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   ClientHeight    =   12x4
End
