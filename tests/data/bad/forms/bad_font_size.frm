VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Size            =   0
   EndProperty
End
