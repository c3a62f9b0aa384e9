VERSION 5.00
Object = "{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}#2.0#0"; "COMCTL.OCX"
Begin VB.Form frmIcons 
   Caption         =   "Icons"
   ClientHeight    =   3000
   ClientLeft      =   60
   ClientTop       =   345
   ClientWidth     =   4500
   ScaleHeight     =   3000
   ScaleWidth      =   4500
   StartUpPosition =   3  'Windows Default
   Begin MSComctlLib.ImageList ilSmall 
      Left            =   240
      Top             =   240
      _ExtentX        =   1005
      _ExtentY        =   1005
      BackColor       =   -2147483643
      ImageWidth      =   4
      ImageHeight     =   4
      MaskColor       =   12632256
      _Version        =   393216
      BeginProperty Images {1A2B3C4D-0001-0002-0003-000000000001} 
         NumListImages   =   4
         BeginProperty ListImage1 {1A2B3C4D-0001-0002-0003-000000000002} 
            Picture         =   "icons.frx":0000
            Key             =   "red"
            Object.Tag      =   "first ""one"""
         EndProperty
         BeginProperty ListImage2 {1A2B3C4D-0001-0002-0003-000000000002} 
            Picture         =   "icons.frx":0067
            Key             =   ""
         EndProperty
         BeginProperty ListImage3 {1A2B3C4D-0001-0002-0003-000000000002} 
            Picture         =   "icons.frx":00CB
            Key             =   "blue"
            Object.Tag      =   "3"
         EndProperty
         BeginProperty ListImage4 {1A2B3C4D-0001-0002-0003-000000000002} 
            Picture         =   "icons.frx":0131
            Key             =   "corner"
         EndProperty
      EndProperty
   End
   Begin MSComctlLib.ImageList ilSame 
      Left            =   840
      Top             =   240
      ImageWidth      =   4
      ImageHeight     =   4
      BeginProperty Images {1A2B3C4D-0001-0002-0003-000000000001} 
         NumListImages   =   1
         BeginProperty ListImage1 {1A2B3C4D-0001-0002-0003-000000000002} 
            Picture         =   "icons.frx":00CB
            Key             =   "RED"
         EndProperty
      EndProperty
   End
   Begin VB.PictureBox picHolder 
      Height          =   975
      Left            =   240
      ScaleHeight     =   915
      ScaleWidth      =   1515
      TabIndex        =   0
      Top             =   1200
      Width           =   1575
      Begin ComctlLib.ImageList ilWide 
         Left            =   120
         Top             =   120
         ImageWidth      =   8
         ImageHeight     =   4
         BeginProperty Images {1A2B3C4D-0001-0002-0003-000000000003} 
            NumListImages   =   1
            BeginProperty ListImage1 {1A2B3C4D-0001-0002-0003-000000000004} 
               Picture         =   "icons.frx":0000
               Key             =   "wide"
            EndProperty
         EndProperty
      End
   End
End
Attribute VB_Name = "frmIcons"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
