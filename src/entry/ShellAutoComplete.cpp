// ShellAutoComplete: the directory listing, the appended completion and the pop-up list.
#include "entry/ShellAutoComplete.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

#include "entry/USTextBoxEx.h"
#include "frame/Drawing.h"
#include "host/Colors.h"
#include "host/StdFont.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Messages.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::entry {

namespace fs = std::filesystem;
using namespace platform;

namespace {

constexpr char16_t kListClass[] = u"MXAutoSuggest";
constexpr char16_t kOwnerProp[] = u"MXAutoSuggestOwner";
constexpr int16_t kBackspace = 8;
constexpr int16_t kDelete = 46;
constexpr uint32_t kSourceFlags =
    SHACF_FILESYSTEM | SHACF_URLHISTORY | SHACF_URLMRU | SHACF_FILESYS_ONLY | SHACF_FILESYS_DIRS;
// Text inset inside a row, and the list's one-pixel frame.
constexpr int32_t kTextInset = 3;
constexpr int32_t kFrame = 1;

LRESULT ListProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* owner = reinterpret_cast<ShellAutoComplete*>(GetPropW(hwnd, kOwnerProp));
  switch (msg) {
    case WM_MOUSEACTIVATE:
      // The list never takes the activation: typing stays in the text box.
      return MA_NOACTIVATE;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd, &ps);
      if (owner) owner->PaintList(dc);
      EndPaint(hwnd, &ps);
      return 0;
    }
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
      if (owner) owner->ListMouse(msg, static_cast<int16_t>((static_cast<uintptr_t>(lParam) >> 16) & 0xFFFF));
      return 0;
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

void RegisterListClass() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kListClass, &info)) return;
  RegisterWindowClass(kListClass, &ListProc, 0, 0, 0);
}

// The list is drawn in the system's window and selection colours.
OLE_COLOR System(OLE_COLOR colour) { return static_cast<OLE_COLOR>(host::TranslateColor(colour)); }

// A path too wide for its row loses its start, not its end: the name being completed stays
// in sight ("...ects/report.txt").
String FitFromTheEnd(HDC dc, const String& text, int32_t width) {
  SIZE size{};
  GetTextExtentPoint32W(dc, text, &size);
  if (size.cx <= width) return text;
  for (size_t cut = 1; cut < text.size(); ++cut) {
    String shown = u"..." + text.substr(cut);
    GetTextExtentPoint32W(dc, shown, &size);
    if (size.cx <= width) return shown;
  }
  return u"...";
}

