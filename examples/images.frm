VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmImages 
   BackColor       =   &H00FFFFFF&
   Caption         =   "Pictures"
   ClientHeight    =   7200
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
   ScaleHeight     =   7200
   ScaleWidth      =   9000
   StartUpPosition =   3
   Begin Morvantix.USAlphaImage imgActual 
      Height          =   1500
      Left            =   585
      TabIndex        =   0
      Top             =   180
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":0000
      Scaler          =   3
   End
   Begin Morvantix.USLabel lblActual 
      Height          =   195
      Left            =   300
      Top             =   1710
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Actual size"
      Alignment       =   2
      NoHTMLCaption   =   "Actual size"
   End
   Begin Morvantix.USAlphaImage imgScaled 
      Height          =   1500
      Left            =   2715
      TabIndex        =   2
      Top             =   180
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":02E8
   End
   Begin Morvantix.USLabel lblScaled 
      Height          =   195
      Left            =   2430
      Top             =   1710
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Scaled 32 to 100"
      Alignment       =   2
      NoHTMLCaption   =   "Scaled 32 to 100"
   End
   Begin Morvantix.USAlphaImage imgRotated 
      Height          =   1500
      Left            =   4845
      TabIndex        =   4
      Top             =   180
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":070A
      Scaler          =   3
      Angle           =   45
      Props           =   257
   End
   Begin Morvantix.USLabel lblRotated 
      Height          =   195
      Left            =   4560
      Top             =   1710
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Rotated 45°"
      Alignment       =   2
      NoHTMLCaption   =   "Rotated 45°"
   End
   Begin Morvantix.USAlphaImage imgMirrored 
      Height          =   1500
      Left            =   6975
      TabIndex        =   6
      Top             =   180
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":09F2
      Scaler          =   3
      Mirror          =   1
   End
   Begin Morvantix.USLabel lblMirrored 
      Height          =   195
      Left            =   6690
      Top             =   1710
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Mirrored"
      Alignment       =   2
      NoHTMLCaption   =   "Mirrored"
   End
   Begin Morvantix.USAlphaImage imgShadow 
      Height          =   1500
      Left            =   585
      TabIndex        =   8
      Top             =   2040
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":0CDA
      Scaler          =   3
      Props           =   129
      ShadowDepth     =   4
      ShadowX         =   5
      ShadowY         =   5
      ShadowOpacity   =   60
   End
   Begin Morvantix.USLabel lblShadow 
      Height          =   195
      Left            =   300
      Top             =   3570
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Drop shadow"
      Alignment       =   2
      NoHTMLCaption   =   "Drop shadow"
   End
   Begin Morvantix.USAlphaImage imgGrey 
      Height          =   1500
      Left            =   2715
      TabIndex        =   10
      Top             =   2040
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":14C7
      Scaler          =   3
      GrayScale       =   0
   End
   Begin Morvantix.USLabel lblGrey 
      Height          =   195
      Left            =   2430
      Top             =   3570
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Grey"
      Alignment       =   2
      NoHTMLCaption   =   "Grey"
   End
   Begin Morvantix.USAlphaImage imgMasked 
      Height          =   1500
      Left            =   4845
      TabIndex        =   12
      Top             =   2040
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":1CB4
      Scaler          =   3
      MaskUsed        =   -1  'True
      MaskSource      =   2
      Mask            =   16711935
   End
   Begin Morvantix.USLabel lblMasked 
      Height          =   195
      Left            =   4560
      Top             =   3570
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Masked corner colour"
      Alignment       =   2
      NoHTMLCaption   =   "Masked corner colour"
   End
   Begin Morvantix.USAlphaImage imgOpacity 
      Height          =   1500
      Left            =   6975
      TabIndex        =   14
      Top             =   2040
      Width           =   1500
      _ExtentX        =   2646
      _ExtentY        =   2646
      Image           =   "images.frx":1FD7
      Scaler          =   3
      Opacity         =   40
   End
   Begin Morvantix.USLabel lblOpacity 
      Height          =   195
      Left            =   6690
      Top             =   3570
      Width           =   2070
      _ExtentX        =   3651
      _ExtentY        =   344
      Caption         =   "Opacity 40"
      Alignment       =   2
      NoHTMLCaption   =   "Opacity 40"
   End
   Begin Morvantix.USButton cmdLeftOf 
      Height          =   960
      Left            =   300
      TabIndex        =   16
      Top             =   4020
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":27C4
      Caption         =   "Left of caption"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicSize         =   3
      PicSizeH        =   32
      PicSizeW        =   32
   End
   Begin Morvantix.USButton cmdRightOf 
      Height          =   960
      Left            =   3150
      TabIndex        =   17
      Top             =   4020
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":2BF3
      Caption         =   "Right of caption"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   6
      PicSize         =   3
      PicSizeH        =   32
      PicSizeW        =   32
   End
   Begin Morvantix.USButton cmdBehind 
      Height          =   960
      Left            =   6000
      TabIndex        =   18
      Top             =   4020
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":3019
      Caption         =   "Behind text"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   0
      PicSize         =   3
      PicSizeH        =   32
      PicSizeW        =   32
   End
   Begin Morvantix.USButton cmdTopOf 
      Height          =   960
      Left            =   300
      TabIndex        =   19
      Top             =   5100
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":32F1
      Caption         =   "Top of caption"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   8
      PicSize         =   2
      PicSizeH        =   24
      PicSizeW        =   24
   End
   Begin Morvantix.USButton cmdBottomOf 
      Height          =   960
      Left            =   3150
      TabIndex        =   20
      Top             =   5100
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":3717
      Caption         =   "Bottom of caption"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   2
      PicSize         =   2
      PicSizeH        =   24
      PicSizeW        =   24
   End
   Begin Morvantix.USButton cmdLeftEdge 
      Height          =   960
      Left            =   6000
      TabIndex        =   21
      Top             =   5100
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":39EF
      Caption         =   "Left edge"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   3
      PicSize         =   3
      PicSizeH        =   32
      PicSizeW        =   32
   End
   Begin Morvantix.USButton cmdRightEdge 
      Height          =   960
      Left            =   300
      TabIndex        =   22
      Top             =   6180
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":3CC7
      Caption         =   "Right edge"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   5
      PicSize         =   3
      PicSizeH        =   32
      PicSizeW        =   32
   End
   Begin Morvantix.USButton cmdTopEdge 
      Height          =   960
      Left            =   3150
      TabIndex        =   23
      Top             =   6180
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":40F6
      Caption         =   "Top edge"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   7
      PicSize         =   1
   End
   Begin Morvantix.USButton cmdBottomEdge 
      Height          =   960
      Left            =   6000
      TabIndex        =   24
      Top             =   6180
      Width           =   2700
      _ExtentX        =   4763
      _ExtentY        =   1693
      DibPicture      =   "images.frx":4525
      Caption         =   "Bottom edge"
      BorderColorOver =   &H007B3E00&
      BorderColorDown =   &H00501A00&
      PicAlign        =   1
      PicSize         =   1
   End
End
Attribute VB_Name = "frmImages"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
