VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmLists 
   Caption         =   "Cidades"
   ClientHeight    =   6000
   ClientWidth     =   9600
   Begin Morvantix.USListBox lstCities 
      Height          =   5760
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   4200
      _ExtentX        =   7408
      _ExtentY        =   10160
      ItemHeight      =   24
      ItemTextLeft    =   6
      Redraw          =   -1  'True
   End
   Begin Morvantix.USComboBox cboState 
      Height          =   345
      Left            =   4560
      TabIndex        =   1
      Top             =   120
      Width           =   3360
      _ExtentX        =   5927
      _ExtentY        =   609
      ListForeColor   =   &H00000000&
      ListItemSelectedForeColor=   &H00000000&
      ListBackColorEvenRows=   &H00FCFBFB&
      NumberItemsToShow=   10
      ListItemHeight  =   22
      Redraw          =   -1  'True
   End
End
