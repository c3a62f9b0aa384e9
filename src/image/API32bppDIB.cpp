// Lifecycle, device context and properties of the image surface.
#include "image/API32bppDIB.h"

#include "image/APIGDIPlus.h"
#include "image/ZlibBinding.h"
#include "platform/Gdi.h"

namespace mx::image {

using namespace mx::platform;

namespace {

// The system-codec binding is the first choice for loading and scaling where it exists. It
// answers "unusable" unless the process switched it on, so the library's own engines run.
bool systemCodecUsable() { return APIGDIPlus::isGDIplusOk(); }

// This platform stands in for the NT family at major version 5 or later: AlphaBlend, halftone
// stretching and the NT-only paths are all available.
int32_t versionCaps() { return capAlphaBlend | capNT5 | capNT; }

}  // namespace

API32bppDIB::API32bppDIB() {
  m_systemCaps = versionCaps();
  isGDIplusEnabled(true);
  if (isGDIplusEnabled()) m_highQuality = true;
  m_imageType = imgError;
}

API32bppDIB::~API32bppDIB() { DestroyDIB(); }

void API32bppDIB::ManageOwnDC(bool value) {
  m_manageOwnDC = value;
  if (!value) {
    if (m_imageDC) {
      if (m_prevBitmap) SelectObject(m_imageDC, m_prevBitmap);
      m_prevBitmap = 0;
      DeleteDC(m_imageDC);
      m_imageDC = 0;
    }
  } else if (m_handle && !m_imageDC) {
    // Created but left empty: the bitmap is selected only when someone draws with it.
    m_imageDC = CreateCompatibleDC(0);
  }
}

void API32bppDIB::isAlphaBlendFriendly(bool value) {
  if (!value) {
    m_systemCaps &= ~capAlphaBlend;
  } else if (m_systemCaps & (capNT5 | capWin98)) {
    m_systemCaps |= capAlphaBlend;
  }
}

void API32bppDIB::isGDIplusEnabled(bool value) {
  if (value == isGDIplusEnabled()) return;
  m_systemCaps &= ~capGDIplus;
  if (value && !(m_systemCaps & capNoGDIplus) && systemCodecUsable()) m_systemCaps |= capGDIplus;
}

void API32bppDIB::gdiToken(int32_t value) { m_gdiToken = value; }

void API32bppDIB::KeepGDIplusActive(bool value) { m_keepGDIplus = value && isGDIplusEnabled(); }

bool API32bppDIB::isZlibEnabled() const { return zlib::ProbeCrc32(); }

bool API32bppDIB::InitializeDIB(int32_t Width, int32_t Height) {
  DestroyDIB();
  if (Width < 0 || Height == 0) return false;
  int64_t h = Height < 0 ? -static_cast<int64_t>(Height) : Height;
  // The size in bytes must fit a Long, as the classic header's biSizeImage does.
  int64_t bytes = h * Width * 4;
  if (bytes > INT32_MAX) return false;

  BITMAPINFO info{};
  info.bmiHeader.biWidth = Width;
  info.bmiHeader.biHeight = static_cast<LONG>(h);  // positive: bottom-up rows
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  info.bmiHeader.biSizeImage = static_cast<DWORD>(bytes);
  void* bits = nullptr;
  // The platform's sections do not depend on the DC they are made against, so none is opened.
  HBITMAP bmp = CreateDIBSection(0, &info, DIB_RGB_COLORS, &bits, 0, 0);
  if (!bmp || !bits) {
    if (bmp) DeleteObject(bmp);
    return false;
  }
  m_handle = bmp;
  m_bits = static_cast<uint8_t*>(bits);
  if (m_manageOwnDC && !m_imageDC) m_imageDC = CreateCompatibleDC(0);
  m_width = Width;
  m_height = static_cast<int32_t>(h);
  EraseDIB();
  return true;
}

void API32bppDIB::DestroyDIB() {
  if (m_imageDC) {
    if (m_prevBitmap) SelectObject(m_imageDC, m_prevBitmap);
    DeleteDC(m_imageDC);
    m_imageDC = 0;
  }
  if (m_handle) {
    DeleteObject(m_handle);
    m_original.clear();
    m_original.shrink_to_fit();
  }
  m_width = m_height = 0;
  m_handle = 0;
  m_bits = nullptr;
  m_prevBitmap = 0;
  m_alpha = AlphaNone;
  m_imageType = imgError;
}

void API32bppDIB::EraseDIB() {
  if (!m_handle) return;
  std::fill_n(m_bits, static_cast<size_t>(m_width) * m_height * 4, uint8_t{0});
  m_imageType = imgNone;
  m_alpha = AlphaSimple;
}

HDC API32bppDIB::LoadDIBinDC(bool bSelect) {
  if (bSelect) {
    if (!m_handle) return 0;
    if (!m_imageDC) m_imageDC = CreateCompatibleDC(0);
    if (!m_imageDC) return 0;
    if (!m_prevBitmap) m_prevBitmap = SelectObject(m_imageDC, m_handle);
    return m_imageDC;
  }
  if (m_imageDC) {
    if (m_prevBitmap) SelectObject(m_imageDC, m_prevBitmap);
    m_prevBitmap = 0;
    if (!m_manageOwnDC) {
      DeleteDC(m_imageDC);
      m_imageDC = 0;
    }
  }
  return 0;
}

void API32bppDIB::SwapDIBs(API32bppDIB& other) {
  if (&other == this) return;
  bool wasSelected = m_prevBitmap != 0;
  bool otherWasSelected = other.m_prevBitmap != 0;
  // A bitmap cannot change owners while it sits in a DC.
  if (wasSelected) LoadDIBinDC(false);
  if (otherWasSelected) other.LoadDIBinDC(false);
  std::swap(m_handle, other.m_handle);
  std::swap(m_bits, other.m_bits);
  std::swap(m_width, other.m_width);
  std::swap(m_height, other.m_height);
  std::swap(m_imageType, other.m_imageType);
  std::swap(m_alpha, other.m_alpha);
  std::swap(m_original, other.m_original);
  // Cached system-codec sessions are tied to the pixels they were opened for.
  m_keepGDIplus = false;
  other.m_keepGDIplus = false;
  if (wasSelected) LoadDIBinDC(true);
  if (otherWasSelected) other.LoadDIBinDC(true);
}

int32_t API32bppDIB::CreateGDIplusToken() { return APIGDIPlus::StartSession(); }

bool API32bppDIB::DestroyGDIplusToken(int32_t token) { return APIGDIPlus::EndSession(token); }

bool API32bppDIB::GetOrginalFormat(std::vector<uint8_t>& outBytes) const {
  outBytes = m_original;
  return !m_original.empty();
}

}  // namespace mx::image
