// Persistence, themes, the design-time column string and the fill from a recordset.
#include <type_traits>

#include "frame/Themes.h"
#include "grid/GridData.h"
#include "host/Conversion.h"
#include "host/Err.h"
#include "host/Strings.h"
#include "utility/APIStringBuilder.h"

namespace mx::grid {

namespace {

template <typename T>
T FromBag(const host::Variant& v) {
  if constexpr (std::is_same_v<T, bool>) return v.ToBoolean();
  else if constexpr (std::is_same_v<T, int16_t>) return v.ToInteger();
  else if constexpr (std::is_same_v<T, int32_t>) return v.ToLong();
  else return v.ToString();
}

std::shared_ptr<host::StdFont> FontFromBag(const host::Variant& v, const std::shared_ptr<host::StdFont>& fallback) {
  auto font = std::dynamic_pointer_cast<host::StdFont>(v.IsObject() ? v.Obj() : nullptr);
  if (font) return font;
  return fallback ? fallback->Clone() : std::make_shared<host::StdFont>();
}

host::Variant FontDefault(const std::shared_ptr<host::StdFont>& ambient) {
  return ambient ? host::Variant(ambient) : host::Variant::Nothing();
}

}  // namespace

// ---- persistence ------------------------------------------------------------------------------

void GridData::InitProperties(std::shared_ptr<host::StdFont> ambientFont) {
#define MX_GRID_INIT(T, Name, Key, Default) m_##Name = static_cast<T>(Default);
  MX_GRID_PROPERTIES(MX_GRID_INIT)
#undef MX_GRID_INIT
  // A new control differs from an empty bag in these three.
  m_allowColumnResizing = true;
  m_columnHeaderSmall = true;
  m_focusRowKeepFore = true;
  m_totalLineShow = false;
  m_cacheIncrement = 1000;
  m_columnHeaderLines = 3;
  m_theme = 2;
  m_headerFormatString.clear();
  m_font = ambientFont ? ambientFont->Clone() : std::make_shared<host::StdFont>();
  m_fontHeader = ambientFont ? ambientFont->Clone() : std::make_shared<host::StdFont>();
  m_captionHeight = 2 * FontTextHeight(*m_font);
  m_rowHeightCache = -1;
}

void GridData::ReadProperties(const host::PropertyBag& PropBag, std::shared_ptr<host::StdFont> ambientFont) {
#define MX_GRID_READ(T, Name, Key, Default) \
  m_##Name = FromBag<T>(PropBag.ReadProperty(Key, host::Variant(static_cast<T>(Default))));
  MX_GRID_PROPERTIES(MX_GRID_READ)
#undef MX_GRID_READ
  m_allowColumnResizing = PropBag.ReadProperty(u"AllowColumnResizing", host::Variant(false)).ToBoolean();
  m_columnHeaderSmall = PropBag.ReadProperty(u"ColumnHeaderSmall", host::Variant(true)).ToBoolean();
  m_focusRowKeepFore = PropBag.ReadProperty(u"FocusRowHighlightKeepTextForeColor", host::Variant(true)).ToBoolean();
  m_totalLineShow = PropBag.ReadProperty(u"TotalLineShow", host::Variant(false)).ToBoolean();
  int32_t cache = PropBag.ReadProperty(u"CacheIncrement", host::Variant(int32_t{1000})).ToLong();
  m_cacheIncrement = cache < 0 ? 1000 : cache;
  int16_t lines = PropBag.ReadProperty(u"ColumnHeaderLines", host::Variant(int16_t{3})).ToInteger();
  m_columnHeaderLines = lines < 1 ? int16_t{1} : lines;
  m_theme = PropBag.ReadProperty(u"Theme", host::Variant(int32_t{2})).ToLong();
  m_headerFormatString = PropBag.ReadProperty(u"HeaderFormatString", host::Variant(host::String())).ToString();
  m_font = FontFromBag(PropBag.ReadProperty(u"Font", FontDefault(ambientFont)), ambientFont);
  m_fontHeader = FontFromBag(PropBag.ReadProperty(u"FontHeader", FontDefault(ambientFont)), ambientFont);
  m_rowHeightCache = -1;
  // The caption height's default depends on the font just read.
  m_captionHeight =
      PropBag.ReadProperty(u"CaptionHeight", host::Variant(int32_t{2 * FontTextHeight(*m_font)})).ToLong();
  ClearAll();
  RebuildColumnsFromHeaderFormat();
}

void GridData::WriteProperties(host::PropertyBag& PropBag, std::shared_ptr<host::StdFont> ambientFont) const {
#define MX_GRID_WRITE(T, Name, Key, Default) \
  PropBag.WriteProperty(Key, host::Variant(m_##Name), host::Variant(static_cast<T>(Default)));
  MX_GRID_PROPERTIES(MX_GRID_WRITE)
#undef MX_GRID_WRITE
  PropBag.WriteProperty(u"AllowColumnResizing", host::Variant(m_allowColumnResizing), host::Variant(false));
  // These three are written whatever their value.
  PropBag.WriteProperty(u"ColumnHeaderSmall", host::Variant(m_columnHeaderSmall));
  PropBag.WriteProperty(u"FocusRowHighlightKeepTextForeColor", host::Variant(m_focusRowKeepFore));
  PropBag.WriteProperty(u"TotalLineShow", host::Variant(m_totalLineShow));
  PropBag.WriteProperty(u"CacheIncrement", host::Variant(m_cacheIncrement), host::Variant(int32_t{1000}));
  PropBag.WriteProperty(u"ColumnHeaderLines", host::Variant(m_columnHeaderLines), host::Variant(int16_t{3}));
  PropBag.WriteProperty(u"Theme", host::Variant(m_theme), host::Variant(int32_t{2}));
  PropBag.WriteProperty(u"HeaderFormatString", host::Variant(m_headerFormatString), host::Variant(host::String()));
  PropBag.WriteProperty(u"Font", host::Variant(m_font), FontDefault(ambientFont));
  PropBag.WriteProperty(u"FontHeader", host::Variant(m_fontHeader), FontDefault(ambientFont));
  PropBag.WriteProperty(u"CaptionHeight", host::Variant(m_captionHeight),
                        host::Variant(int32_t{2 * FontTextHeight(*m_font)}));
}

// ---- themes ---------------------------------------------------------------------------------

void GridData::Theme(int32_t xValue) {
  m_theme = xValue;
  OnPropertyChanged(u"Theme");
  ApplyTheme();
}

void GridData::ApplyTheme() {
  using frame::GetThemeColor;
  using host::ShiftRGBColor;
  const int32_t t = m_theme;
  if (t == 0 || t == 1) {
    // The two Office looks use colours of their own rather than the palette.
    const bool blue = t == 0;
    m_BackColorSelected1 = blue ? 0xBBF2FF : 0xDBFDFF;
    m_BackColorSelected2 = 0xBBF2FF;
    m_BorderColor = blue ? 0xE2A981 : 0x808080;
    m_CaptionGradientColor1 = blue ? 0xFFEFE3 : 0xFFFFFF;
    m_CaptionGradientColor2 = blue ? 0xFFE3CE : 0xE0E0E0;
    m_GridColor = 0xFBFBFB;
    m_HeaderBorderColorOver = blue ? 0xBBF2FF : 0x78A8C1;
    m_HeaderBorderColorDown = blue ? 0x79C0FF : 0x78A8C1;
    m_HeaderGradientColor1 = blue ? 0xFFEFE3 : 0xFFFFFF;
    m_HeaderGradientColor2 = blue ? 0xFFE3CE : 0xE0E0E0;
    m_HeaderGradientColorOver1 = blue ? 0xBBF2FF : 0xDBFDFF;
    m_HeaderGradientColorOver2 = 0xBBF2FF;
    m_HeaderGradientColorDown1 = blue ? 0x79C0FF : 0xA4D6FF;
    m_HeaderGradientColorDown2 = 0x79C0FF;
  } else {
    m_BackColorSelected1 = ShiftRGBColor(GetThemeColor(t, 8), 120);
    m_BackColorSelected2 = ShiftRGBColor(GetThemeColor(t, 9), 120);
    m_BorderColor = ShiftRGBColor(GetThemeColor(t, 8), 120);
    m_CaptionGradientColor1 = GetThemeColor(t, 8);
    m_CaptionGradientColor2 = GetThemeColor(t, 9);
    m_GridColor = 0xFAFAFE;
    m_HeaderBorderColorOver = GetThemeColor(t, 7);
    m_HeaderBorderColorDown = GetThemeColor(t, 6);
    m_HeaderGradientColor1 = ShiftRGBColor(GetThemeColor(t, 8), 120);
    m_HeaderGradientColor2 = ShiftRGBColor(GetThemeColor(t, 9), 120);
    m_HeaderGradientColorOver1 = ShiftRGBColor(m_HeaderGradientColor1, 20);
    m_HeaderGradientColorOver2 = ShiftRGBColor(m_HeaderGradientColor2, 20);
    m_HeaderGradientColorDown1 = ShiftRGBColor(m_HeaderGradientColor1, 10);
    m_HeaderGradientColorDown2 = ShiftRGBColor(m_HeaderGradientColor2, 10);
  }
  m_ForeColorHeader = 0x000000;
  m_ForeColorHeaderOver = 0x000000;
  // Shared by every look.
  m_BackColorEvenRows = GetThemeColor(t, 24);
  m_BackColorEvenRowsEnabled = true;
  m_FocusRectBorderColor = GetThemeColor(t, 25);
  m_FocusRectColor = GetThemeColor(t, 26);
  m_ColumnSeparatorColor = GetThemeColor(t, 4);
  m_ColumnSeparatorColorOver = GetThemeColor(t, 7);
  m_ColumnSeparatorColorDown = GetThemeColor(t, 6);
  m_ProgressBarColor1 = 0x008000;
  m_ProgressBarColor2 = 0x008000;
  m_ArrowColor = m_ForeColorHeader;
  m_BackColorBackground = 0xFFFFFF;
  m_BackColorEdit = 0xD7FCFE;
  m_ForeColor = 0x000000;
  m_ForeColorEdit = 0x000080;
  m_ForeColorSelected = 0x000080;
  if (!m_userMode) RebuildColumnsFromHeaderFormat();
  OnMetricsChanged();
  RepaintIfRedraw();
}

// ---- HeaderFormatString -----------------------------------------------------------------------

host::String GridData::HeaderFormatString() const {
  if (!m_headerFormatString.empty()) return m_headerFormatString;
  // Composed from the live columns in storage order. The width is given in pixels although the
  // parser reads host units: callers of the composed form have always had to allow for that.
  host::String out;
  auto number = [](int32_t v) { return host::CStr(host::Variant(v)); };
  for (size_t i = 0; i < m_columns.size(); ++i) {
    const GridColumn& c = m_columns[i];
    if (i > 0) out += u'|';
    out += c.heading + u';' + number(c.widthPixels) + u';' + number(c.alignment) + u';' + number(c.dataType) + u';' +
           c.format + u';' + c.inputFilter + u';' + number(c.imageAlignment) + u';' + number(c.cellFlagsDefault) +
           u";0;" + number(c.visible ? -1 : 0) + u';' + number(c.locked ? -1 : 0);
  }
  return out;
}

void GridData::HeaderFormatString(host::StringView xValue) {
  m_headerFormatString = host::String(xValue);
  OnPropertyChanged(u"HeaderFormatString");
  if (!m_userMode) RebuildColumnsFromHeaderFormat();
  OnMetricsChanged();
  RepaintIfRedraw();
}

void GridData::RebuildColumnsFromHeaderFormat() {
  // Rows cannot outlive their columns: the row tables start empty again.
  if (m_lastRow >= 0) Clear();
  m_columns.clear();
  m_totalColumns.clear();
  m_columnTotals.clear();
  m_colOrder.clear();
  m_col = -1;
  if (m_headerFormatString.empty()) return;
  for (const host::String& entry : host::Split(m_headerFormatString, u"|")) {
    if (entry.empty()) continue;
    std::vector<host::String> f = host::Split(entry, u";");
    auto field = [&](size_t i) -> host::StringView { return i < f.size() ? host::StringView(f[i]) : host::StringView(); };
    // Numbers are read as source code writes them, whatever the regional setting.
    auto num = [&](size_t i, double fallback) { return i < f.size() && !f[i].empty() ? host::Val(f[i]) : fallback; };
    AddColumn(field(0), static_cast<float>(num(1, 500.0)), static_cast<int32_t>(num(2, AlignToLeftCenter)),
              static_cast<int16_t>(num(3, TypeString)), field(4), field(5),
              static_cast<int32_t>(num(6, AlignToLeftCenter)), num(7, 0) != 0, static_cast<int32_t>(num(8, 0)),
              num(9, -1) != 0, num(10, 0) != 0);
  }
}

// ---- fill from a recordset --------------------------------------------------------------------

void GridData::FillGridFromQuery(const host::Variant& ActiveRecordset, bool AddColumns, bool AddedColumnWidthAutoSize,
                                 bool FitColumnWidth) {
  using host::CallByName;
  using host::CallKind;
  using host::Variant;
  if (AddColumns) ClearAll();
  else Clear();

  const Variant& rs = ActiveRecordset;
  if (CallByName(rs, u"EOF", CallKind::Get).ToBoolean() && CallByName(rs, u"BOF", CallKind::Get).ToBoolean()) return;

  Variant fields = CallByName(rs, u"Fields", CallKind::Get);
  if (AddColumns) {
    for (const Variant& field : fields.ToObject()->EnumerateItems()) {
      int32_t display = AddColumn(CallByName(field, u"Name", CallKind::Get).ToString(), 500.0f, AlignToLeftCenter,
                                  TypeString, {}, {}, AlignToLeftCenter, false, 0, true, false);
      if (AddedColumnWidthAutoSize) OnAutoSizeColumn(display);
    }
  }

  utility::APIStringBuilder line;
  while (!CallByName(rs, u"EOF", CallKind::Get).ToBoolean()) {
    const int32_t count = CallByName(fields, u"Count", CallKind::Get).ToLong();
    for (int32_t i = 0; i < count; ++i) {
      if (i > 0) line.Append(u'\t');
      Variant field = CallByName(fields, u"Item", CallKind::Get, {Variant(i)});
      Variant value = CallByName(field, u"Value", CallKind::Get);
      // Null reads as an empty cell, as the host's "&" joins it.
      if (!value.IsNull()) line.Append(value.ToString());
    }
    AddItem(line.ToString());
    line.Clear();
    CallByName(rs, u"MoveNext", CallKind::Method);
  }
  if (FitColumnWidth) OnColumnsForceFit();
}

}  // namespace mx::grid
