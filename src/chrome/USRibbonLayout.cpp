// USRibbon: building the band. Refresh decodes the pictures and places every element; a change
// of tab places the category row and its buttons again.
//
// Vertical layout, in pixels (catTop is the layout value of the look over 15 twips a pixel):
//
//   0 .. bandTop            tab strip ground; tabs from y 3 down to one row into the band
//   bandTop = catTop - 3    the band (Barra slices) to the bottom of the control
//   catTop .. catTop + 88   category plates; their lowest 17 rows hold the caption
//   catTop + 3 .. + 69      buttons: picture at +4 (a 32-pixel box), caption at +40, mark at +56
#include <algorithm>
#include <tuple>

#include "chrome/USRibbon.h"
#include "controls/ControlSupport.h"
#include "controls/USImageList.h"
#include "frame/APITooltip.h"
#include "frame/Drawing.h"
#include "host/Form.h"
#include "host/Screen.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::chrome {

using controls::detail::Step;
using host::Variant;
using A = RibbonArray;

namespace {

constexpr int32_t kSlice = 3;          // width of a plate's end slices
constexpr int32_t kTabTop = 3;
constexpr int32_t kTabPad = 8;         // text to slice, each side
constexpr int32_t kTabGap = 2;
constexpr int32_t kCatHeight = 88;
constexpr int32_t kCatFoot = 17;
constexpr int32_t kCatLeft = 4;        // first plate from the band's left
constexpr int32_t kCatGap = 3;
constexpr int32_t kCatPad = 4;         // buttons from the plate's sides
constexpr int32_t kCatCaptionPad = 6;  // caption from the plate's sides
constexpr int32_t kLauncherBand = 30;
constexpr int32_t kLauncherSize = 13;
constexpr int32_t kButtonTop = 3;
constexpr int32_t kButtonHeight = 66;
constexpr int32_t kButtonMargin = 20;
constexpr int32_t kIconBox = 32;
constexpr int32_t kCaptionTop = 40;
constexpr int32_t kCaptionHeight = 14;
constexpr int32_t kGlipTop = 56;
constexpr int32_t kBandBottomMargin = 4;
constexpr int32_t kTabButtonStep = 40;
constexpr int32_t kTabButtonWidth = 24;
constexpr int32_t kTabButtonHeight = 20;
constexpr int32_t kTabButtonIcon = 16;

void Place(RibbonElement& e, int32_t row, int32_t left, int32_t top, int32_t width, int32_t height, bool visible) {
  e.Row = row;
  e.Left = left;
  e.Top = top;
  e.Width = width;
  e.Height = height;
  e.Visible = visible;
}

// The drawn size of a picture: its own, scaled down to fit a box.
void FitPicture(const image::API32bppDIB* dib, int32_t box, int32_t& w, int32_t& h) {
  w = h = 0;
  if (!dib || dib->Width() <= 0 || dib->Height() <= 0) return;
  w = dib->Width();
  h = dib->Height();
  if (w > box || h > box) {
    const int32_t longer = std::max(w, h);
    w = std::max(1, w * box / longer);
    h = std::max(1, h * box / longer);
  }
}

}  // namespace

int32_t USRibbon::BandHeight() const {
  return LayoutValue(m_theme, m_showTabs) / 15 + kCatHeight + kBandBottomMargin;
}

RibbonElement& USRibbon::Member(A array, int32_t row) {
  auto& members = Array(array);
  const size_t slot = static_cast<size_t>(row) + 1;
  if (members.size() <= slot) members.resize(slot + 1);
  return members[slot];
}

void USRibbon::LoadMembers(A array, size_t rows) {
  auto& members = Array(array);
  members.resize(rows + 1);
  for (size_t i = 1; i < members.size(); ++i) members[i].Row = static_cast<int32_t>(i - 1);
}

void USRibbon::UnloadMembers(std::initializer_list<A> arrays) {
  for (A array : arrays) Array(array).resize(1);
}

