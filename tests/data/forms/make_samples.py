#!/usr/bin/env python3
"""Writes the sample form files of the form-file tests (good ones here, damaged ones under
../bad/forms). The good ones are canonical: reading and writing one back must give the same
bytes. Run from anywhere; the files land beside this script."""
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
BAD = os.path.join(HERE, "..", "bad", "forms")


def png(width, height, rgba):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)
    rows = b"".join(b"\0" + bytes(rgba) * width for _ in range(height))
    ihdr = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def ico(size):
    # One 32-bit image: info header with doubled height, pixels, then the AND mask.
    pixels = bytes([0x2B, 0x57, 0x9A, 0xFF]) * (size * size)
    mask = b"\0" * (((size + 31) // 32) * 4 * size)
    info = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0)
    image = info + pixels + mask
    return struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), 22) + image


def bmp(width, height):
    row = (width * 3 + 3) & ~3
    data = b"".join(bytes([0, 0x80, 0xFF] * width).ljust(row, b"\0") for _ in range(height))
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    return b"BM" + struct.pack("<IHHI", 14 + 40 + len(data), 0, 0, 54) + info + data


class Frx:
    def __init__(self):
        self.data = b""

    def picture(self, payload):
        offset = len(self.data)
        self.data += b"lt\0\0" + struct.pack("<I", len(payload)) + payload
        return offset

    def blob(self, payload):
        offset = len(self.data)
        self.data += struct.pack("<I", len(payload)) + payload
        return offset


def write(folder, name, text, frx=None):
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "wb") as f:
        f.write(text.replace("\n", "\r\n").encode("cp1252"))
    if frx is not None:
        base = os.path.splitext(name)[0]
        ext = ".ctx" if name.endswith(".ctl") else ".frx"
        with open(os.path.join(folder, base + ext), "wb") as f:
            f.write(frx)


def clientes():
    frx = Frx()
    icon = frx.picture(ico(16))
    dib = frx.picture(png(2, 2, (0x2B, 0x57, 0x9A, 0x80)))
    notes = frx.blob("Primeira linha\r\nSegunda linha: Ação ç €\r\n".encode("cp1252"))
    strip = frx.blob(bytes(range(256)) + b"LIVL")
    # A common-controls image list entry: 16 bytes of its own header, the image's byte count,
    # then the image.
    old = bmp(4, 4)
    listimage = frx.picture(b"\x01\x02\x03\x04" * 4 + struct.pack("<I", len(old)) + old)
    text = f'''VERSION 5.00
Object = "{{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}}#1.0#0"; "Morvantix.ocx"
Object = "{{6B7E6392-850A-101B-AFC0-4210102A8DA7}}#1.3#0"; "comctl32.ocx"
Begin VB.Form frmClientes 
   BorderStyle     =   1  'Fixed Single
   Caption         =   "Clientes"
   ClientHeight    =   3000
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   4500
   Icon            =   "clientes.frx":{icon:04X}
   ScaleHeight     =   3000
   ScaleWidth      =   4500
   StartUpPosition =   3  'Windows Default
   Begin Morvantix.USButton cmdOk 
      Height          =   495
      Left            =   240
      TabIndex        =   0
      ToolTipText     =   "Confirma o cadastro"
      Top             =   240
      Width           =   1455
      _ExtentX        =   2566
      _ExtentY        =   873
      BeginProperty Font {{0BE35203-8F91-11CE-9DE3-00AA004BB851}} 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   700
         Underline       =   0   'False
         Italic          =   -1  'True
         Strikethrough   =   0   'False
      EndProperty
      Caption         =   "&Confirmar ""já"""
      BorderColor     =   &H009A572B&
      BorderColorDown =   &H80000012&
      CheckBox        =   -1  'True
      DibPicture      =   "clientes.frx":{dib:04X}
      GradientAngle   =   1.5
      Theme           =   4  'Office Theme Blue
      Value           =   0   'False
   End
   Begin VB.PictureBox picDados 
      Height          =   1695
      Left            =   240
      ScaleHeight     =   1635
      ScaleWidth      =   3975
      TabIndex        =   1
      Top             =   840
      Width           =   4035
      Begin VB.Label lblCampo 
         Caption         =   "Nome:"
         Height          =   255
         Index           =   0
         Left            =   120
         TabIndex        =   2
         Top             =   120
         Width           =   975
      End
      Begin VB.Label lblCampo 
         Caption         =   "Ação ç €"
         Height          =   255
         Index           =   1
         Left            =   120
         TabIndex        =   3
         Top             =   480
         Width           =   975
      End
      Begin Morvantix.USTextBoxEx txtObs 
         Height          =   735
         Left            =   1200
         TabIndex        =   4
         Tag             =   "obs"
         Top             =   120
         Width           =   2655
         _ExtentX        =   4683
         _ExtentY        =   1296
         Text            =   "clientes.frx":{notes:04X}
         BackColor       =   &H80000005&
         MaxLength       =   -1
         Mystery         =   SomeIdentifier
         BeginProperty DataFormat {{6D835690-900B-11D0-9484-00A0C91110ED}} 
            Type            =   1
            Format          =   "0,00"
            BeginProperty Inner {{00000000-0000-0000-0000-000000000000}} 
               Depth           =   2
            EndProperty
         EndProperty
         Locked          =   0   'False
      End
   End
   Begin Morvantix.USImageList ilIcones 
      Left            =   3600
      Top             =   2640
      _ExtentX        =   847
      _ExtentY        =   847
      Count           =   1
      1Img            =   "clientes.frx":{strip:04X}
   End
   Begin ComctlLib.ImageList imlAntiga 
      Left            =   3000
      Top             =   2640
      _ExtentX        =   1005
      _ExtentY        =   1005
      BackColor       =   &H80000005&
      ImageWidth      =   4
      ImageHeight     =   4
      MaskColor       =   &H00C0C0C0&
      _Version        =   327682
      BeginProperty Images {{0713E8C2-850A-101B-AFC0-4210102A8DA7}} 
         NumListImages   =   1
         BeginProperty ListImage1 {{0713E8C3-850A-101B-AFC0-4210102A8DA7}} 
            Picture         =   "clientes.frx":{listimage:04X}
            Key             =   "seta"
         EndProperty
      EndProperty
   End
End
Attribute VB_Name = "frmClientes"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private Sub cmdOk_Click()
    Unload Me
End Sub
'''
    write(HERE, "clientes.frm", text, frx.data)


