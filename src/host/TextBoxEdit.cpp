// The text box's editing model: replacing the selection under MaxLength, one level of undo,
// the clipboard, caret movement by character, word and line, and the edit messages.
//
// Every change of the text goes through ReplaceSelection or SetText, which raise Change; the
// caret and selection only through SetSelection, which keeps both inside the text and off the
// middle of a line break.
#include <algorithm>

#include "host/Err.h"
#include "host/TextBoxImpl.h"
#include "host/UserControl.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

// Word characters for Ctrl+arrows and double clicks: anything but blanks and line breaks.
bool IsSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

}  // namespace

// ---- positions -----------------------------------------------------------------------------------

int32_t TextBox::Impl::NextPosition(int32_t pos) const {
  const int32_t n = static_cast<int32_t>(text.size());
  if (pos >= n) return n;
  const char16_t c = text[static_cast<size_t>(pos)];
  if (pos + 1 < n) {
    const char16_t d = text[static_cast<size_t>(pos + 1)];
    if ((c == u'\r' && d == u'\n') || (IsHighSurrogate(c) && IsLowSurrogate(d))) return pos + 2;
  }
  return pos + 1;
}

int32_t TextBox::Impl::PrevPosition(int32_t pos) const {
  if (pos <= 0) return 0;
  if (pos >= 2) {
    const char16_t c = text[static_cast<size_t>(pos - 2)], d = text[static_cast<size_t>(pos - 1)];
    if ((c == u'\r' && d == u'\n') || (IsHighSurrogate(c) && IsLowSurrogate(d))) return pos - 2;
  }
  return pos - 1;
}

int32_t TextBox::Impl::NextWord(int32_t pos) const {
  // To the start of the next word: over the rest of this one, then over the blanks.
  const int32_t n = static_cast<int32_t>(text.size());
  while (pos < n && !IsSpace(text[static_cast<size_t>(pos)])) ++pos;
  while (pos < n && IsSpace(text[static_cast<size_t>(pos)])) ++pos;
  return pos;
}

int32_t TextBox::Impl::PrevWord(int32_t pos) const {
  while (pos > 0 && IsSpace(text[static_cast<size_t>(pos - 1)])) --pos;
  while (pos > 0 && !IsSpace(text[static_cast<size_t>(pos - 1)])) --pos;
  return pos;
}

void TextBox::Impl::WordAt(int32_t pos, int32_t& start, int32_t& end) const {
  const int32_t n = static_cast<int32_t>(text.size());
  pos = std::clamp(pos, 0, n);
  // On a blank the blanks around it are the "word"; otherwise the word and the blanks after
  // it, as the platform's edit control selects on a double click.
  const bool onSpace = pos < n ? IsSpace(text[static_cast<size_t>(pos)]) : (pos > 0 && IsSpace(text[static_cast<size_t>(pos - 1)]));
  auto same = [&](int32_t i) { return IsSpace(text[static_cast<size_t>(i)]) == onSpace && text[static_cast<size_t>(i)] != u'\r' && text[static_cast<size_t>(i)] != u'\n'; };
  start = pos;
  while (start > 0 && same(start - 1)) --start;
  end = pos;
  while (end < n && same(end)) ++end;
  if (!onSpace)
    while (end < n && text[static_cast<size_t>(end)] == u' ') ++end;
}

// ---- selection and changes -------------------------------------------------------------------------

void TextBox::Impl::SetSelection(int32_t newAnchor, int32_t newCaret) {
  const int32_t n = static_cast<int32_t>(text.size());
  newAnchor = std::clamp(newAnchor, 0, n);
  newCaret = std::clamp(newCaret, 0, n);
  // Never inside "\r\n": a position there moves to the break's start.
  auto snap = [&](int32_t p) {
    if (p > 0 && p < n && text[static_cast<size_t>(p - 1)] == u'\r' && text[static_cast<size_t>(p)] == u'\n') return p - 1;
    return p;
  };
  newAnchor = snap(newAnchor);
  newCaret = snap(newCaret);
  if (newAnchor == anchor && newCaret == caret) return;
  anchor = newAnchor;
  caret = newCaret;
  typingRun = false;
  ScrollToCaret();
  ResetBlink();
  Invalidate();
}

void TextBox::Impl::RaiseChange() {
  modified = true;
  std::shared_ptr<bool> a = alive;
  OnErrorResumeNext([&] { self.Change(); });
  (void)a;
}

