VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmGallery 
   BackColor       =   &H00FAFAFA&
   BorderStyle     =   2  'Sizable
   Caption         =   "Galeria Morvantix"
   ClientHeight    =   11400
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   16800
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   ScaleHeight     =   11400
   ScaleWidth      =   16800
   StartUpPosition =   2  'CenterScreen
   Begin Morvantix.USForm USForm1 
      Align           =   1  'Align Top
      Height          =   450
      Left            =   0
      TabIndex        =   0
      Top             =   0
      Width           =   16800
      _ExtentX        =   23283
      _ExtentY        =   794
      Caption         =   "Galeria Morvantix - todos os controles"
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
   Begin Morvantix.USButton cmdBlue 
      Height          =   450
      Left            =   120
      TabIndex        =   1
      Top             =   2370
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   794
      Caption         =   "&Office azul"
      BorderColor     =   &H00E2A981&
      BorderColorOver =   &H00BBF2FF&
      BorderColorDown =   &H0079C0FF&
      ForeColor       =   &H00000000&
      ForeColorOver   =   &H00000000&
      ForeColorDown   =   &H00000000&
      GradientColor1  =   &H00FFEFE3&
      GradientColor2  =   &H00FFE3CE&
      GradientColor3  =   &H00FFD1AE&
      GradientColor4  =   &H00FFDABE&
      GradientColorOver1 =   &H00BBF2FF&
      GradientColorOver2 =   &H00BBF2FF&
      GradientColorOver3 =   &H0049D3FF&
      GradientColorOver4 =   &H0092E6FF&
      GradientColorDown1 =   &H0079C0FF&
      GradientColorDown2 =   &H0079C0FF&
      GradientColorDown3 =   &H0042AEFE&
      GradientColorDown4 =   &H0070D8FE&
      GradientColors  =   1  'Four Colors
      Theme           =   0  'Office Theme Blue
   End
   Begin Morvantix.USButton cmdGreen 
      Height          =   450
      Left            =   120
      TabIndex        =   2
      Top             =   2910
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   794
      Caption         =   "&Windows verde"
      BorderColor     =   &H00417400&
      BorderColorOver =   &H00275C00&
      BorderColorDown =   &H00104A00&
      GradientColor1  =   &H00417400&
      GradientColor2  =   &H00417400&
      GradientColor3  =   &H00417400&
      GradientColor4  =   &H00417400&
      GradientColorOver1 =   &H00275C00&
      GradientColorOver2 =   &H00275C00&
      GradientColorOver3 =   &H00275C00&
      GradientColorOver4 =   &H00275C00&
      GradientColorDown1 =   &H00104A00&
      GradientColorDown2 =   &H00104A00&
      GradientColorDown3 =   &H00104A00&
      GradientColorDown4 =   &H00104A00&
      Theme           =   3  'Windows Theme Green
   End
   Begin Morvantix.USButton chkToggle 
      Height          =   450
      Left            =   120
      TabIndex        =   3
      Top             =   3450
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   794
      Caption         =   "Botão marcado"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      CheckBox        =   -1  'True
      Value           =   -1  'True
   End
   Begin Morvantix.USCheckBox chkNews 
      Height          =   300
      Left            =   120
      TabIndex        =   4
      Top             =   4020
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   529
      Caption         =   "Receber notícias"
      BackStyle       =   0
      Theme           =   0
      Value           =   1
   End
   Begin Morvantix.USCheckBox chkPartial 
      Height          =   300
      Left            =   120
      TabIndex        =   5
      Top             =   4350
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   529
      Caption         =   "Parcialmente marcado"
      BackStyle       =   0
      Value           =   2
   End
   Begin Morvantix.USOptionButton optPerson 
      Height          =   300
      Left            =   120
      TabIndex        =   6
      Top             =   4680
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   529
      Caption         =   "Pessoa física"
      BackStyle       =   0
      Value           =   -1  'True
   End
   Begin Morvantix.USOptionButton optCompany 
      Height          =   300
      Left            =   120
      TabIndex        =   7
      Top             =   5010
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   529
      Caption         =   "Pessoa jurídica"
      BackStyle       =   0
   End
   Begin Morvantix.USLabel lblMarkup 
      Height          =   420
      Left            =   120
      Top             =   5400
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   741
      Caption         =   "Rótulo com <b>negrito</b>, <i>itálico</i> e <c=#C00000>cor</c>"
      NoHTMLCaption   =   "Rótulo com negrito, itálico e cor"
      WordWrap        =   -1  'True
   End
   Begin Morvantix.USProgressBar prgBlue 
      Height          =   270
      Left            =   120
      Top             =   5940
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   476
      BorderColor     =   &H00E2A981&
      GradientColor1  =   &H00FFEFE3&
      GradientColor2  =   &H00FFD1AE&
      Value           =   65
      ShowText        =   -1  'True
      Theme           =   0
   End
   Begin Morvantix.USProgressBar prgRed 
      Height          =   270
      Left            =   120
      Top             =   6300
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   476
      BorderColor     =   &H005050C7&
      GradientColor1  =   &H00C8C8FF&
      GradientColor2  =   &H005050C7&
      Value           =   30
      ShowText        =   -1  'True
      Theme           =   4
   End
   Begin Morvantix.USScrollBar hsbZoom 
      Height          =   255
      Left            =   120
      TabIndex        =   8
      Top             =   6660
      Width           =   2550
      _ExtentX        =   4498
      _ExtentY        =   450
      Value           =   40
      Orientation     =   1
      BackColor       =   &H00F7F7F7&
      BorderColor     =   &H00E2A981&
      ArrowColor      =   &H00925931&
      GradientColor1  =   &H00FFEFE3&
      GradientColor2  =   &H00FFD1AE&
      Theme           =   0
   End
   Begin Morvantix.USGroupBox fraShipping 
      Height          =   2190
      Left            =   2850
      Top             =   2370
      Width           =   3000
      _ExtentX        =   5292
      _ExtentY        =   3863
      Caption         =   "Entrega"
      ForeColor       =   &H00000000&
      BorderColor     =   &H00E2A981&
      GradientHeader1 =   16773091
      GradientHeader2 =   16769998
      Theme           =   0
      Begin Morvantix.USOptionButton optMail 
         Height          =   300
         Left            =   150
         TabIndex        =   9
         Top             =   450
         Width           =   2250
         _ExtentX        =   3969
         _ExtentY        =   529
         Caption         =   "Correio"
         BackStyle       =   0
         Theme           =   0
         Value           =   -1  'True
      End
      Begin Morvantix.USOptionButton optCourier 
         Height          =   300
         Left            =   150
         TabIndex        =   10
         Top             =   810
         Width           =   2250
         _ExtentX        =   3969
         _ExtentY        =   529
         Caption         =   "Transportadora"
         BackStyle       =   0
         Theme           =   0
      End
      Begin Morvantix.USOptionButton optPickup 
         Height          =   300
         Left            =   150
         TabIndex        =   11
         Top             =   1170
         Width           =   2250
         _ExtentX        =   3969
         _ExtentY        =   529
         Caption         =   "Retirar na loja"
         BackStyle       =   0
         Theme           =   0
      End
      Begin Morvantix.USLabel lblShipping 
         Height          =   360
         Left            =   150
         Top             =   1590
         Width           =   2250
         _ExtentX        =   3969
         _ExtentY        =   635
         Caption         =   "Prazo: <b>3 dias</b>"
         NoHTMLCaption   =   "Prazo: 3 dias"
      End
      Begin Morvantix.USScrollBar vsbShipping 
         Height          =   1710
         Left            =   2580
         TabIndex        =   12
         Top             =   390
         Width           =   255
         _ExtentX        =   450
         _ExtentY        =   3016
         Value           =   30
         BackColor       =   &H00F7F7F7&
         BorderColor     =   &H00E2A981&
         ArrowColor      =   &H00925931&
         GradientColor1  =   &H00FFEFE3&
         GradientColor2  =   &H00FFD1AE&
         Theme           =   0
      End
   End
   Begin Morvantix.USTextBoxEx txtName 
      Height          =   360
      Left            =   2850
      TabIndex        =   13
      Top             =   4680
      Width           =   3000
      _ExtentX        =   5292
      _ExtentY        =   635
      Text            =   "Maria da Silva"
      Required        =   -1  'True
   End
   Begin Morvantix.USTextBoxEx txtDocument 
      Height          =   360
      Left            =   2850
      TabIndex        =   14
      Top             =   5130
      Width           =   3000
      _ExtentX        =   5292
      _ExtentY        =   635
      Mask            =   "###.###.###-##"
      MaskType        =   1
      Text            =   "123.456.789-09"
   End
   Begin Morvantix.USTextBoxEx txtPrice 
      Height          =   360
      Left            =   2850
      TabIndex        =   15
      Top             =   5580
      Width           =   3000
      _ExtentX        =   5292
      _ExtentY        =   635
      Alignment       =   1
      FormatType      =   2
      Text            =   "1234,5"
      Theme           =   3
   End
   Begin Morvantix.USAnimatedImage aniSpinner 
      Height          =   480
      Left            =   2910
      Top             =   6150
      Width           =   480
      _ExtentX        =   847
      _ExtentY        =   847
      FileName        =   "examples/spinner.gif"
   End
   Begin Morvantix.USAnimatedImage aniSpinnerBig 
      Height          =   720
      Left            =   3570
      Top             =   6030
      Width           =   720
      _ExtentX        =   1270
      _ExtentY        =   1270
      FileName        =   "examples/spinner.gif"
      Stretch         =   -1  'True
   End
   Begin Morvantix.USAlphaImage imgStar 
      Height          =   1080
      Left            =   4620
      Top             =   5880
      Width           =   1080
      _ExtentX        =   1905
      _ExtentY        =   1905
      Props           =   129
      ShadowDepth     =   3
      ShadowX         =   4
      ShadowY         =   4
      Image           =   "gallery.frx":0000
   End
   Begin Morvantix.USImageList imlIcons 
      Left            =   2250
      Top             =   6000
      _ExtentX        =   794
      _ExtentY        =   794
   End
   Begin Morvantix.USCalendar calMain 
      Height          =   4500
      Left            =   6000
      TabIndex        =   16
      Top             =   2370
      Width           =   3675
      _ExtentX        =   6482
      _ExtentY        =   7937
   End
   Begin Morvantix.USCalendarSmall calSmall 
      Height          =   3390
      Left            =   9825
      TabIndex        =   17
      Top             =   2370
      Width           =   3225
      _ExtentX        =   5689
      _ExtentY        =   5980
      Theme           =   4
      BackColor       =   &H005050C7&
      WeekStartsWith  =   2
   End
   Begin Morvantix.USLabel lblAbout 
      Height          =   960
      Left            =   9825
      Top             =   5880
      Width           =   3225
      _ExtentX        =   5689
      _ExtentY        =   1693
      Caption         =   "Controles desenhados pela própria biblioteca, em <b>sete temas</b>. A grade abaixo vem de um banco <u>SQLite</u>."
      NoHTMLCaption   =   "Controles desenhados pela própria biblioteca, em sete temas. A grade abaixo vem de um banco SQLite."
      WordWrap        =   -1  'True
   End
   Begin Morvantix.USRibbon rbnMain 
      Height          =   1800
      Left            =   0
      TabIndex        =   40
      Top             =   450
      Width           =   16800
      _ExtentX        =   29633
      _ExtentY        =   3175
      ButtonHandPointer=   -1  'True
   End
   Begin Morvantix.USComboBox cboClient 
      Height          =   345
      Left            =   13320
      TabIndex        =   41
      Top             =   2370
      Width           =   3360
      _ExtentX        =   5927
      _ExtentY        =   609
      ListForeColor   =   &H00000000&
      ListItemSelectedForeColor=   &H00000000&
      NumberItemsToShow=   8
      ListItemHeight  =   22
      Redraw          =   -1  'True
   End
   Begin Morvantix.USDatePicker dtpOrdered 
      Height          =   315
      Left            =   13320
      TabIndex        =   42
      Top             =   2850
      Width           =   3360
      _ExtentX        =   5927
      _ExtentY        =   556
      Text            =   "15/01/2024"
   End
   Begin Morvantix.USListBox lstClients 
      Height          =   3600
      Left            =   13320
      TabIndex        =   43
      Top             =   3300
      Width           =   3360
      _ExtentX        =   5927
      _ExtentY        =   6350
      ItemHeight      =   24
      ItemTextLeft    =   6
      Redraw          =   -1  'True
   End
   Begin Morvantix.USFlexGrid grdOrders 
      Height          =   3810
      Left            =   120
      TabIndex        =   18
      Top             =   7050
      Width           =   16560
      _ExtentX        =   22860
      _ExtentY        =   6720
      Caption         =   "Pedidos de 2024"
      CaptionHeight   =   24
      CheckBoxes      =   -1  'True
      ShowRowNumbers  =   -1  'True
      FreezeAtCol     =   0
      HeaderFormatString=   "Cliente;2600;4;0|Qtd;700;6;1|Preço;1200;6;1;#,##0.00|Data;1200;5;2|Pago;700;5;3|Progresso;2000;4;4|Ação;900;5;6"
   End
   Begin Morvantix.USStatusBar sbrStatus 
      Height          =   360
      Left            =   0
      Top             =   11040
      Width           =   16800
      _ExtentX        =   23283
      _ExtentY        =   635
      PanelCount      =   3
      Panel1Text      =   "Pronto"
      Panel1Width     =   120
      Panel2Text      =   "Galeria Morvantix"
      Panel2Alignment =   1
      Panel2AutoSize  =   -1  'True
      Panel3Text      =   "NUM"
      Panel3Width     =   60
      Panel3Alignment =   2
   End
End
Attribute VB_Name = "frmGallery"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
