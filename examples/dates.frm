VERSION 5.00
Object = "{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0"; "Morvantix.ocx"
Begin VB.Form frmDates 
   BackColor       =   &H00FFFFFF&
   Caption         =   "Calendários"
   ClientHeight    =   9360
   ClientWidth     =   10605
   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} 
      Name            =   "Tahoma"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   StartUpPosition =   3  'Windows Default
   Begin Morvantix.USCalendar calMain 
      Height          =   4500
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   3675
      _ExtentX        =   6482
      _ExtentY        =   7937
   End
   Begin Morvantix.USCalendarSmall calSmall 
      Height          =   3390
      Left            =   3915
      TabIndex        =   1
      Top             =   120
      Width           =   3225
      _ExtentX        =   5689
      _ExtentY        =   5980
   End
   Begin Morvantix.USCalendarSmall calRed 
      Height          =   3390
      Left            =   7260
      TabIndex        =   2
      Top             =   120
      Width           =   3225
      _ExtentX        =   5689
      _ExtentY        =   5980
      Theme           =   4
      BackColor       =   &H005050C7&
      WeekStartsWith  =   2
   End
   Begin Morvantix.USCalendar calBlack 
      Height          =   4500
      Left            =   120
      TabIndex        =   3
      Top             =   4740
      Width           =   3675
      _ExtentX        =   6482
      _ExtentY        =   7937
      Theme           =   6
      BackColor       =   &H00453F38&
      ShowShortDays   =   0   'False
   End
   Begin Morvantix.USCalendarSmall calGreen 
      Height          =   3390
      Left            =   3915
      TabIndex        =   4
      Top             =   3630
      Width           =   3225
      _ExtentX        =   5689
      _ExtentY        =   5980
      Theme           =   3
      BackColor       =   &H00417400&
      ShowLastMonthDays=   0   'False
      ShowNextMonthDays=   0   'False
   End
   Begin Morvantix.USDatePicker dtpDate 
      Height          =   315
      Left            =   7260
      TabIndex        =   5
      Top             =   3630
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   556
      Text            =   "15/01/2024"
   End
   Begin Morvantix.USDatePicker dtpIso 
      Height          =   315
      Left            =   7260
      TabIndex        =   6
      Top             =   4110
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   556
      Theme           =   3
      FormatDate      =   25
      BackColorOnShowCalendar=   &H00CDFF8C&
      BorderColor     =   &H00B9EC78&
      BorderColorOver =   &H009FD478&
      Text            =   "2024-02-29"
   End
   Begin Morvantix.USDatePicker dtpList 
      Height          =   315
      Left            =   7260
      TabIndex        =   7
      Top             =   4590
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   556
      Theme           =   4
      BackColorOnShowCalendar=   &H00DCDCFF&
      Style           =   1
      GradientColor2  =   &H00D8D8F4&
      BorderColor     =   &H00C8C8FF&
      BorderColorOver =   &H00A6A6FF&
      Text            =   "31/12/2023"
   End
   Begin Morvantix.USDatePicker dtpUS 
      Height          =   315
      Left            =   7260
      TabIndex        =   8
      Top             =   5070
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   556
      Theme           =   0
      FormatDate      =   2
      ShowCorner      =   -1  'True
      AutoOpenOnChange=   -1  'True
      Text            =   "01/31/2024"
      BorderColor     =   &H00E2A981&
      BorderColorOver =   &H00BBF2FF&
      BackColorOnShowCalendar=   &H00FFFFFF&
   End
   Begin Morvantix.USDatePicker dtpOff 
      Height          =   315
      Left            =   7260
      TabIndex        =   9
      Top             =   5550
      Width           =   2400
      _ExtentX        =   4233
      _ExtentY        =   556
      Theme           =   6
      Enabled         =   0   'False
      BackColorDisabled=   &H00F0F0F0&
      Text            =   "01/05/2024"
      BackColorOnShowCalendar=   &H00D1CBC4&
      BorderColor     =   &H00BDB7B0&
      BorderColorOver =   &H00A4A099&
   End
End
Attribute VB_Name = "frmDates"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
