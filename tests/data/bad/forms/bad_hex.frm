VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   BackColor       =   &HZZ&
End
