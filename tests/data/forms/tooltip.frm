VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmTip 
   BackColor       =   &H00FFFFFF&
   BorderStyle     =   1  'Fixed Single
   Caption         =   "Dica"
   ClientHeight    =   1500
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   3000
   ScaleHeight     =   1500
   ScaleWidth      =   3000
   StartUpPosition =   3  'Windows Default
   Begin Morvantix.USButton cmdSave 
      Height          =   450
      Left            =   180
      TabIndex        =   0
      Top             =   180
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   794
      Caption         =   "&Gravar"
      ToolTipDescription=   "Grava o cadastro"
      ToolTipIcon     =   1
      ToolTipTitle    =   "Gravar"
   End
End
Attribute VB_Name = "frmTip"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
