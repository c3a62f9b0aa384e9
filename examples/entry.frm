VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmEntry 
   BackColor       =   &H00FFFFFF&
   Caption         =   "Cadastro"
   ClientHeight    =   3540
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   4200
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   ScaleHeight     =   3540
   ScaleWidth      =   4200
   StartUpPosition =   3
   Begin Morvantix.USTextBoxEx txtDate 
      Height          =   375
      Left            =   1650
      TabIndex        =   0
      Top             =   120
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      MaxLength       =   10
      Mask            =   "##/##/####"
      MaskType        =   1
   End
   Begin Morvantix.USTextBoxEx txtPrice 
      Height          =   375
      Left            =   1650
      TabIndex        =   1
      Top             =   600
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      Alignment       =   1
      FormatType      =   2
      MaxLength       =   29
      NumberOnly      =   -1  'True
   End
   Begin Morvantix.USTextBoxEx txtQty 
      Height          =   375
      Left            =   1650
      TabIndex        =   2
      Top             =   1080
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      FormatType      =   1
      MaxLength       =   9
      NumberOnly      =   -1  'True
   End
   Begin Morvantix.USTextBoxEx txtName 
      Height          =   375
      Left            =   1650
      TabIndex        =   3
      Top             =   1560
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      TextCase        =   1
   End
   Begin Morvantix.USTextBoxEx txtEmail 
      Height          =   375
      Left            =   1650
      TabIndex        =   4
      Top             =   2040
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      Required        =   -1  'True
   End
   Begin Morvantix.USTextBoxEx txtCPF 
      Height          =   375
      Left            =   1650
      TabIndex        =   5
      Top             =   2520
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      MaxLength       =   14
      Mask            =   "###.###.###-##"
      MaskType        =   1
   End
   Begin Morvantix.USTextBoxEx txtCity 
      Height          =   375
      Left            =   1650
      TabIndex        =   6
      Top             =   3000
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      ToolTipDescription=   "Digite o início do nome de uma cidade"
   End
   Begin Morvantix.USLabel lblDate 
      Height          =   255
      Left            =   150
      Top             =   195
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "Data"
   End
   Begin Morvantix.USLabel lblPrice 
      Height          =   255
      Left            =   150
      Top             =   675
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "Preço"
   End
   Begin Morvantix.USLabel lblQty 
      Height          =   255
      Left            =   150
      Top             =   1155
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "Quantidade"
   End
   Begin Morvantix.USLabel lblName 
      Height          =   255
      Left            =   150
      Top             =   1635
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "Nome"
   End
   Begin Morvantix.USLabel lblEmail 
      Height          =   255
      Left            =   150
      Top             =   2115
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "E-mail"
   End
   Begin Morvantix.USLabel lblCPF 
      Height          =   255
      Left            =   150
      Top             =   2595
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "CPF"
   End
   Begin Morvantix.USLabel lblCity 
      Height          =   255
      Left            =   150
      Top             =   3075
      Width           =   1440
      _ExtentX        =   2540
      _ExtentY        =   450
      Caption         =   "Cidade"
   End
End