def painel():
    frx = Frx()
    toolbox = frx.picture(bmp(16, 15))
    text = f'''VERSION 5.00
Begin VB.UserControl ucPainel 
   BackStyle       =   0  'Transparent
   ClientHeight    =   3600
   ClientLeft      =   0
   ClientTop       =   0
   ClientWidth     =   4800
   BeginProperty Font {{0BE35203-8F91-11CE-9DE3-00AA004BB851}} 
      Name            =   "Segoe UI"
      Size            =   9
      Charset         =   0
      Weight          =   400
      Underline       =   -1  'True
      Italic          =   0   'False
      Strikethrough   =   -1  'True
   EndProperty
   ScaleHeight     =   240
   ScaleMode       =   3  'Pixel
   ScaleWidth      =   320
   ToolboxBitmap   =   "painel.ctx":{toolbox:04X}
   Begin VB.Timer tmrPulso 
      Enabled         =   0   'False
      Interval        =   100
      Left            =   0
      Top             =   0
   End
End
Attribute VB_Name = "ucPainel"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = True
Attribute VB_PredeclaredId = False
Attribute VB_Exposed = True
'''
    write(HERE, "painel.ctl", text, frx.data)


def aninhado():
    # Containers four deep and a control array inside the deepest; no companion file.
    text = '''VERSION 5.00
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
'''
    write(HERE, "aninhado.frm", text)


def bad():
    head = 'VERSION 5.00\nBegin VB.Form frmRuim \n   Caption         =   "Ruim"\n'
    cases = {
        "unterminated_block.frm": head + '   Begin VB.Label lblA \n      Caption         =   "a"\n   End\n   Begin VB.Label lblB \n      Caption         =   "b"\n',
        "bad_number.frm": head + '   ClientHeight    =   12x4\nEnd\n',
        "bad_decimal.frm": head + '   ClientHeight    =   1.2.3\nEnd\n',
        "bad_hex.frm": head + '   BackColor       =   &HZZ&\nEnd\n',
        "hex_integer_range.frm": head + '   MousePointer    =   &H12345\nEnd\n',
        "hex_too_long.frm": head + '   BackColor       =   &H1234567890&\nEnd\n',
        "unterminated_string.frm": head + '   Tag             =   "sem fim\nEnd\n',
        "text_after_value.frm": head + '   Tag             =   "a" b\nEnd\n',
        "font_without_end.frm": head + '   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} \n      Name            =   "Tahoma"\nEnd\n',
        "unknown_property_without_end.frm": head + '   BeginProperty Extra {00000000-0000-0000-0000-000000000001} \n      A               =   1\nEnd\n',
        "stray_endproperty.frm": head + '   EndProperty\nEnd\n',
        "bad_font_size.frm": head + '   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} \n      Size            =   0\n   EndProperty\nEnd\n',
        "begin_without_name.frm": head + '   Begin Morvantix.USButton\n   End\nEnd\n',
        "begin_without_class.frm": head + '   Begin USButton cmdA \n   End\nEnd\n',
        "no_begin.frm": 'VERSION 5.00\nAttribute VB_Name = "x"\n',
        "missing_companion.frm": head + '   Icon            =   "ausente.frx":0000\nEnd\n',
        "bad_offset.frm": head + '   Icon            =   "bad_offset.frx":\nEnd\n',
        "reference_past_end.frm": head + '   Caption2        =   "reference_past_end.frx":0000\n   Icon            =   "reference_past_end.frx":0040\nEnd\n',
        "length_too_large.frm": head + '   Tag             =   "length_too_large.frx":0000\nEnd\n',
        "picture_too_large.frm": head + '   Icon            =   "picture_too_large.frx":0000\nEnd\n',
        "cut_length.frm": head + '   Tag             =   "cut_length.frx":0006\nEnd\n',
        "unknown_line_bad_reference.frm": head + '   Mystery         =   Load("unknown_line_bad_reference.frx":0100)\nEnd\n',
    }
    companions = {
        "reference_past_end.frx": struct.pack("<I", 4) + b"abcd",
        "length_too_large.frx": struct.pack("<I", 1000) + b"short",
        "picture_too_large.frx": b"lt\0\0" + struct.pack("<I", 1 << 30) + b"\x89PNG",
        "cut_length.frx": struct.pack("<I", 2) + b"ab" + b"\x01",
        "unknown_line_bad_reference.frx": struct.pack("<I", 0),
        "bad_offset.frx": struct.pack("<I", 0),
    }
    for name, text in cases.items():
        write(BAD, name, text)
    for name, data in companions.items():
        with open(os.path.join(BAD, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    clientes()
    painel()
    aninhado()
    bad()