int32_t USRibbon::TextWidth(StringView text, bool prefix) const {
  if (text.empty()) return 0;
  platform::RECT r{0, 0, 0, 0};
  uint32_t flags = platform::DT_CALCRECT | platform::DT_SINGLELINE;
  if (!prefix) flags |= platform::DT_NOPREFIX;
  frame::DrawTextAPI(UserControl::hDC(), text, r, flags);
  return r.right - r.left;
}

int32_t USRibbon::CatRowOf(int32_t catIndex) const {
  for (size_t i = 0; i < m_cats.size(); ++i)
    if (m_cats[i].index == catIndex) return static_cast<int32_t>(i);
  return -1;
}

int32_t USRibbon::TabRowOf(int32_t tabIndex) const {
  for (size_t i = 0; i < m_tabs.size(); ++i)
    if (m_tabs[i].index == tabIndex) return static_cast<int32_t>(i);
  return -1;
}

bool USRibbon::InCurrentView(int32_t buttonRow) const {
  if (buttonRow < 0 || buttonRow >= ButtonCount()) return false;
  const int32_t cat = CatRowOf(m_buttons[static_cast<size_t>(buttonRow)].catIndex);
  return cat >= 0 && m_cats[static_cast<size_t>(cat)].tabIndex == m_currentTab && TabRowOf(m_currentTab) >= 0;
}

std::vector<int32_t> USRibbon::CurrentButtons() const {
  // In the order they are shown: category by category, each in its order of addition.
  std::vector<int32_t> rows;
  if (TabRowOf(m_currentTab) < 0) return rows;
  for (const CatRow& cat : m_cats) {
    if (cat.tabIndex != m_currentTab) continue;
    if (&cat != &m_cats[static_cast<size_t>(CatRowOf(cat.index))]) continue;  // a repeated Index shows once
    for (size_t b = 0; b < m_buttons.size(); ++b)
      if (m_buttons[b].catIndex == cat.index) rows.push_back(static_cast<int32_t>(b));
  }
  return rows;
}

int32_t USRibbon::ButtonWidth(int32_t row) const {
  const ButtonRow& b = m_buttons[static_cast<size_t>(row)];
  int32_t pw = 0, ph = 0;
  FitPicture(b.surface.get(), kIconBox, pw, ph);
  return std::max(pw, TextWidth(b.caption, true)) + kButtonMargin;
}

int32_t USRibbon::CategoryWidth(int32_t row) const {
  const CatRow& cat = m_cats[static_cast<size_t>(row)];
  int32_t buttons = 2 * kCatPad;
  for (size_t b = 0; b < m_buttons.size(); ++b)
    if (m_buttons[b].catIndex == cat.index) buttons += ButtonWidth(static_cast<int32_t>(b));
  int32_t caption = TextWidth(cat.caption, false) + 2 * kCatCaptionPad;
  if (cat.showDlg) caption += kLauncherBand;
  return std::max(buttons, caption);
}

// ---- Pictures -------------------------------------------------------------------------------------

