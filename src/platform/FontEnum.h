#pragma once
// Font enumeration: the families a DC can draw with, one callback per family.
//
// The list is the scalable families fontconfig knows, under every family name a face carries
// (a condensed face is listed as "DejaVu Sans Condensed" as well as "DejaVu Sans"), plus the
// classic face names the text engine stands installed faces in for ("MS Sans Serif", "Tahoma"),
// each name once, sorted without regard to case. Every listed name is one that a LOGFONTW may
// carry and get that face back.
#include <functional>

#include "platform/LogFont.h"
#include "platform/Types.h"

namespace mx::platform {

// Character sets (lfCharSet). DEFAULT_CHARSET in a filter means "any".
constexpr BYTE ANSI_CHARSET = 0;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SYMBOL_CHARSET = 2;

// Pitch and family (lfPitchAndFamily): pitch in the low bits, family in the high nibble.
constexpr BYTE DEFAULT_PITCH = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;
constexpr BYTE FF_ROMAN = 0x10;
constexpr BYTE FF_SWISS = 0x20;
constexpr BYTE FF_MODERN = 0x30;

// Font types handed to the callback.
constexpr DWORD RASTER_FONTTYPE = 0x0001;
constexpr DWORD DEVICE_FONTTYPE = 0x0002;
constexpr DWORD TRUETYPE_FONTTYPE = 0x0004;

// Called once per family with its regular style (face name, charset, weight and italic of the
// face that the family's plain LOGFONTW selects) and the metrics of that face at the default
// height. Both pointers are valid for the call only. Returning 0 stops the enumeration.
using FONTENUMPROCW = std::function<int(const LOGFONTW* lf, const TEXTMETRICW* tm, DWORD fontType, LPARAM lParam)>;

// Lists the families that match the filter: its face name, when not empty, selects that family
// alone (compared without regard to case); its lfCharSet selects a character set unless it is
// DEFAULT_CHARSET. A null filter lists everything. flags is reserved and must be 0.
// Returns the last value the callback returned, 1 when nothing matched, and 0 for a DC that
// does not exist, a missing callback or nonzero flags.
int EnumFontFamiliesExW(HDC hdc, const LOGFONTW* filter, const FONTENUMPROCW& proc, LPARAM lParam, DWORD flags);

// The older forms: a null or empty family lists every family in any character set; a name
// lists that family alone.
int EnumFontFamiliesW(HDC hdc, const char16_t* family, const FONTENUMPROCW& proc, LPARAM lParam);
int EnumFontsW(HDC hdc, const char16_t* faceName, const FONTENUMPROCW& proc, LPARAM lParam);

}  // namespace mx::platform
