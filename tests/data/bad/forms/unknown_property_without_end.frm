VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   BeginProperty Extra {00000000-0000-0000-0000-000000000001} 
      A               =   1
End