bool TextBox::Impl::ReplaceSelection(StringView insert, bool limit, bool typing) {
  const int32_t start = SelMin(), end = SelMax();
  String piece(insert);
  if (limit && maxLength > 0) {
    const int64_t room = static_cast<int64_t>(maxLength) - (static_cast<int64_t>(text.size()) - (end - start));
    if (room <= 0) {
      piece.clear();
    } else if (static_cast<int64_t>(piece.size()) > room) {
      // Cut where it does not split a surrogate pair or a line break.
      size_t keep = static_cast<size_t>(room);
      if (keep > 0 && (IsHighSurrogate(piece[keep - 1]) || piece[keep - 1] == u'\r')) --keep;
      piece.resize(keep);
    }
  }
  if (piece.empty() && start == end) return false;
  // A typed character that continues the run keeps the undo state from the run's start.
  if (!(typing && typingRun)) {
    undoText = text;
    undoAnchor = anchor;
    undoCaret = caret;
    canUndo = true;
  }
  text.replace(static_cast<size_t>(start), static_cast<size_t>(end - start), piece);
  anchor = caret = start + static_cast<int32_t>(piece.size());
  preferredX = -1;
  layoutValid = false;
  ScrollToCaret();
  ResetBlink();
  Invalidate();
  typingRun = typing;
  RaiseChange();
  return true;
}

void TextBox::Impl::SetText(StringView value) {
  String next(value);
  if (maxLength > 0 && next.size() > static_cast<size_t>(maxLength)) next.resize(static_cast<size_t>(maxLength));
  canUndo = false;
  typingRun = false;
  anchor = caret = 0;
  scrollX = 0;
  topLine = 0;
  preferredX = -1;
  if (next == text) {
    Invalidate();
    return;
  }
  text = std::move(next);
  layoutValid = false;
  Invalidate();
  RaiseChange();
}

void TextBox::Impl::DoUndo() {
  if (!canUndo || locked) return;
  String before = text;
  const int32_t a = anchor, c = caret;
  text = undoText;
  anchor = std::clamp(undoAnchor, 0, static_cast<int32_t>(text.size()));
  caret = std::clamp(undoCaret, 0, static_cast<int32_t>(text.size()));
  // The undone state becomes the one to go back to: a second undo redoes.
  undoText = std::move(before);
  undoAnchor = a;
  undoCaret = c;
  typingRun = false;
  preferredX = -1;
  layoutValid = false;
  ScrollToCaret();
  Invalidate();
  if (text != undoText) RaiseChange();
}

void TextBox::Impl::DoCopy() {
  // A password is never handed out.
  if (passwordChar && !multiLine) {
    MessageBeep(0);
    return;
  }
  if (SelMin() == SelMax()) return;
  SetClipboardText(StringView(text).substr(static_cast<size_t>(SelMin()), static_cast<size_t>(SelMax() - SelMin())));
}

void TextBox::Impl::DoCut() {
  if (locked || (passwordChar && !multiLine)) {
    MessageBeep(0);
    return;
  }
  if (SelMin() == SelMax()) return;
  DoCopy();
  typingRun = false;
  ReplaceSelection(StringView(), false, false);
}

void TextBox::Impl::DoPaste() {
  if (locked) {
    MessageBeep(0);
    return;
  }
  std::optional<std::u16string> clip = GetClipboardText();
  if (!clip) return;
  String piece = std::move(*clip);
  // A single line takes the clipboard up to its first line break, as the platform's does.
  if (!multiLine) {
    const size_t br = piece.find_first_of(u"\r\n");
    if (br != String::npos) piece.resize(br);
  }
  typingRun = false;
  if (!ReplaceSelection(piece, /*limit=*/true, false) && !piece.empty()) MessageBeep(0);
}

// ---- keys ---------------------------------------------------------------------------------------------