std::unique_ptr<image::API32bppDIB> USRibbon::PictureFor(const std::shared_ptr<host::StdPicture>& picture,
                                                         const Variant& imageIndex) const {
  auto dib = std::make_unique<image::API32bppDIB>();
  bool ok = false;
  if (picture && !picture->IsEmpty()) {
    // The picture's own file bytes keep a PNG's alpha; the decoded handle is the fallback.
    Step([&] { ok = dib->LoadPicture_Stream(picture->Bytes(), 0, 0, 0, 0, false, 32); });
    if (!ok) Step([&] { ok = dib->LoadPicture_StdPicture(picture); });
    return ok ? std::move(dib) : nullptr;
  }
  if (imageIndex.IsMissing() || imageIndex.IsEmpty() || imageIndex.IsNull()) return nullptr;
  if (m_imageList) {
    platform::HICON icon = 0;
    Step([&] {
      auto lists = m_imageList->ImageLists();
      if (!lists) return;
      auto list = lists->Find(Variant(m_imageListKey));
      if (!list || !list->Images()) return;
      int32_t depth = 32;
      icon = list->Images()->ExtractIcon(imageIndex, depth);
    });
    if (icon) {
      Step([&] { ok = dib->LoadPicture_ByHandle(icon); });
      platform::DestroyIcon(icon);
      return ok ? std::move(dib) : nullptr;
    }
  }
  if (!m_pictureArray.empty()) {
    Step([&] {
      const int32_t position = imageIndex.ToLong();
      if (position < 0 || position >= static_cast<int32_t>(m_pictureArray.size())) return;
      Variant noArgs[1];
      const Variant pic = m_pictureArray[static_cast<size_t>(position)]->Invoke(u"Picture", host::CallKind::Get,
                                                                                std::span<Variant>(noArgs, 0));
      auto std = std::dynamic_pointer_cast<host::StdPicture>(pic.Obj());
      if (std && !std->IsEmpty()) ok = dib->LoadPicture_Stream(std->Bytes(), 0, 0, 0, 0, false, 32) ||
                                       dib->LoadPicture_StdPicture(std);
    });
  }
  return ok ? std::move(dib) : nullptr;
}

void USRibbon::LoadPictures() {
  for (ButtonRow& b : m_buttons) b.surface = PictureFor(b.picture, b.imageIndex);
  for (TabButtonRow& t : m_tabButtons) t.surface = PictureFor(t.picture, t.imageIndex);
}

// ---- Building -------------------------------------------------------------------------------------

void USRibbon::Refresh() {
  Step([&] { LoadPictures(); });
  m_built = true;
  Step([&] { BuildBand(); });
}

void USRibbon::Rebuild() { Step([&] { BuildBand(); }); }

void USRibbon::FitHeight() {
  const float height = static_cast<float>(BandHeight()) * host::GetScreen().TwipsPerPixelY();
  if (Control::Height() != height) Control::Height(height);
}

void USRibbon::BuildBand() {
  if (m_building) return;
  m_building = true;
  Step([&] { FitHeight(); });
  m_building = false;
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  const int32_t bandTop = LayoutValue(m_theme, m_showTabs) / 15 - 3;
  const int32_t h = std::max(0, rc.bottom - bandTop);
  LoadMembers(A::BarraLeft, 1);
  LoadMembers(A::BarraCenter, 1);
  LoadMembers(A::BarraRight, 1);
  Place(Member(A::BarraLeft, 0), 0, 0, bandTop, kSlice, h, true);
  Place(Member(A::BarraCenter, 0), 0, kSlice, bandTop, std::max(0, rc.right - 2 * kSlice), h, true);
  Place(Member(A::BarraRight, 0), 0, std::max(kSlice, rc.right - kSlice), bandTop, kSlice, h, true);
  if (!m_userMode) {
    // At design time the band shows empty: the arrays keep only their templates.
    for (int32_t a = static_cast<int32_t>(A::Tab_left_over); a < static_cast<int32_t>(A::Count); ++a)
      Array(static_cast<A>(a)).resize(1);
    Step([&] { Compose(); });
    return;
  }
  Step([&] { BuildTabs(); });
  Step([&] { BuildTabButtons(); });
  // The first tab is current until another is chosen.
  if (TabRowOf(m_currentTab) < 0 && !m_tabs.empty())
    m_currentTab = m_tabs.front().index;
  SelectTab(m_currentTab, true);
}

