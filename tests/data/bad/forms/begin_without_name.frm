VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Begin Morvantix.USButton
   End
End
