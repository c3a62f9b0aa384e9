VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Object = "{6B7E6392-850A-101B-AFC0-4210102A8DA7}#1.3#0"; "comctl32.ocx"
Begin VB.Form frmClientes 
   BorderStyle     =   1  'Fixed Single
   Caption         =   "Clientes"
   ClientHeight    =   3000
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   4500
   Icon            =   "clientes.frx":0000
   ScaleHeight     =   3000
   ScaleWidth      =   4500
   StartUpPosition =   3  'Windows Default
   Begin Morvantix.USButton cmdOk 
      Height          =   495
      Left            =   240
      TabIndex        =   0
      ToolTipText     =   "Confirma o cadastro"
      Top             =   240
      Width           =   1455
      _ExtentX        =   2566
      _ExtentY        =   873
      BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   700
         Underline       =   0   'False
         Italic          =   -1  'True
         Strikethrough   =   0   'False
      EndProperty
      Caption         =   "&Confirmar ""já"""
      BorderColor     =   &H009A572B&
      BorderColorDown =   &H80000012&
      CheckBox        =   -1  'True
      DibPicture      =   "clientes.frx":0486
      GradientAngle   =   1.5
      Theme           =   4  'Office Theme Blue
      Value           =   0   'False
   End
   Begin VB.PictureBox picDados 
      Height          =   1695
      Left            =   240
      ScaleHeight     =   1635
      ScaleWidth      =   3975
      TabIndex        =   1
      Top             =   840
      Width           =   4035
      Begin VB.Label lblCampo 
         Caption         =   "Nome:"
         Height          =   255
         Index           =   0
         Left            =   120
         TabIndex        =   2
         Top             =   120
         Width           =   975
      End
      Begin VB.Label lblCampo 
         Caption         =   "Ação ç €"
         Height          =   255
         Index           =   1
         Left            =   120
         TabIndex        =   3
         Top             =   480
         Width           =   975
      End
      Begin Morvantix.USTextBoxEx txtObs 
         Height          =   735
         Left            =   1200
         TabIndex        =   4
         Tag             =   "obs"
         Top             =   120
         Width           =   2655
         _ExtentX        =   4683
         _ExtentY        =   1296
         Text            =   "clientes.frx":04D8
         BackColor       =   &H80000005&
         MaxLength       =   -1
         Mystery         =   SomeIdentifier
         BeginProperty DataFormat {6D835690-900B-11D0-9484-00A0C91110ED} 
            Type            =   1
            Format          =   "0,00"
            BeginProperty Inner {00000000-0000-0000-0000-000000000000} 
               Depth           =   2
            EndProperty
         EndProperty
         Locked          =   0   'False
      End
   End
   Begin Morvantix.USImageList ilIcones 
      Left            =   3600
      Top             =   2640
      _ExtentX        =   847
      _ExtentY        =   847
      Count           =   1
      1Img            =   "clientes.frx":0505
   End
   Begin ComctlLib.ImageList imlAntiga 
      Left            =   3000
      Top             =   2640
      _ExtentX        =   1005
      _ExtentY        =   1005
      BackColor       =   &H80000005&
      ImageWidth      =   4
      ImageHeight     =   4
      MaskColor       =   &H00C0C0C0&
      _Version        =   327682
      BeginProperty Images {0713E8C2-850A-101B-AFC0-4210102A8DA7} 
         NumListImages   =   1
         BeginProperty ListImage1 {0713E8C3-850A-101B-AFC0-4210102A8DA7} 
            Picture         =   "clientes.frx":060D
            Key             =   "seta"
         EndProperty
      EndProperty
   End
End
Attribute VB_Name = "frmClientes"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private Sub cmdOk_Click()
    Unload Me
End Sub