bool StartsWith(const std::string& s, const std::string& prefix) {
  return s.size() >= prefix.size() && s.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

ShellAutoComplete::ShellAutoComplete(host::TextBox& edit, uint32_t flags) : m_edit(edit), m_flags(flags) {}

ShellAutoComplete::~ShellAutoComplete() {
  if (m_list && IsWindow(m_list)) {
    RemovePropW(m_list, kOwnerProp);
    DestroyWindow(m_list);
  }
  if (m_font) DeleteObject(m_font);
}

void ShellAutoComplete::Flags(uint32_t value) {
  m_flags = value;
  Close();
}

bool ShellAutoComplete::CompletesFileSystem() const {
  // No source named is the default, which includes the file system.
  const uint32_t sources = m_flags & kSourceFlags;
  return sources == 0 || (sources & (SHACF_FILESYSTEM | SHACF_FILESYS_ONLY | SHACF_FILESYS_DIRS)) != 0;
}

bool ShellAutoComplete::DirectoriesOnly() const { return (m_flags & SHACF_FILESYS_DIRS) != 0; }
bool ShellAutoComplete::AutoAppend() const { return (m_flags & SHACF_AUTOAPPEND_FORCE_OFF) == 0; }
bool ShellAutoComplete::AutoSuggest() const { return (m_flags & SHACF_AUTOSUGGEST_FORCE_OFF) == 0; }

std::vector<String> ShellAutoComplete::ListMatches(StringView typed, bool directoriesOnly, size_t limit) {
  const std::string path = host::ToUtf8(typed);
  const size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
  const std::string prefix = slash == std::string::npos ? path : path.substr(slash + 1);
  const bool showHidden = !prefix.empty() && prefix[0] == '.';
  std::vector<std::string> names;
  std::error_code ec;
  fs::directory_iterator it(folder.empty() ? fs::path(".") : fs::path(folder),
                            fs::directory_options::skip_permission_denied, ec);
  if (ec) return {};
  for (; it != fs::directory_iterator(); it.increment(ec)) {
    if (ec) break;
    std::string name = it->path().filename().string();
    if (!StartsWith(name, prefix) || (name[0] == '.' && !showHidden)) continue;
    std::error_code kindError;
    // Links count as what they point at, as a path through them would open.
    if (directoriesOnly && !it->is_directory(kindError)) continue;
    names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  if (names.size() > limit) names.resize(limit);
  std::vector<String> out;
  out.reserve(names.size());
  for (const std::string& name : names) out.push_back(host::FromUtf8(folder + name));
  return out;
}

bool ShellAutoComplete::KeyDown(int16_t keyCode, int16_t shift) {
  m_deleting = keyCode == kBackspace || keyCode == kDelete;
  if (!ListVisible() || shift != 0) return false;
  switch (keyCode) {
    case VK_DOWN: MoveHighlight(1); return true;
    case VK_UP: MoveHighlight(-1); return true;
    case VK_ESCAPE: Close(); return true;
    case VK_RETURN:
      if (m_highlight < 0) {
        // Nothing chosen: the list goes and Enter does what it does without one.
        Close();
        return false;
      }
      Take(m_items[static_cast<size_t>(m_highlight)]);
      return true;
    default: return false;
  }
}

bool ShellAutoComplete::WantsTab() const {
  if ((m_flags & SHACF_USETAB) == 0) return false;
  if (ListVisible() && !m_items.empty()) return true;
  // An appended completion still selected at the end of the text.
  const String& text = m_edit.Text();
  return !m_appended.empty() && text == m_appended && m_edit.SelLength() > 0 &&
         m_edit.SelStart() + m_edit.SelLength() == host::Len(text);
}

void ShellAutoComplete::TakeTab() {
  if (ListVisible() && !m_items.empty()) {
    Take(m_items[static_cast<size_t>(std::max(m_highlight, 0))]);
    return;
  }
  Take(m_edit.Text());
}

void ShellAutoComplete::Take(const String& text) {
  m_busy = true;
  if (text != m_edit.Text()) m_edit.Text(text);
  m_edit.SelStart(host::Len(text));
  m_busy = false;
  m_appended.clear();
  Close();
}

void ShellAutoComplete::TextChanged() {
  if (m_busy) return;
  m_appended.clear();
  const String typed = m_edit.Text();
  // Typing in the middle of the text, or an emptied box, offers nothing.
  if (typed.empty() || !CompletesFileSystem() || m_edit.SelStart() != host::Len(typed)) {
    Close();
    return;
  }
  m_items = ListMatches(typed, DirectoriesOnly());
  m_highlight = -1;
  m_top = 0;
  const bool typedName = typed.back() != u'/';
  if (AutoAppend() && !m_deleting && typedName && !m_items.empty() && m_items.front().size() > typed.size()) {
    const String& first = m_items.front();
    m_busy = true;
    m_edit.Text(first);
    m_edit.SelStart(host::Len(typed));
    m_edit.SelLength(host::Len(first) - host::Len(typed));
    m_busy = false;
    m_appended = first;
  }
  if (AutoSuggest() && !m_items.empty()) ShowList();
  else Close();
}

void ShellAutoComplete::Close() {
  if (m_list && IsWindow(m_list) && IsWindowVisible(m_list)) ShowWindow(m_list, SW_HIDE);
  m_highlight = -1;
}

bool ShellAutoComplete::ListVisible() const { return m_list && IsWindow(m_list) && IsWindowVisible(m_list); }

void ShellAutoComplete::MoveHighlight(int32_t by) {
  // The highlight runs through the entries and back to none, in both directions.
  const auto count = static_cast<int32_t>(m_items.size());
  int32_t next = m_highlight + by;
  if (next >= count) next = -1;
  else if (next < -1) next = count - 1;
  m_highlight = next;
  if (m_highlight >= 0) {
    if (m_highlight < m_top) m_top = m_highlight;
    if (m_highlight >= m_top + kVisibleRows) m_top = m_highlight - kVisibleRows + 1;
  }
  InvalidateRect(m_list, nullptr, TRUE);
}

int32_t ShellAutoComplete::RowHeight() const {
  int32_t height = 16;
  if (!m_font) return height;
  HDC dc = CreateCompatibleDC(0);
  HGDIOBJ old = SelectObject(dc, m_font);
  TEXTMETRICW tm{};
  if (GetTextMetricsW(dc, &tm)) height = tm.tmHeight + 2;
  SelectObject(dc, old);
  DeleteDC(dc);
  return height;
}

int32_t ShellAutoComplete::RowAt(int32_t y) const {
  const int32_t row = (y - kFrame) / std::max(1, RowHeight());
  if (y < kFrame || row < 0) return -1;
  const int32_t index = m_top + row;
  return index < static_cast<int32_t>(m_items.size()) ? index : -1;
}

void ShellAutoComplete::ShowList() {
  const HWND anchor = GetParent(m_edit.hWnd());
  if (!anchor) return;
  if (!m_list || !IsWindow(m_list)) {
    RegisterListClass();
    m_list = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kListClass, u"", WS_POPUP, 0, 0, 1,
                             1, 0);
    if (!m_list) return;
    SetPropW(m_list, kOwnerProp, reinterpret_cast<intptr_t>(this));
    // Owned by the form's window, so that it goes with the form.
    SetWindowLongPtr(m_list, GWL_HWNDPARENT, static_cast<LONG_PTR>(GetAncestor(anchor, GA_ROOT)));
  }
  if (m_font) DeleteObject(m_font);
  const LOGFONTW lf = m_edit.Font()->ToLogFont();
  m_font = CreateFontIndirectW(&lf);
  PlaceList();
  ShowWindow(m_list, SW_SHOWNOACTIVATE);
  InvalidateRect(m_list, nullptr, TRUE);
}

void ShellAutoComplete::PlaceList() {
  const HWND anchor = GetParent(m_edit.hWnd());
  RECT box{};
  GetWindowRect(anchor, &box);
  const int32_t rows = std::min<int32_t>(kVisibleRows, static_cast<int32_t>(m_items.size()));
  const int32_t width = std::max<int32_t>(box.right - box.left, 60);
  const int32_t height = rows * RowHeight() + 2 * kFrame;
  int32_t x = box.left;
  int32_t y = box.bottom;
  // Under the box, or above it when the work area ends first.
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  if (work.bottom > work.top) {
    if (y + height > work.bottom && box.top - height >= work.top) y = box.top - height;
    if (x + width > work.right) x = std::max<int32_t>(work.left, work.right - width);
  }
  SetWindowPos(m_list, HWND_TOPMOST, x, y, width, height, SWP_NOACTIVATE);
}

void ShellAutoComplete::PaintList(HDC dc) const {
  RECT rc{};
  GetClientRect(m_list, &rc);
  frame::FillRectColor(dc, rc, System(host::vbWindowBackground));
  frame::FrameRectColor(dc, rc, System(host::vbWindowFrame));
  const int32_t rowHeight = RowHeight();
  HGDIOBJ old = m_font ? SelectObject(dc, m_font) : 0;
  SetBkMode(dc, TRANSPARENT);
  const auto count = static_cast<int32_t>(m_items.size());
  for (int32_t i = m_top, row = 0; i < count && row < kVisibleRows; ++i, ++row) {
    RECT line{rc.left + kFrame, rc.top + kFrame + row * rowHeight, rc.right - kFrame,
              rc.top + kFrame + (row + 1) * rowHeight};
    OLE_COLOR fore = System(host::vbWindowText);
    if (i == m_highlight) {
      frame::FillRectColor(dc, line, System(host::vbHighlight));
      fore = System(host::vbHighlightText);
    }
    RECT textRect{line.left + kTextInset, line.top, line.right - kTextInset, line.bottom};
    frame::DrawTextColor(dc, FitFromTheEnd(dc, m_items[static_cast<size_t>(i)], textRect.right - textRect.left),
                         textRect, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX, fore);
  }
  if (m_font) SelectObject(dc, old);
}

void ShellAutoComplete::ListMouse(uint32_t msg, int32_t y) {
  const int32_t index = RowAt(y);
  if (index < 0) return;
  if (msg == WM_LBUTTONDOWN) {
    Take(m_items[static_cast<size_t>(index)]);
    return;
  }
  // The highlight follows the pointer.
  if (index != m_highlight) {
    m_highlight = index;
    InvalidateRect(m_list, nullptr, TRUE);
  }
}

}  // namespace mx::entry
