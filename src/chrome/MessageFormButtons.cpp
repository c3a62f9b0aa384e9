#include "chrome/MessageFormButtons.h"

namespace mx::chrome {

namespace {

constexpr const char16_t* kOk = u"&Ok";
constexpr const char16_t* kCancel = u"&Cancelar";
constexpr const char16_t* kAbort = u"&Abortar";
constexpr const char16_t* kRetry = u"&Repetir";
constexpr const char16_t* kIgnore = u"&Ignorar";
constexpr const char16_t* kYes = u"&Sim";
constexpr const char16_t* kNo = u"&Não";

// MessageBeep's types for the icons.
constexpr uint32_t kBeepDefault = 0x00;
constexpr uint32_t kBeepHand = 0x10;
constexpr uint32_t kBeepQuestion = 0x20;
constexpr uint32_t kBeepExclamation = 0x30;
constexpr uint32_t kBeepAsterisk = 0x40;

}  // namespace

MessageStyle ReadMessageStyle(int32_t buttons) {
  MessageStyle s;
  s.style = buttons == 0 ? 64 : buttons;
  // The default-button flags are read by range, not by bit: anything over 64 and under 321
  // loses 256, anything over 64 and under 577 (still) loses 512. So 65 to 69, the icon 64 with
  // buttons, fall below 0 and show no button at all, like the question icon.
  if (s.style > 64 && s.style < 321) {
    s.style -= 256;
    s.defaultButton = 2;
  }
  if (s.style > 64 && s.style < 577) {
    s.style -= 512;
    s.defaultButton = 3;
  }
  return s;
}

std::vector<host::String> MessageButtonCaptions(int32_t style) {
  if (style < 0 || style > 69) return {};
  // The icon is the part above 15; only 0 (none), 16, 48 and 64 are the table's.
  const int32_t icon = style & ~15, kind = style & 15;
  if (icon != 0 && icon != 16 && icon != 48 && icon != 64) return {};
  switch (kind) {
    case 0: return {kOk};
    case 1: return {kOk, kCancel};
    case 2: return {kAbort, kRetry, kIgnore};
    case 3: return {kYes, kNo, kCancel};
    case 4: return {kYes, kNo};
    case 5: return {kRetry, kCancel};
    default: return {};
  }
}

int32_t CountMessageButtons(int32_t style) { return static_cast<int32_t>(MessageButtonCaptions(style).size()); }

int32_t MessageButtonResult(host::StringView caption) {
  struct Entry {
    const char16_t* caption;
    int32_t result;
  };
  static constexpr Entry kResults[] = {{kOk, vbOK},       {kCancel, vbCancel}, {kAbort, vbAbort}, {kRetry, vbRetry},
                                       {kIgnore, vbIgnore}, {kYes, vbYes},       {kNo, vbNo}};
  for (const Entry& e : kResults)
    if (caption == e.caption) return e.result;
  return vbClosed;
}

int32_t MessageButtonsMinimumWidth(int32_t count) {
  switch (count) {
    case 1: return 2500;
    case 2: return 3500;
    case 3: return 4500;
    default: return 0;
  }
}

uint32_t MessageSoundForStyle(int32_t style) {
  switch (style & 0x70) {
    case 16: return kBeepHand;
    case 32: return kBeepQuestion;
    case 48: return kBeepExclamation;
    case 64: return kBeepAsterisk;
    default: return kBeepDefault;
  }
}

}  // namespace mx::chrome
