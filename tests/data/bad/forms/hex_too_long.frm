VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   BackColor       =   &H1234567890&
End
