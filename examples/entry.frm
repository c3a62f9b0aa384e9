VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmTextBox 
   BackColor       =   &H00FFFFFF&
   Caption         =   "Cadastro"
   ClientHeight    =   2550
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   2700
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   ScaleHeight     =   2550
   ScaleWidth      =   2700
   StartUpPosition =   3
   Begin Morvantix.USTextBoxEx txtDate 
      Height          =   375
      Left            =   150
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
      Left            =   150
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
      Left            =   150
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
      Left            =   150
      TabIndex        =   3
      Top             =   1560
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      TextCase        =   1
   End
   Begin Morvantix.USTextBoxEx txtEmail 
      Height          =   375
      Left            =   150
      TabIndex        =   4
      Top             =   2040
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   661
      Required        =   -1  'True
   End
End
