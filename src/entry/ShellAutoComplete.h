#pragma once
// ShellAutoComplete: completion of file and directory names in a text box, as the system shell
// offers it to edit controls. Every typed change lists the directory of the typed path and
// keeps the entries whose names begin with the typed rest (case-sensitive, as the file system
// is; names beginning with "." only when a "." is typed). Then:
//
//   auto-append   the first match's remaining characters are added to the text, selected, so
//                 the next key types over them (not after Backspace or Delete, and only with
//                 the caret at the end);
//   auto-suggest  a small pop-up list under the box shows the matches: Down and Up move the
//                 highlight, Enter takes the highlighted entry, Esc closes the list, a click
//                 takes the entry under the pointer;
//   Tab           with SHACF_USETAB takes the highlighted entry (or the first), or the appended
//                 completion, instead of moving the focus.
//
// There is no URL history here: flags that ask only for URLs complete nothing. A text without
// "/" completes against the current directory.
#include <cstdint>
#include <vector>

#include "host/String.h"
#include "platform/Types.h"

namespace mx::host {
class TextBox;
}  // namespace mx::host

namespace mx::entry {

using host::String;
using host::StringView;

class ShellAutoComplete {
 public:
  // The pop-up shows at most this many rows; the highlight scrolls the rest into view.
  static constexpr int32_t kVisibleRows = 8;
  // A directory with more matching entries offers only the first ones, in name order.
  static constexpr size_t kMaxEntries = 1000;

  ShellAutoComplete(host::TextBox& edit, uint32_t flags);
  ~ShellAutoComplete();
  ShellAutoComplete(const ShellAutoComplete&) = delete;
  ShellAutoComplete& operator=(const ShellAutoComplete&) = delete;

  [[nodiscard]] uint32_t Flags() const { return m_flags; }
  void Flags(uint32_t value);
  [[nodiscard]] bool CompletesFileSystem() const;
  [[nodiscard]] bool DirectoriesOnly() const;
  [[nodiscard]] bool AutoAppend() const;
  [[nodiscard]] bool AutoSuggest() const;

  // The paths that complete `typed`, in name order: the typed directory part followed by each
  // matching entry's name. Empty when the directory cannot be read.
  [[nodiscard]] static std::vector<String> ListMatches(StringView typed, bool directoriesOnly,
                                                       size_t limit = kMaxEntries);

  // A key going down in the box. True when the key was the list's (Up, Down, Enter with a
  // highlighted entry, Esc while the list is open): the box then does nothing more with it.
  bool KeyDown(int16_t keyCode, int16_t shift);
  // A character about to be typed: Backspace (8) takes text away, any other adds.
  void CharTyped(int16_t keyAscii) { m_deleting = keyAscii == 8; }
  // Whether a Tab now would take a completion (SHACF_USETAB and something to take), and taking it.
  [[nodiscard]] bool WantsTab() const;
  void TakeTab();
  // The box's text changed; completes it.
  void TextChanged();
  // Hides the list (the box lost the focus, or the text was taken).
  void Close();

  [[nodiscard]] bool ListVisible() const;
  [[nodiscard]] const std::vector<String>& Items() const { return m_items; }
  [[nodiscard]] int32_t Highlight() const { return m_highlight; }
  [[nodiscard]] platform::HWND ListWindow() const { return m_list; }

  // The pop-up's window procedure reaches the object through these.
  void PaintList(platform::HDC dc) const;
  void ListMouse(uint32_t msg, int32_t y);

 private:
  void ShowList();
  void PlaceList();
  void MoveHighlight(int32_t by);
  void Take(const String& text);
  [[nodiscard]] int32_t RowHeight() const;
  [[nodiscard]] int32_t RowAt(int32_t y) const;

  host::TextBox& m_edit;
  uint32_t m_flags;
  // The last key went down as Backspace or Delete: the change it makes is not appended to.
  bool m_deleting = false;
  // The object is setting the box's text itself; the change that follows is not typed.
  bool m_busy = false;
  // The text as the auto-append left it, to know that its selection is still the completion.
  String m_appended;
  std::vector<String> m_items;
  int32_t m_highlight = -1;
  int32_t m_top = 0;
  platform::HWND m_list = 0;
  platform::HFONT m_font = 0;
};

}  // namespace mx::entry