void USRibbon::BuildTabs() {
  const size_t n = m_tabs.size();
  for (A a : {A::Tab_left, A::Tab_center, A::Tab_right, A::Tab_left_over, A::Tab_center_over, A::Tab_right_over,
              A::Tab_caption, A::TabMouse})
    LoadMembers(a, n);
  const int32_t bandTop = LayoutValue(m_theme, m_showTabs) / 15 - 3;
  // A tab reaches one row into the band, over the band's top line, so that the selected one
  // opens into it.
  const int32_t height = std::max(0, bandTop + 1 - kTabTop);
  int32_t x = m_tabOffset;
  for (size_t i = 0; i < n; ++i) {
    const auto row = static_cast<int32_t>(i);
    const int32_t inner = TextWidth(m_tabs[i].caption, false) + 2 * kTabPad;
    const int32_t width = inner + 2 * kSlice;
    Place(Member(A::Tab_left, row), row, x, kTabTop, kSlice, height, false);
    Place(Member(A::Tab_center, row), row, x + kSlice, kTabTop, inner, height, false);
    Place(Member(A::Tab_right, row), row, x + kSlice + inner, kTabTop, kSlice, height, false);
    Place(Member(A::Tab_left_over, row), row, x, kTabTop, kSlice, height, false);
    Place(Member(A::Tab_center_over, row), row, x + kSlice, kTabTop, inner, height, false);
    Place(Member(A::Tab_right_over, row), row, x + kSlice + inner, kTabTop, kSlice, height, false);
    RibbonElement& caption = Member(A::Tab_caption, row);
    Place(caption, row, x + kSlice, kTabTop, inner, height - 1, m_showTabs);
    caption.Caption = m_tabs[i].caption;
    caption.ForeColor = m_foreColorTabNormal;
    Place(Member(A::TabMouse, row), row, x, kTabTop, width, height, m_showTabs);
    x += width + kTabGap;
  }
}

void USRibbon::BuildTabButtons() {
  const size_t n = m_tabButtons.size();
  for (A a : {A::TabButon, A::TabButonOn, A::TabButonOver, A::TabButon_Icon, A::ButTabMouse}) LoadMembers(a, n);
  platform::RECT rc{};
  platform::GetClientRect(UserControl::hWnd(), &rc);
  const int32_t bandTop = LayoutValue(m_theme, m_showTabs) / 15 - 3;
  const int32_t top = std::max(1, (bandTop - kTabButtonHeight) / 2);
  for (size_t i = 0; i < n; ++i) {
    const auto row = static_cast<int32_t>(i);
    // Each one 40 pixels further from the right edge, in order of addition.
    const int32_t left = rc.right - kTabButtonStep * (row + 1) + (kTabButtonStep - kTabButtonWidth) / 2;
    Place(Member(A::TabButon, row), row, left, top, kTabButtonWidth, kTabButtonHeight, m_showTabs);
    Place(Member(A::TabButonOn, row), row, left, top, kTabButtonWidth, kTabButtonHeight, false);
    Place(Member(A::TabButonOver, row), row, left, top, kTabButtonWidth, kTabButtonHeight, false);
    int32_t pw = 0, ph = 0;
    FitPicture(m_tabButtons[i].surface.get(), kTabButtonIcon, pw, ph);
    Place(Member(A::TabButon_Icon, row), row, left + (kTabButtonWidth - pw) / 2, top + (kTabButtonHeight - ph) / 2,
          pw, ph, m_showTabs && pw > 0);
    Place(Member(A::ButTabMouse, row), row, left, top, kTabButtonWidth, kTabButtonHeight, m_showTabs);
  }
}

void USRibbon::SelectTab(int32_t index, bool force) {
  if (!force && index == m_currentTab) return;
  m_currentTab = index;
  const int32_t layout = LayoutValue(m_theme, m_showTabs);
  m_layoutValue = layout;
  Step([&] { BuildCategories(layout); });
  // The hover marks belong to the view that was: the next pointer move finds them again.
  m_hover = {};
  m_hoverCat = -1;
  m_pressed = {};
  m_toolTip.reset();
  m_focusButton = -1;
  for (size_t i = 0; i < m_tabs.size(); ++i) {
    const auto row = static_cast<int32_t>(i);
    const bool selected = m_tabs[i].index == m_currentTab && m_showTabs;
    for (A a : {A::Tab_left_over, A::Tab_center_over, A::Tab_right_over}) Member(a, row).Visible = false;
    for (A a : {A::Tab_left, A::Tab_center, A::Tab_right}) Member(a, row).Visible = selected;
    Member(A::Tab_caption, row).ForeColor = m_tabs[i].index == m_currentTab ? m_foreColorTabSelected : m_foreColorTabNormal;
  }
  Step([&] { BuildButtons(); });
  // While the ribbon has the focus, the mark starts on the new view's first button.
  if (m_hasFocus) {
    const std::vector<int32_t> rows = CurrentButtons();
    if (!rows.empty()) m_focusButton = rows.front();
  }
  Step([&] { UpdateAccessKeys(); });
  Step([&] { Compose(); });
}

