VERSION 5.00
Begin VB.Form frmGravadores 
   BackColor       =   &H00C0FFC0&
   BorderStyle     =   3  'Fixed Dialog
   Caption         =   "Gravadores"
   ClientHeight    =   2400
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   3600
   LinkTopic       =   "Form1"
   ScaleHeight     =   2400
   ScaleWidth      =   3600
   StartUpPosition =   1  'CenterOwner
   Begin Test.Recorder recPrimeiro 
      Height          =   450
      Left            =   120
      TabIndex        =   1
      Top             =   240
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   794
      Caption         =   "Primeiro"
      Number          =   42
   End
   Begin VB.Label lblAviso 
      Caption         =   "Aviso"
      Height          =   255
      Left            =   120
      TabIndex        =   2
      Top             =   900
      Width           =   3000
   End
   Begin Test.Recorder recSegundo 
      Height          =   450
      Index           =   3
      Left            =   1800
      TabIndex        =   0
      Tag             =   "segundo"
      Top             =   240
      Visible         =   0   'False
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   794
   End
End
Attribute VB_Name = "frmGravadores"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
