#include "frame/APITooltip.h"

#include "host/Frx.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"

namespace mx::frame {

using namespace mx::platform;

namespace {

// The narrow messages carry Windows-1252 text; characters outside it become "?".
std::string ToAnsi(host::StringView text) {
  const host::ByteArray bytes = host::EncodeWindows1252(text);
  return std::string(bytes.begin(), bytes.end());
}

WPARAM Colour(host::OLE_COLOR color) {
  return static_cast<WPARAM>(static_cast<uint32_t>(host::TranslateColor(color)));
}

LPARAM Milliseconds(int32_t ms) { return MAKELPARAM(ms, 0); }

}  // namespace

bool APITooltip::Create(HWND xOwner) {
  if (m_tip != 0) DestroyWindow(m_tip);
  m_tip = 0;
  m_owner = xOwner;
  DWORD style = TTS_ALWAYSTIP | TTS_NOPREFIX;
  if (m_style == ToolTip_Balloon) style |= TTS_BALLOON;
  if (RegisterTooltipClass()) {
    m_tip = CreateWindowExW(0, kTooltipClassName, nullptr, style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, 0, 0, 0, nullptr);
  }

  m_ansiText = ToAnsi(m_tipText);
  m_info = TOOLINFOA{};
  m_info.cbSize = 44;
  m_info.uFlags = TTF_SUBCLASS | TTF_IDISHWND | (m_centered ? TTF_CENTERTIP : 0);
  m_info.hwnd = xOwner;
  m_info.uId = xOwner;
  m_info.hinst = 0;
  m_info.lpszText = m_ansiText.c_str();
  if (m_tip == 0) return false;

  const bool added = SendMessage(m_tip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&m_info)) != 0;
  if (!m_title.empty() || m_icon != No_Icon) {
    m_ansiTitle = ToAnsi(m_title);
    SendMessage(m_tip, TTM_SETTITLEA, static_cast<WPARAM>(m_icon), reinterpret_cast<LPARAM>(m_ansiTitle.c_str()));
  }
  SendMessage(m_tip, TTM_SETTIPTEXTCOLOR, Colour(m_foreColor), 0);
  SendMessage(m_tip, TTM_SETTIPBKCOLOR, Colour(m_backColor), 0);
  SendMessage(m_tip, TTM_SETDELAYTIME, TTDT_AUTOPOP, Milliseconds(m_visibleTime));
  SendMessage(m_tip, TTM_SETDELAYTIME, TTDT_INITIAL, Milliseconds(m_delayTime));
  return added;
}

void APITooltip::Destroy() {
  if (m_tip != 0 && IsWindow(m_tip)) DestroyWindow(m_tip);
  m_tip = 0;
}

void APITooltip::SendTitle() {
  if (m_tip == 0 || m_title.empty() || m_icon == No_Icon) return;
  m_ansiTitle = ToAnsi(m_title);
  SendMessage(m_tip, TTM_SETTITLEA, static_cast<WPARAM>(m_icon), reinterpret_cast<LPARAM>(m_ansiTitle.c_str()));
}

void APITooltip::Icon(ENUM_TOOLTIP_ICON xValue) {
  m_icon = xValue;
  SendTitle();
}

void APITooltip::Title(host::StringView xValue) {
  m_title = host::String(xValue);
  SendTitle();
}

void APITooltip::TipText(host::StringView xValue) {
  m_tipText = host::String(xValue);
  m_ansiText = ToAnsi(m_tipText);
  m_info.lpszText = m_ansiText.c_str();
  if (m_tip != 0) SendMessage(m_tip, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&m_info));
}

void APITooltip::ForeColor(host::OLE_COLOR xValue) {
  m_foreColor = xValue;
  if (m_tip != 0) SendMessage(m_tip, TTM_SETTIPTEXTCOLOR, Colour(m_foreColor), 0);
}

void APITooltip::BackColor(host::OLE_COLOR xValue) {
  m_backColor = xValue;
  if (m_tip != 0) SendMessage(m_tip, TTM_SETTIPBKCOLOR, Colour(m_backColor), 0);
}

}  // namespace mx::frame
