#include "platform/Clipboard.h"

#include <algorithm>
#include <map>
#include <mutex>

#include "platform/Backend.h"
#include "platform/Window.h"

namespace mx::platform {

namespace {

struct ClipboardState {
  std::mutex mutex;
  bool open = false;
  HWND opener = 0;
  HWND owner = 0;
  std::map<UINT, std::vector<uint8_t>> data;  // ordered by format number
  std::map<std::u16string, UINT> names;
  UINT nextName = 0xC000;
  // With a real back end: the text last exchanged with the system clipboard, and whether our
  // data changed since the clipboard was opened.
  std::u16string mirrored;
  bool changed = false;
};

// The clipboard is the process's, as on the classic desktop, not the thread's.
ClipboardState& Clip() {
  static ClipboardState state;
  return state;
}

std::vector<uint8_t> Utf16Bytes(std::u16string_view text) {
  std::vector<uint8_t> out((text.size() + 1) * 2, 0);
  for (size_t i = 0; i < text.size(); ++i) {
    out[2 * i] = static_cast<uint8_t>(text[i] & 0xFF);
    out[2 * i + 1] = static_cast<uint8_t>(text[i] >> 8);
  }
  return out;
}

// Text up to the first zero, or the whole buffer when there is none.
std::u16string TextFromUtf16(const std::vector<uint8_t>& bytes) {
  std::u16string s;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char16_t c = static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8));
    if (!c) break;
    s.push_back(c);
  }
  return s;
}

std::u16string TextFromLatin1(const std::vector<uint8_t>& bytes) {
  std::u16string s;
  for (uint8_t b : bytes) {
    if (!b) break;
    s.push_back(static_cast<char16_t>(b));
  }
  return s;
}

std::vector<uint8_t> Latin1Bytes(std::u16string_view text) {
  std::vector<uint8_t> out;
  out.reserve(text.size() + 1);
  for (char16_t c : text) out.push_back(c < 256 ? static_cast<uint8_t>(c) : static_cast<uint8_t>('?'));
  out.push_back(0);
  return out;
}

// Format lookup with the text formats standing in for each other.
std::optional<std::vector<uint8_t>> Lookup(ClipboardState& c, UINT format) {
  auto it = c.data.find(format);
  if (it != c.data.end()) return it->second;
  if (format == CF_UNICODETEXT) {
    auto t = c.data.find(CF_TEXT);
    if (t != c.data.end()) return Utf16Bytes(TextFromLatin1(t->second));
  } else if (format == CF_TEXT) {
    auto u = c.data.find(CF_UNICODETEXT);
    if (u != c.data.end()) return Latin1Bytes(TextFromUtf16(u->second));
  }
  return std::nullopt;
}

// Another program may have copied since we last looked: its text replaces our data.
void PullSystemText(ClipboardState& c) {
  Backend* b = ActiveBackend();
  if (!b) return;
  std::optional<std::u16string> text = b->ClipboardText();
  if (!text || *text == c.mirrored) return;
  c.data.clear();
  c.data[CF_UNICODETEXT] = Utf16Bytes(*text);
  c.owner = 0;
  c.mirrored = std::move(*text);
}

bool Available(ClipboardState& c, UINT format) {
  if (c.data.count(format)) return true;
  if (format == CF_UNICODETEXT) return c.data.count(CF_TEXT) > 0;
  if (format == CF_TEXT) return c.data.count(CF_UNICODETEXT) > 0;
  return false;
}

}  // namespace

BOOL OpenClipboard(HWND owner) {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  if (c.open) return FALSE;
  if (owner && !IsWindow(owner)) return FALSE;
  PullSystemText(c);
  c.open = true;
  c.changed = false;
  c.opener = owner;
  return TRUE;
}

BOOL CloseClipboard() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  if (!c.open) return FALSE;
  c.open = false;
  c.opener = 0;
  if (Backend* b = ActiveBackend(); b && c.changed) {
    auto bytes = Lookup(c, CF_UNICODETEXT);
    c.mirrored = bytes ? TextFromUtf16(*bytes) : std::u16string();
    b->PublishClipboardText(c.mirrored);
  }
  return TRUE;
}

BOOL EmptyClipboard() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  if (!c.open) return FALSE;
  c.data.clear();
  c.owner = c.opener;
  c.changed = true;
  return TRUE;
}

BOOL SetClipboardData(UINT format, std::vector<uint8_t> data) {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  if (!c.open || format == 0) return FALSE;
  c.data[format] = std::move(data);
  c.changed = true;
  return TRUE;
}

std::optional<std::vector<uint8_t>> GetClipboardData(UINT format) {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  if (!c.open) return std::nullopt;
  return Lookup(c, format);
}

BOOL IsClipboardFormatAvailable(UINT format) {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  PullSystemText(c);
  return Available(c, format) ? TRUE : FALSE;
}

int CountClipboardFormats() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  return static_cast<int>(c.data.size());
}

UINT EnumClipboardFormats(UINT format) {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  auto it = c.data.upper_bound(format);
  return it == c.data.end() ? 0 : it->first;
}

UINT RegisterClipboardFormatW(const char16_t* name) {
  if (!name || !name[0]) return 0;
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  auto [it, added] = c.names.emplace(name, c.nextName);
  if (added) ++c.nextName;
  return it->second;
}

HWND GetClipboardOwner() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  return c.owner && IsWindow(c.owner) ? c.owner : 0;
}

HWND GetOpenClipboardWindow() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  return c.open ? c.opener : 0;
}

bool SetClipboardText(std::u16string_view text) {
  if (!OpenClipboard(0)) return false;
  EmptyClipboard();
  SetClipboardData(CF_UNICODETEXT, Utf16Bytes(text));
  CloseClipboard();
  return true;
}

std::optional<std::u16string> GetClipboardText() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  PullSystemText(c);
  auto bytes = Lookup(c, CF_UNICODETEXT);
  if (!bytes) return std::nullopt;
  return TextFromUtf16(*bytes);
}

void ResetClipboard() {
  auto& c = Clip();
  std::lock_guard lock(c.mutex);
  c.open = false;
  c.opener = c.owner = 0;
  c.data.clear();
}

}  // namespace mx::platform
