#pragma once
// Font descriptions as the classic API passes them. A font object stores its LOGFONTW; the text
// engine turns one into a face and a pixel size when it first draws with it.
#include "platform/Types.h"

namespace mx::platform {

constexpr int LF_FACESIZE = 32;

struct LOGFONTW {
  LONG lfHeight = 0;  // negative: character height in pixels; positive: cell height
  LONG lfWidth = 0;
  LONG lfEscapement = 0;
  LONG lfOrientation = 0;
  LONG lfWeight = 400;  // FW_NORMAL; 700 is bold
  BYTE lfItalic = 0;
  BYTE lfUnderline = 0;
  BYTE lfStrikeOut = 0;
  BYTE lfCharSet = 0;
  BYTE lfOutPrecision = 0;
  BYTE lfClipPrecision = 0;
  BYTE lfQuality = 0;
  BYTE lfPitchAndFamily = 0;
  char16_t lfFaceName[LF_FACESIZE] = {};
};

struct TEXTMETRICW {
  LONG tmHeight = 0;
  LONG tmAscent = 0;
  LONG tmDescent = 0;
  LONG tmInternalLeading = 0;
  LONG tmExternalLeading = 0;
  LONG tmAveCharWidth = 0;
  LONG tmMaxCharWidth = 0;
  LONG tmWeight = 0;
  LONG tmOverhang = 0;
  LONG tmDigitizedAspectX = 96;
  LONG tmDigitizedAspectY = 96;
  char16_t tmFirstChar = 0x20;
  char16_t tmLastChar = 0xFFFC;
  char16_t tmDefaultChar = 0x20;
  char16_t tmBreakChar = 0x20;
  BYTE tmItalic = 0;
  BYTE tmUnderlined = 0;
  BYTE tmStruckOut = 0;
  BYTE tmPitchAndFamily = 0;
  BYTE tmCharSet = 0;
};

}  // namespace mx::platform
