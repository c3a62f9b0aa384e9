VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmAninhado 
   Caption         =   "Aninhado"
   ClientHeight    =   4000
   ClientWidth     =   6000
   Begin Morvantix.USGroupBox grpExterno 
      Height          =   3600
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   5700
      _ExtentX        =   10054
      _ExtentY        =   6350
      Caption         =   "Externo"
      Begin VB.PictureBox picMeio 
         Height          =   2800
         Left            =   120
         ScaleHeight     =   2740
         ScaleWidth      =   5340
         TabIndex        =   1
         Top             =   480
         Width           =   5400
         Begin Morvantix.USGroupBox grpInterno 
            Height          =   2400
            Left            =   120
            TabIndex        =   2
            Top             =   120
            Width           =   5000
            _ExtentX        =   8819
            _ExtentY        =   4233
            Caption         =   "Interno"
            Theme           =   0
            Begin Morvantix.USOptionButton optEscolha 
               Height          =   375
               Index           =   0
               Left            =   120
               TabIndex        =   3
               Top             =   360
               Width           =   2000
               _ExtentX        =   3528
               _ExtentY        =   661
               Caption         =   "Sim"
               Value           =   -1  'True
            End
            Begin Morvantix.USOptionButton optEscolha 
               Height          =   375
               Index           =   1
               Left            =   120
               TabIndex        =   4
               Top             =   840
               Visible         =   0   'False
               Width           =   2000
               _ExtentX        =   3528
               _ExtentY        =   661
               Caption         =   "Não"
            End
         End
      End
   End
End
Attribute VB_Name = "frmAninhado"
