VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmChrome 
   BackColor       =   &H00F9F9F9&
   BorderStyle     =   2  'Sizable
   Caption         =   "Cadastro - Clientes"
   ClientHeight    =   4200
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   5400
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   ScaleHeight     =   4200
   ScaleWidth      =   5400
   StartUpPosition =   3  'Windows Default
   Begin Morvantix.USForm USForm1 
      Align           =   1  'Align Top
      Height          =   390
      Left            =   0
      TabIndex        =   0
      Top             =   0
      Width           =   5400
      _ExtentX        =   9525
      _ExtentY        =   688
      Caption         =   "Cadastro - Clientes"
      AllowResize     =   -1  'True
      BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   700
         Underline       =   0   'False
         Italic          =   0   'False
         Strikethrough   =   0   'False
      EndProperty
   End
   Begin Morvantix.USRibbon USRibbon1 
      Height          =   1800
      Left            =   0
      TabIndex        =   3
      Top             =   390
      Width           =   5400
      _ExtentX        =   9525
      _ExtentY        =   3175
      ButtonHandPointer=   -1  'True
      ShowButtonFocus =   -1  'True
      BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   400
         Underline       =   0   'False
         Italic          =   0   'False
         Strikethrough   =   0   'False
      EndProperty
   End
   Begin Morvantix.USButton cmdSave 
      Height          =   450
      Left            =   2400
      TabIndex        =   1
      Top             =   3540
      Width           =   1320
      _ExtentX        =   2328
      _ExtentY        =   794
      Caption         =   "&Gravar"
   End
   Begin Morvantix.USButton cmdCancel 
      Height          =   450
      Left            =   3840
      TabIndex        =   2
      Top             =   3540
      Width           =   1320
      _ExtentX        =   2328
      _ExtentY        =   794
      Caption         =   "&Cancelar"
   End
End
