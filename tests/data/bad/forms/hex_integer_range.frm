VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   MousePointer    =   &H12345
End