void USRibbon::BuildCategories(int32_t layoutValue) {
  const size_t n = m_cats.size();
  for (A a : {A::Cat_Left_off, A::Cat_Center_off, A::Cat_Right_off, A::Cat_Left_on, A::Cat_Center_on, A::Cat_Right_on,
              A::Cat_Caption, A::CatMouse, A::Cat_Dlg, A::Cat_Dlg_on, A::Cat_Dlg_over, A::Cat_Dlg_down})
    LoadMembers(a, n);
  for (A a : {A::Cat_Left_off, A::Cat_Center_off, A::Cat_Right_off, A::Cat_Left_on, A::Cat_Center_on, A::Cat_Right_on,
              A::Cat_Caption, A::CatMouse, A::Cat_Dlg, A::Cat_Dlg_on, A::Cat_Dlg_over, A::Cat_Dlg_down})
    for (size_t i = 1; i < Array(a).size(); ++i) Array(a)[i].Visible = false;
  if (TabRowOf(m_currentTab) < 0) return;
  const int32_t top = layoutValue / 15;
  int32_t x = kCatLeft;
  for (size_t i = 0; i < n; ++i) {
    const CatRow& cat = m_cats[i];
    const auto row = static_cast<int32_t>(i);
    // A repeated Index shows once, as the first category of that Index.
    if (cat.tabIndex != m_currentTab || CatRowOf(cat.index) != row) continue;
    const int32_t width = CategoryWidth(row);
    const int32_t inner = std::max(0, width - 2 * kSlice);
    Place(Member(A::Cat_Left_off, row), row, x, top, kSlice, kCatHeight, true);
    Place(Member(A::Cat_Center_off, row), row, x + kSlice, top, inner, kCatHeight, true);
    Place(Member(A::Cat_Right_off, row), row, x + kSlice + inner, top, kSlice, kCatHeight, true);
    Place(Member(A::Cat_Left_on, row), row, x, top, kSlice, kCatHeight, false);
    Place(Member(A::Cat_Center_on, row), row, x + kSlice, top, inner, kCatHeight, false);
    Place(Member(A::Cat_Right_on, row), row, x + kSlice + inner, top, kSlice, kCatHeight, false);
    // The caption is centred in the plate, less the launcher's band when there is one.
    const int32_t captionWidth = TextWidth(cat.caption, false);
    const int32_t room = width - (cat.showDlg ? kLauncherBand : 0);
    RibbonElement& caption = Member(A::Cat_Caption, row);
    Place(caption, row, x + (room - captionWidth) / 2, top + kCatHeight - kCatFoot, captionWidth, kCatFoot - 1, true);
    caption.Caption = cat.caption;
    caption.ForeColor = m_foreColorCat;
    Place(Member(A::CatMouse, row), row, x, top, width, kCatHeight, true);
    if (cat.showDlg) {
      // The launcher's left is 15 pixels in from the plate's right, at the bottom corner.
      const int32_t left = x + width - 15;
      const int32_t dlgTop = top + kCatHeight - kCatFoot + (kCatFoot - kLauncherSize) / 2;
      Place(Member(A::Cat_Dlg, row), row, left, dlgTop, kLauncherSize, kLauncherSize, true);
      Place(Member(A::Cat_Dlg_on, row), row, left, dlgTop, kLauncherSize, kLauncherSize, false);
      Place(Member(A::Cat_Dlg_over, row), row, left, dlgTop, kLauncherSize, kLauncherSize, false);
      Place(Member(A::Cat_Dlg_down, row), row, left, dlgTop, kLauncherSize, kLauncherSize, false);
    }
    x += width + kCatGap;
  }
}

