VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmControls 
   BackColor       =   &H00FFFFFF&
   Caption         =   "Controles"
   ClientHeight    =   4950
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   9000
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   ScaleHeight     =   4950
   ScaleWidth      =   9000
   StartUpPosition =   3
   Begin Morvantix.USButton cmdTheme0 
      Height          =   420
      Left            =   180
      TabIndex        =   0
      Top             =   180
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   741
      Caption         =   "Office Theme Blue"
      BorderColor     =   &H00E2A981&
      BorderColorOver =   &H00BBF2FF&
      BorderColorDown =   &H0079C0FF&
      ForeColor       =   &H00000000&
      ForeColorOver   =   &H00000000&
      ForeColorDown   =   &H00000000&
      GradientColor1  =   &H00FFEFE3&
      GradientColorOver1=   &H00BBF2FF&
      GradientColorDown1=   &H0079C0FF&
      GradientColor2  =   &H00FFE3CE&
      GradientColorOver2=   &H00BBF2FF&
      GradientColorDown2=   &H0079C0FF&
      GradientColor3  =   &H00FFD1AE&
      GradientColorOver3=   &H0049D3FF&
      GradientColorDown3=   &H0042AEFE&
      GradientColor4  =   &H00FFDABE&
      GradientColorOver4=   &H0092E6FF&
      GradientColorDown4=   &H0070D8FE&
      Theme           =   0
   End
   Begin Morvantix.USCheckBox chkTheme0 
      Height          =   300
      Left            =   180
      TabIndex        =   1
      Top             =   720
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Marcar"
      BackStyle       =   0
      Theme           =   0
      Value           =   1
   End
   Begin Morvantix.USOptionButton optTheme0 
      Height          =   300
      Left            =   180
      TabIndex        =   2
      Top             =   1080
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Opção"
      BackStyle       =   0
      Theme           =   0
   End
   Begin Morvantix.USProgressBar prgTheme0 
      Height          =   270
      Left            =   180
      Top             =   1500
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   476
      BorderColor     =   &H00E2A981&
      GradientColor1  =   &H00FFEFE3&
      GradientColor2  =   &H00FFD1AE&
      Value           =   30
      ShowText        =   -1  'True
      Theme           =   0
   End
   Begin Morvantix.USScrollBar hsbTheme0 
      Height          =   255
      Left            =   180
      TabIndex        =   4
      Top             =   1920
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   450
      Value           =   20
      Orientation     =   1
      BackColor       =   &H00F7F7F7&
      BorderColor     =   &H00E2A981&
      ArrowColor      =   &H00925931&
      GradientColor1  =   &H00FFEFE3&
      GradientColor2  =   &H00FFD1AE&
      Theme           =   0
   End
   Begin Morvantix.USGroupBox fraTheme0 
      Height          =   1650
      Left            =   180
      Top             =   2340
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   2910
      Caption         =   "Grupo"
      ForeColor       =   &H00000000&
      BorderColor     =   &H00E2A981&
      GradientHeader1 =   16773091
      GradientHeader2 =   16769998
      Theme           =   0
      Begin Morvantix.USLabel lblTheme0 
         Height          =   180
         Left            =   150
         Top             =   450
         Width           =   1440
         _ExtentX        =   2540
         _ExtentY        =   318
         Caption         =   "Rótulo com <b>negrito</b>"
         NoHTMLCaption   =   "Rótulo com negrito"
      End
      Begin Morvantix.USScrollBar vsbTheme0 
         Height          =   1200
         Left            =   1680
         TabIndex        =   7
         Top             =   360
         Width           =   255
         _ExtentX        =   450
         _ExtentY        =   2117
         Value           =   50
         BackColor       =   &H00F7F7F7&
         BorderColor     =   &H00E2A981&
         ArrowColor      =   &H00925931&
         GradientColor1  =   &H00FFEFE3&
         GradientColor2  =   &H00FFD1AE&
         Theme           =   0
      End
   End
   Begin Morvantix.USButton cmdTheme1 
      Height          =   420
      Left            =   2430
      TabIndex        =   8
      Top             =   180
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   741
      Caption         =   "Windows Theme"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
   End
   Begin Morvantix.USCheckBox chkTheme1 
      Height          =   300
      Left            =   2430
      TabIndex        =   9
      Top             =   720
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Marcar"
      BackStyle       =   0
      Value           =   2
   End
   Begin Morvantix.USOptionButton optTheme1 
      Height          =   300
      Left            =   2430
      TabIndex        =   10
      Top             =   1080
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Opção"
      BackStyle       =   0
      Value           =   -1  'True
   End
   Begin Morvantix.USProgressBar prgTheme1 
      Height          =   270
      Left            =   2430
      Top             =   1500
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   476
      Value           =   60
      ShowText        =   -1  'True
   End
   Begin Morvantix.USScrollBar hsbTheme1 
      Height          =   255
      Left            =   2430
      TabIndex        =   12
      Top             =   1920
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   450
      Value           =   50
      Orientation     =   1
   End
   Begin Morvantix.USGroupBox fraTheme1 
      Height          =   1650
      Left            =   2430
      Top             =   2340
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   2910
      Caption         =   "Grupo"
      Begin Morvantix.USLabel lblTheme1 
         Height          =   180
         Left            =   150
         Top             =   450
         Width           =   1440
         _ExtentX        =   2540
         _ExtentY        =   318
         Caption         =   "<i>Itálico</i> e normal"
         NoHTMLCaption   =   "Itálico e normal"
      End
      Begin Morvantix.USScrollBar vsbTheme1 
         Height          =   1200
         Left            =   1680
         TabIndex        =   15
         Top             =   360
         Width           =   255
         _ExtentX        =   450
         _ExtentY        =   2117
         Value           =   50
      End
   End
   Begin Morvantix.USButton cmdTheme2 
      Height          =   420
      Left            =   4680
      TabIndex        =   16
      Top             =   180
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   741
      Caption         =   "Windows Theme Red"
      BorderColor     =   &H005050C7&
      BorderColorOver =   &H002E2E8E&
      BorderColorDown =   &H001F1F5E&
      GradientColor1  =   &H005050C7&
      GradientColorOver1=   &H002E2E8E&
      GradientColorDown1=   &H001F1F5E&
      GradientColor2  =   &H005050C7&
      GradientColorOver2=   &H002E2E8E&
      GradientColorDown2=   &H001F1F5E&
      GradientColor3  =   &H005050C7&
      GradientColorOver3=   &H002E2E8E&
      GradientColorDown3=   &H001F1F5E&
      GradientColor4  =   &H005050C7&
      GradientColorOver4=   &H002E2E8E&
      GradientColorDown4=   &H001F1F5E&
      Theme           =   4
   End
   Begin Morvantix.USCheckBox chkTheme2 
      Height          =   300
      Left            =   4680
      TabIndex        =   17
      Top             =   720
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Marcar"
      BackStyle       =   0
      Theme           =   4
   End
   Begin Morvantix.USOptionButton optTheme2 
      Height          =   300
      Left            =   4680
      TabIndex        =   18
      Top             =   1080
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   529
      Caption         =   "Opção"
      BackStyle       =   0
      Theme           =   4
   End
   Begin Morvantix.USProgressBar prgTheme2 
      Height          =   270
      Left            =   4680
      Top             =   1500
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   476
      BorderColor     =   &H005050C7&
      GradientColor1  =   &H00C8C8FF&
      GradientColor2  =   &H005050C7&
      Value           =   90
      ShowText        =   -1  'True
      Theme           =   4
   End
   Begin Morvantix.USScrollBar hsbTheme2 
      Height          =   255
      Left            =   4680
      TabIndex        =   20
      Top             =   1920
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   450
      Value           =   80
      Orientation     =   1
      BackColor       =   &H00F7F7F7&
      BorderColor     =   &H008C8CFF&
      ArrowColor      =   &H005050C7&
      GradientColor1  =   &H00DCDCFF&
      GradientColor2  =   &H00B4B4FF&
      Theme           =   4
   End
   Begin Morvantix.USGroupBox fraTheme2 
      Height          =   1650
      Left            =   4680
      Top             =   2340
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   2910
      Caption         =   "Grupo"
      BorderColor     =   &H005050C7&
      GradientHeader1 =   5263559
      GradientHeader2 =   5263559
      Theme           =   4
      Begin Morvantix.USLabel lblTheme2 
         Height          =   360
         Left            =   150
         Top             =   450
         Width           =   1440
         _ExtentX        =   2540
         _ExtentY        =   635
         Caption         =   "<c=#C00000>Vermelho</c> e <u>sublinhado</u>"
         NoHTMLCaption   =   "Vermelho e sublinhado"
      End
      Begin Morvantix.USScrollBar vsbTheme2 
         Height          =   1200
         Left            =   1680
         TabIndex        =   23
         Top             =   360
         Width           =   255
         _ExtentX        =   450
         _ExtentY        =   2117
         Value           =   50
         BackColor       =   &H00F7F7F7&
         BorderColor     =   &H008C8CFF&
         ArrowColor      =   &H005050C7&
         GradientColor1  =   &H00DCDCFF&
         GradientColor2  =   &H00B4B4FF&
         Theme           =   4
      End
   End
   Begin Morvantix.USAnimatedImage aniSpinner 
      Height          =   480
      Left            =   7200
      Top             =   300
      Width           =   480
      _ExtentX        =   847
      _ExtentY        =   847
      FileName        =   "examples/spinner.gif"
   End
   Begin Morvantix.USAnimatedImage aniSpinnerBig 
      Height          =   960
      Left            =   7050
      Top             =   1050
      Width           =   960
      _ExtentX        =   1693
      _ExtentY        =   1693
      FileName        =   "examples/spinner.gif"
      Stretch         =   -1  'True
   End
   Begin Morvantix.USStatusBar sbrStatus 
      Height          =   360
      Left            =   0
      Top             =   4500
      Width           =   9000
      _ExtentX        =   15875
      _ExtentY        =   635
      PanelCount      =   3
      Panel1Text      =   "Pronto"
      Panel1Width     =   120
      Panel2Text      =   "Morvantix"
      Panel2Alignment =   1
      Panel2AutoSize  =   -1  'True
      Panel3Text      =   "NUM"
      Panel3Width     =   60
      Panel3Alignment =   2
   End
End
Attribute VB_Name = "frmControls"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
