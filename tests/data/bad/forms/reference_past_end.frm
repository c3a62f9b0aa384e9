VERSION 5.00
Begin VB.Form frmRuim 
   Caption         =   "Ruim"
   Caption2        =   "reference_past_end.frx":0000
   Icon            =   "reference_past_end.frx":0040
End