void TextBox::Impl::HandleKeyDown(int16_t keyCode, int16_t shift) {
  const bool withShift = (shift & vbShiftMask) != 0, ctrl = (shift & vbCtrlMask) != 0;
  const int32_t n = static_cast<int32_t>(text.size());
  // Moves the caret; with Shift the anchor stays, without it a selection collapses.
  auto moveTo = [&](int32_t pos, bool keepPreferredX = false) {
    const int px = preferredX;
    SetSelection(withShift ? anchor : pos, pos);
    if (keepPreferredX) preferredX = px;
    else preferredX = -1;
  };
  const bool hasSel = anchor != caret;
  switch (keyCode) {
    case VK_LEFT:
      if (ctrl) moveTo(PrevWord(caret));
      else if (hasSel && !withShift) moveTo(SelMin());
      else moveTo(PrevPosition(caret));
      break;
    case VK_RIGHT:
      if (ctrl) moveTo(NextWord(caret));
      else if (hasSel && !withShift) moveTo(SelMax());
      else moveTo(NextPosition(caret));
      break;
    case VK_HOME:
      if (ctrl || !multiLine) moveTo(0);
      else moveTo(lines[static_cast<size_t>(LineOf(caret))].start);
      break;
    case VK_END:
      if (ctrl || !multiLine) {
        moveTo(n);
      } else {
        const TextBoxLine& l = lines[static_cast<size_t>(LineOf(caret))];
        int32_t end = l.start + l.length;
        // The end of a wrapped line is the start of the next, where the caret would show on
        // the next line: stay before the line's last character (its trailing blank).
        if (end < n && text[static_cast<size_t>(end)] != u'\r' && end > l.start) end = PrevPosition(end);
        moveTo(end);
      }
      break;
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT: {
      if (!multiLine) {
        // A single line: up goes left, down goes right, as the platform's edit control does.
        if (keyCode == VK_UP) moveTo(PrevPosition(caret));
        else if (keyCode == VK_DOWN) moveTo(NextPosition(caret));
        break;
      }
      Layout();
      const int32_t line = LineOf(caret);
      const int32_t page = std::max(1, (TextRect().bottom - TextRect().top) / std::max(1, LineHeight()));
      int32_t target = line;
      if (keyCode == VK_UP) target = line - 1;
      else if (keyCode == VK_DOWN) target = line + 1;
      else if (keyCode == VK_PRIOR) target = line - page;
      else target = line + page;
      target = std::clamp<int32_t>(target, 0, static_cast<int32_t>(lines.size()) - 1);
      if (preferredX < 0) preferredX = XOf(caret);
      if (target != line) {
        if (keyCode == VK_PRIOR || keyCode == VK_NEXT) topLine = std::max<int32_t>(0, topLine + (target - line));
        moveTo(PositionAtX(target, preferredX), /*keepPreferredX=*/true);
      }
      break;
    }
    case VK_DELETE:
      if (withShift) {
        DoCut();
        break;
      }
      if (locked) break;
      if (!hasSel) {
        if (caret >= n) break;
        anchor = NextPosition(caret);
      }
      typingRun = false;
      ReplaceSelection(StringView(), false, false);
      break;
    case VK_INSERT:
      if (ctrl) DoCopy();
      else if (withShift) DoPaste();
      break;
    default:
      break;
  }
}

void TextBox::Impl::HandleChar(char16_t ch) {
  switch (ch) {
    case 1:  // Ctrl+A
      SetSelection(0, static_cast<int32_t>(text.size()));
      return;
    case 3:  // Ctrl+C
      DoCopy();
      return;
    case 22:  // Ctrl+V
      DoPaste();
      return;
    case 24:  // Ctrl+X
      DoCut();
      return;
    case 26:  // Ctrl+Z
      DoUndo();
      return;
    case u'\b': {
      if (locked) return;
      if (anchor == caret) {
        if (caret == 0) return;
        anchor = PrevPosition(caret);
      }
      // Backspacing is an edit of its own for undo.
      typingRun = false;
      ReplaceSelection(StringView(), false, false);
      return;
    }
    case u'\r':
    case u'\n':
      if (!multiLine || locked) return;
      typingRun = false;
      if (!ReplaceSelection(u"\r\n", true, false)) MessageBeep(0);
      return;
    default:
      break;
  }
  // Other control characters (Tab, Esc, Ctrl+Backspace...) do not go into the text.
  if (ch < 0x20 || ch == 0x7F || locked) return;
  if (!ReplaceSelection(StringView(&ch, 1), true, true)) MessageBeep(0);
}

// ---- messages -----------------------------------------------------------------------------------------

