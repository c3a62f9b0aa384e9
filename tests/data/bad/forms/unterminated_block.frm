VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Begin VB.Label lblA 
      Caption         =   "a"
   End
   Begin VB.Label lblB 
      Caption         =   "b"
