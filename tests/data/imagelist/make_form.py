#!/usr/bin/env python3
"""Writes icons.frm and icons.frx: a form with three image lists of the host's common controls,
for the image-list import test. Run from this folder; the output is committed."""
import struct
import zlib


def png(width, height, pixels):
    """pixels: rows of (r, g, b, a) tuples, top row first."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = b"".join(b"\0" + b"".join(bytes(p) for p in row) for row in pixels)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def solid(w, h, rgba):
    return png(w, h, [[rgba] * w for _ in range(h)])


frx = bytearray()


def picture(data):
    """A picture entry as the common controls keep it: the tag, a length, 16 bytes of their own,
    the image's byte count 24 bytes in, then the image."""
    offset = len(frx)
    body = bytes(16) + struct.pack("<I", len(data)) + data
    frx.extend(b"lt\0\0" + struct.pack("<I", len(body)) + body)
    return '"icons.frx":%04X' % offset


red = picture(solid(4, 4, (255, 0, 0, 255)))
green = picture(solid(4, 4, (0, 255, 0, 255)))
blue = picture(solid(4, 4, (0, 0, 255, 255)))
corner = picture(png(4, 4, [[(255, 255, 255, 255) if (x, y) == (0, 0) else (0, 0, 0, 0) for x in range(4)]
                            for y in range(4)]))

# A tag with a quote in it: the form doubles it.
first_tag = 'Object.Tag      =   "first ""one""' + '"'

form = f"""VERSION 5.00
Object = "{{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}}#2.0#0"; "COMCTL.OCX"
Begin VB.Form frmIcons 
   Caption         =   "Icons"
   ClientHeight    =   3000
   ClientLeft      =   60
   ClientTop       =   345
   ClientWidth     =   4500
   ScaleHeight     =   3000
   ScaleWidth      =   4500
   StartUpPosition =   3  'Windows Default
   Begin MSComctlLib.ImageList ilSmall 
      Left            =   240
      Top             =   240
      _ExtentX        =   1005
      _ExtentY        =   1005
      BackColor       =   -2147483643
      ImageWidth      =   4
      ImageHeight     =   4
      MaskColor       =   12632256
      _Version        =   393216
      BeginProperty Images {{1A2B3C4D-0001-0002-0003-000000000001}} 
         NumListImages   =   4
         BeginProperty ListImage1 {{1A2B3C4D-0001-0002-0003-000000000002}} 
            Picture         =   {red}
            Key             =   "red"
            {first_tag}
         EndProperty
         BeginProperty ListImage2 {{1A2B3C4D-0001-0002-0003-000000000002}} 
            Picture         =   {green}
            Key             =   ""
         EndProperty
         BeginProperty ListImage3 {{1A2B3C4D-0001-0002-0003-000000000002}} 
            Picture         =   {blue}
            Key             =   "blue"
            Object.Tag      =   "3"
         EndProperty
         BeginProperty ListImage4 {{1A2B3C4D-0001-0002-0003-000000000002}} 
            Picture         =   {corner}
            Key             =   "corner"
         EndProperty
      EndProperty
   End
   Begin MSComctlLib.ImageList ilSame 
      Left            =   840
      Top             =   240
      ImageWidth      =   4
      ImageHeight     =   4
      BeginProperty Images {{1A2B3C4D-0001-0002-0003-000000000001}} 
         NumListImages   =   1
         BeginProperty ListImage1 {{1A2B3C4D-0001-0002-0003-000000000002}} 
            Picture         =   {blue}
            Key             =   "RED"
         EndProperty
      EndProperty
   End
   Begin VB.PictureBox picHolder 
      Height          =   975
      Left            =   240
      ScaleHeight     =   915
      ScaleWidth      =   1515
      TabIndex        =   0
      Top             =   1200
      Width           =   1575
      Begin ComctlLib.ImageList ilWide 
         Left            =   120
         Top             =   120
         ImageWidth      =   8
         ImageHeight     =   4
         BeginProperty Images {{1A2B3C4D-0001-0002-0003-000000000003}} 
            NumListImages   =   1
            BeginProperty ListImage1 {{1A2B3C4D-0001-0002-0003-000000000004}} 
               Picture         =   {red}
               Key             =   "wide"
            EndProperty
         EndProperty
      End
   End
End
Attribute VB_Name = "frmIcons"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
"""

with open("icons.frm", "wb") as f:
    f.write(form.replace("\n", "\r\n").encode("cp1252"))
with open("icons.frx", "wb") as f:
    f.write(frx)