void USRibbon::BuildButtons() {
  const size_t n = m_buttons.size();
  for (A a : {A::Button_left_over, A::Button_center_over, A::Button_right_over, A::Button_left, A::Button_center,
              A::Button_right, A::Button_Icon, A::Button_Caption, A::Glip_off, A::Glip_on, A::ButMouse}) {
    LoadMembers(a, n);
    for (size_t i = 1; i < Array(a).size(); ++i) Array(a)[i].Visible = false;
  }
  for (size_t c = 0; c < m_cats.size(); ++c) {
    const RibbonElement& plate = Member(A::CatMouse, static_cast<int32_t>(c));
    if (plate.Visible) PlaceButtonsOf(static_cast<int32_t>(c), plate.Left, plate.Top, plate.Width);
  }
}

void USRibbon::PlaceButtonsOf(int32_t catRow, int32_t left, int32_t top, int32_t /*plateWidth*/) {
  const int32_t catIndex = m_cats[static_cast<size_t>(catRow)].index;
  int32_t x = left + kCatPad;
  const int32_t y = top + kButtonTop;
  for (size_t i = 0; i < m_buttons.size(); ++i) {
    const ButtonRow& b = m_buttons[i];
    if (b.catIndex != catIndex) continue;
    const auto row = static_cast<int32_t>(i);
    const int32_t width = ButtonWidth(row);
    const int32_t inner = std::max(0, width - 2 * kSlice);
    for (auto [l, c, r, visible] : {std::tuple{A::Button_left_over, A::Button_center_over, A::Button_right_over, false},
                                    std::tuple{A::Button_left, A::Button_center, A::Button_right, false}}) {
      Place(Member(l, row), row, x, y, kSlice, kButtonHeight, visible);
      Place(Member(c, row), row, x + kSlice, y, inner, kButtonHeight, visible);
      Place(Member(r, row), row, x + kSlice + inner, y, kSlice, kButtonHeight, visible);
    }
    // Picture and caption start at the margin, or are centred in the plate with ButtonCenter.
    int32_t pw = 0, ph = 0;
    FitPicture(b.surface.get(), kIconBox, pw, ph);
    const int32_t margin = kButtonMargin / 2;
    const int32_t iconLeft = m_buttonCenter ? x + (width - pw) / 2 : x + margin;
    Place(Member(A::Button_Icon, row), row, iconLeft, y + 4 + (kIconBox - ph) / 2, pw, ph, pw > 0);
    const int32_t captionWidth = TextWidth(b.caption, true);
    const int32_t captionLeft = m_buttonCenter ? x + (width - captionWidth) / 2 : x + margin;
    RibbonElement& caption = Member(A::Button_Caption, row);
    Place(caption, row, captionLeft, y + kCaptionTop, captionWidth, kCaptionHeight, !b.caption.empty());
    caption.Caption = b.caption;
    caption.ForeColor = m_foreColorButton;
    const int32_t glipLeft = m_buttonCenter ? x + (width - 5) / 2 : x + margin;
    Place(Member(A::Glip_off, row), row, glipLeft, y + kGlipTop, 5, 3, b.showDlg);
    Place(Member(A::Glip_on, row), row, glipLeft, y + kGlipTop, 5, 3, false);
    Place(Member(A::ButMouse, row), row, x, y, width, kButtonHeight, true);
    x += width;
  }
}

void USRibbon::UpdateAccessKeys() {
  // Alt with the hot key of a button of the current tab clicks it.
  String keys;
  for (int32_t row : CurrentButtons()) {
    const ButtonRow& b = m_buttons[static_cast<size_t>(row)];
    if (!b.hotKey.empty() && ButtonRowEnabled(row) && keys.find(b.hotKey) == String::npos) keys += b.hotKey;
  }
  AccessKeys(keys);
}

}  // namespace mx::chrome
