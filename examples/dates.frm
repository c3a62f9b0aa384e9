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
End
Attribute VB_Name = "frmDates"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
