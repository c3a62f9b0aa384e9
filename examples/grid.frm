VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmGrid 
   Caption         =   "Pedidos"
   ClientHeight    =   6000
   ClientWidth     =   9600
   Begin Morvantix.USFlexGrid grdOrders 
      Height          =   5760
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   9360
      _ExtentX        =   16510
      _ExtentY        =   10160
      Caption         =   "Pedidos de 2024"
      CaptionHeight   =   24
      CheckBoxes      =   -1  'True
      ShowRowNumbers  =   -1  'True
      FreezeAtCol     =   0
      HeaderFormatString=   "Cliente;2000;4;0|Qtd;700;6;1|Preço;1000;6;1;#,##0.00|Data;1100;5;2|Pago;600;5;3|Progresso;1400;4;4|Ação;800;5;6|Cliente (cópia);2000;4;0"
   End
End
