#pragma once
// Basic types of the windowing and drawing system. Names and widths follow the classic
// desktop API that the controls are written against, so that message packing and structure
// layouts read the same as everywhere else in the library.
#include <cstdint>

namespace mx::platform {

using BOOL = int32_t;
using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using LONG = int32_t;
using UINT = uint32_t;
using INT = int32_t;
using UINT_PTR = uintptr_t;
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using COLORREF = uint32_t;  // 0x00BBGGRR

constexpr BOOL TRUE = 1;
constexpr BOOL FALSE = 0;

// Every handle is a 32-bit value issued by a typed handle table (HandleTable.h). The type is
// encoded in the value, so a handle of the wrong kind or a stale one is refused, never followed.
using HANDLE = uint32_t;
using HWND = HANDLE;
using HDC = HANDLE;
using HGDIOBJ = HANDLE;
using HBITMAP = HANDLE;
using HPEN = HANDLE;
using HBRUSH = HANDLE;
using HFONT = HANDLE;
using HRGN = HANDLE;
using HICON = HANDLE;
using HCURSOR = HANDLE;
using HHOOK = HANDLE;
using WNDPROC = HANDLE;  // a window procedure is a handle into the procedure table

struct POINT {
  LONG x = 0, y = 0;
  friend bool operator==(const POINT&, const POINT&) = default;
};

struct SIZE {
  LONG cx = 0, cy = 0;
  friend bool operator==(const SIZE&, const SIZE&) = default;
};

struct RECT {
  LONG left = 0, top = 0, right = 0, bottom = 0;
  [[nodiscard]] LONG width() const { return right - left; }
  [[nodiscard]] LONG height() const { return bottom - top; }
  [[nodiscard]] bool empty() const { return right <= left || bottom <= top; }
  friend bool operator==(const RECT&, const RECT&) = default;
};

constexpr COLORREF RGB(int r, int g, int b) {
  return static_cast<COLORREF>((r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16));
}
constexpr BYTE GetRValue(COLORREF c) { return static_cast<BYTE>(c & 0xFF); }
constexpr BYTE GetGValue(COLORREF c) { return static_cast<BYTE>((c >> 8) & 0xFF); }
constexpr BYTE GetBValue(COLORREF c) { return static_cast<BYTE>((c >> 16) & 0xFF); }

constexpr WORD LOWORD(uintptr_t v) { return static_cast<WORD>(v & 0xFFFF); }
constexpr WORD HIWORD(uintptr_t v) { return static_cast<WORD>((v >> 16) & 0xFFFF); }
// Signed coordinates packed in an LPARAM, as mouse messages carry them.
constexpr int GET_X_LPARAM(LPARAM v) { return static_cast<int16_t>(v & 0xFFFF); }
constexpr int GET_Y_LPARAM(LPARAM v) { return static_cast<int16_t>((v >> 16) & 0xFFFF); }
constexpr LPARAM MAKELPARAM(int lo, int hi) {
  return static_cast<LPARAM>(static_cast<uint32_t>((lo & 0xFFFF) | ((hi & 0xFFFF) << 16)));
}
constexpr WPARAM MAKEWPARAM(int lo, int hi) {
  return static_cast<WPARAM>(static_cast<uint32_t>((lo & 0xFFFF) | ((hi & 0xFFFF) << 16)));
}

}  // namespace mx::platform