bool TextBox::Impl::EditMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& result) {
  const int32_t n = static_cast<int32_t>(text.size());
  switch (msg) {
    case EM_GETSEL: {
      if (wParam) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(SelMin());
      if (lParam) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(SelMax());
      result = static_cast<intptr_t>(MAKELPARAM(std::min(SelMin(), 0xFFFF), std::min(SelMax(), 0xFFFF)));
      return true;
    }
    case EM_SETSEL: {
      const int32_t s = static_cast<int32_t>(static_cast<intptr_t>(wParam));
      const int32_t e = static_cast<int32_t>(lParam);
      if (s == -1) {
        // -1 as the start removes the selection, leaving the caret where it is.
        SetSelection(caret, caret);
      } else {
        const int32_t end = e < 0 ? n : e;
        // The caret goes to the end argument; the start is the anchor.
        SetSelection(s, end);
      }
      preferredX = -1;
      result = 0;
      return true;
    }
    case EM_UNDO:
    case WM_UNDO:
      result = canUndo ? 1 : 0;
      DoUndo();
      return true;
    case EM_CANUNDO:
      result = canUndo ? 1 : 0;
      return true;
    case EM_EMPTYUNDOBUFFER:
      canUndo = false;
      typingRun = false;
      result = 0;
      return true;
    case EM_LIMITTEXT:
      // 0 is the largest limit, which the host shows as no limit.
      maxLength = static_cast<int32_t>(std::min<uintptr_t>(wParam, 0x7FFFFFFE));
      result = 0;
      return true;
    case EM_GETLIMITTEXT:
      result = maxLength > 0 ? maxLength : 0x7FFFFFFE;
      return true;
    case EM_REPLACESEL: {
      const char16_t* s = reinterpret_cast<const char16_t*>(lParam);
      typingRun = false;
      ReplaceSelection(s ? StringView(s) : StringView(), /*limit=*/true, false);
      if (!wParam) canUndo = false;
      result = 0;
      return true;
    }
    case EM_SETREADONLY:
      locked = wParam != 0;
      result = 1;
      return true;
    case EM_SETPASSWORDCHAR:
      passwordChar = static_cast<char16_t>(wParam);
      layoutValid = false;
      Invalidate();
      result = 0;
      return true;
    case EM_GETMODIFY:
      result = modified ? 1 : 0;
      return true;
    case EM_SETMODIFY:
      modified = wParam != 0;
      result = 0;
      return true;
    case EM_GETLINECOUNT:
      Layout();
      result = static_cast<intptr_t>(lines.size());
      return true;
    case EM_LINEINDEX: {
      Layout();
      const int32_t line = static_cast<int32_t>(static_cast<intptr_t>(wParam));
      const int32_t l = line < 0 ? LineOf(caret) : line;
      result = l < static_cast<int32_t>(lines.size()) ? lines[static_cast<size_t>(l)].start : -1;
      return true;
    }
    case EM_LINEFROMCHAR: {
      Layout();
      const int32_t pos = static_cast<int32_t>(static_cast<intptr_t>(wParam));
      result = LineOf(pos < 0 ? caret : std::min(pos, n));
      return true;
    }
    case EM_LINELENGTH: {
      Layout();
      const int32_t pos = static_cast<int32_t>(static_cast<intptr_t>(wParam));
      result = lines[static_cast<size_t>(LineOf(pos < 0 ? caret : std::min(pos, n)))].length;
      return true;
    }
    case WM_SETTEXT: {
      const char16_t* s = reinterpret_cast<const char16_t*>(lParam);
      SetText(s ? StringView(s) : StringView());
      result = TRUE;
      return true;
    }
    case WM_GETTEXT: {
      auto* buffer = reinterpret_cast<char16_t*>(lParam);
      const int size = static_cast<int>(wParam);
      if (!buffer || size <= 0) {
        result = 0;
        return true;
      }
      const int count = std::min(size - 1, n);
      std::copy_n(text.data(), count, buffer);
      buffer[count] = 0;
      result = count;
      return true;
    }
    case WM_GETTEXTLENGTH:
      result = n;
      return true;
    case WM_CUT:
      DoCut();
      result = 0;
      return true;
    case WM_COPY:
      DoCopy();
      result = 0;
      return true;
    case WM_PASTE:
      DoPaste();
      result = 0;
      return true;
    case WM_CLEAR:
      if (!locked && anchor != caret) {
        typingRun = false;
        ReplaceSelection(StringView(), false, false);
      }
      result = 0;
      return true;
    default:
      return false;
  }
}

}  // namespace mx::host
