// The surface and the clipboard, and the file names of drops and pastes.
#include "host/DataObject.h"
#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"
#include "platform/Clipboard.h"
#include "platform/Gdi.h"

namespace mx::image {

namespace {

// Holds the clipboard open for the lifetime of one read, with no owner window.
class ClipboardLock {
 public:
  ClipboardLock() : m_open(platform::OpenClipboard(0) != 0) {}
  ~ClipboardLock() {
    if (m_open) platform::CloseClipboard();
  }
  ClipboardLock(const ClipboardLock&) = delete;
  ClipboardLock& operator=(const ClipboardLock&) = delete;
  [[nodiscard]] bool open() const { return m_open; }

 private:
  bool m_open;
};

}  // namespace

bool API32bppDIB::LoadPicture_ClipBoard() {
  using namespace platform;
  DestroyDIB();
  try {
    ClipboardLock lock;
    if (!lock.open()) return false;
    // A bitmap handle is the first choice, then the packed DIBs. Metafiles (formats 14 and 3)
    // are offered by some programs but this platform cannot play them.
    if (IsClipboardFormatAvailable(CF_BITMAP)) {
      auto data = GetClipboardData(CF_BITMAP);
      if (data && data->size() >= 4) {
        uint32_t handle = (*data)[0] | ((*data)[1] << 8) | ((*data)[2] << 16) | (uint32_t{(*data)[3]} << 24);
        if (APIBMPParser().ConvertstdPicTo32bpp(handle, *this)) return true;
      }
    }
    for (UINT format : {CF_DIB, CF_DIBV5}) {
      if (!IsClipboardFormatAvailable(format)) continue;
      auto data = GetClipboardData(format);
      if (data && APIBMPParser().LoadPackedDIB(data->data(), data->size(), *this)) return true;
    }
  } catch (...) {
  }
  DestroyDIB();
  return false;
}

bool API32bppDIB::GetDroppedFileNames(host::DataObject& DragDrop_DataObject) const {
  try {
    if (!DragDrop_DataObject.GetFormat(host::vbCFFiles)) return false;
    auto record = DragDrop_DataObject.DropList();
    if (!record) return false;
    bool wide = false;
    auto names = host::ParseDropFiles(*record, &wide);
    // A narrow drop list has nothing that the Files list lacks: it stays as it is.
    if (!names || !wide) return false;
    auto& files = DragDrop_DataObject.Files();
    files.Clear();
    for (const host::String& n : *names) files.Add(n);
    return true;
  } catch (...) {
    return false;
  }
}

int32_t API32bppDIB::GetPastedFileNames(std::vector<host::String>& outNames) const {
  outNames.clear();
  try {
    ClipboardLock lock;
    if (!lock.open()) return 0;
    auto record = platform::GetClipboardData(platform::CF_HDROP);
    if (!record) return 0;
    auto names = host::ParseDropFiles(*record);
    if (!names) return 0;
    outNames.reserve(names->size() + 1);
    outNames.emplace_back();  // index 0 is unused: the array is 1-based
    for (host::String& n : *names) outNames.push_back(std::move(n));
    return static_cast<int32_t>(names->size());
  } catch (...) {
    outNames.clear();
    return 0;
  }
}

}  // namespace mx::image
