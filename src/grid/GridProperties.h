#pragma once
// The grid's persisted properties as one table, so that the fields, their accessors and the
// property-bag code cannot drift apart. Each row: type, property name, bag key, default. The
// default is an expression evaluated inside the grid, so a default may name a property read
// before it (ArrowColor follows ForeColorHeader; the hover and pressed header colours follow the
// header colours); the order of the rows is therefore the order of reading and writing.
//
// Properties whose setters do more than store (CacheIncrement, ColumnHeaderLines, Theme,
// HeaderFormatString, CaptionHeight, the fonts) and the few with different written and read
// defaults are handled by hand in GridData.
#include "host/Colors.h"

namespace mx::grid {

// The base colour of the default palette.
inline constexpr host::OLE_COLOR kGridBaseColor = 0x9A572B;

#define MX_GRID_PROPERTIES(X)                                                                           \
  X(bool, AllowColumnDrag, u"ColumnDrag", false)                                                        \
  X(bool, AllowColumnHover, u"AllowColumnHover", true)                                                  \
  X(bool, AllowColumnSort, u"ColumnSort", false)                                                        \
  X(bool, AllowColumnSwap, u"ColumnSwap", false)                                                        \
  X(bool, AllowDelete, u"AllowDelete", false)                                                           \
  X(bool, AllowInsert, u"AllowInsert", false)                                                           \
  X(bool, AllowRowResizing, u"AllowRowResizing", false)                                                 \
  X(bool, AllowWordWrap, u"AllowWordWrap", false)                                                       \
  X(bool, ApplySelectionToImages, u"ApplySelectionToImages", false)                                     \
  X(bool, AllowEdit, u"Editable", false)                                                                \
  X(bool, AutoToolTips, u"AutoToolTips", true)                                                          \
  X(OLE_COLOR, BackColorBackground, u"BackColorBackground", 0xFFFFFF)                                   \
  X(OLE_COLOR, BackColorEdit, u"BackColorEdit", 0xD7FCFE)                                               \
  X(OLE_COLOR, BackColorEvenRows, u"BackColorEvenRows", 0xFBFBFC)                                       \
  X(bool, BackColorEvenRowsEnabled, u"BackColorEvenRowsEnabled", true)                                  \
  X(OLE_COLOR, BackColorSelected1, u"BackColorSelected1", host::ShiftRGBColor(kGridBaseColor, 120))     \
  X(OLE_COLOR, BackColorSelected2, u"BackColorSelected2", host::ShiftRGBColor(kGridBaseColor, 120))     \
  X(OLE_COLOR, BorderColor, u"BorderColor", host::ShiftRGBColor(kGridBaseColor, 120))                   \
  X(int32_t, BorderStyle, u"BorderStyle", 1)                                                            \
  X(host::String, Caption, u"Caption", host::String())                                                  \
  X(int32_t, CaptionAlignment, u"CaptionAlignment", 5)                                                  \
  X(OLE_COLOR, CaptionGradientColor1, u"CaptionGradientColor1", kGridBaseColor)                         \
  X(OLE_COLOR, CaptionGradientColor2, u"CaptionGradientColor2", kGridBaseColor)                         \
  X(bool, CaptionWordWrap, u"CaptionWordWrap", false)                                                   \
  X(bool, CenterRowImage, u"CenterRowImage", true)                                                      \
  X(bool, RowCheckBoxes, u"CheckBoxes", false)                                                          \
  X(bool, ColumnHeaders, u"ShowColumnHeaders", true)                                                    \
  X(OLE_COLOR, ColumnSeparatorColor, u"ColumnSeparatorColor", kGridBaseColor)                           \
  X(OLE_COLOR, ColumnSeparatorColorOver, u"ColumnSeparatorColorOver", 0x7B3E00)                         \
  X(OLE_COLOR, HeaderBorderColorOver, u"HeaderBorderColorOver", 0x7B3E00)                               \
  X(OLE_COLOR, ColumnSeparatorColorDown, u"ColumnSeparatorColorDown", 0x501A00)                         \
  X(OLE_COLOR, HeaderBorderColorDown, u"HeaderBorderColorDown", 0x501A00)                               \
  X(bool, DisplayEllipsis, u"DisplayEllipsis", true)                                                    \
  X(int32_t, EditMove, u"EditMove", 0)                                                                  \
  X(int32_t, EditTrigger, u"EditTrigger", 52)                                                           \
  X(bool, Enabled, u"Enabled", true)                                                                    \
  X(OLE_COLOR, FocusRectColor, u"FocusRectColor", 0xFFF3E5)                                             \
  X(OLE_COLOR, FocusRectBorderColor, u"FocusRectBorderColor", 0xFFF3E5)                                 \
  X(bool, FocusRectHide, u"HideSelection", false)                                                       \
  X(int32_t, FocusRectMode, u"FocusRectMode", 1)                                                        \
  X(OLE_COLOR, ForeColor, u"ForeColor", 0x000000)                                                       \
  X(OLE_COLOR, ForeColorHeader, u"ForeColorHeader", 0x000000)                                           \
  X(OLE_COLOR, ForeColorHeaderOver, u"ForeColorHeaderOver", 0x000000)                                   \
  X(OLE_COLOR, ArrowColor, u"ArrowColor", m_ForeColorHeader)                                            \
  X(OLE_COLOR, ForeColorEdit, u"ForeColorEdit", 0x000080)                                               \
  X(OLE_COLOR, ForeColorSelected, u"ForeColorSelected", 0x000080)                                       \
  X(int32_t, FreezeAtCol, u"FreezeAtCol", -1)                                                           \
  X(OLE_COLOR, GridColor, u"GridColor", 0xFAFAFE)                                                       \
  X(int32_t, GridLines, u"GridLines", 1)                                                                \
  X(int32_t, GridLineWidth, u"GridLineWidth", 1)                                                        \
  X(OLE_COLOR, HeaderGradientColor1, u"HeaderGradientColor1", host::ShiftRGBColor(kGridBaseColor, 120)) \
  X(OLE_COLOR, HeaderGradientColor2, u"HeaderGradientColor2", host::ShiftRGBColor(kGridBaseColor, 120)) \
  X(OLE_COLOR, HeaderGradientColorOver1, u"HeaderGradientColorOver1",                                   \
    host::ShiftRGBColor(m_HeaderGradientColor1, 20))                                                    \
  X(OLE_COLOR, HeaderGradientColorOver2, u"HeaderGradientColorOver2",                                   \
    host::ShiftRGBColor(m_HeaderGradientColor2, 20))                                                    \
  X(OLE_COLOR, HeaderGradientColorDown1, u"HeaderGradientColorDown1",                                   \
    host::ShiftRGBColor(m_HeaderGradientColor1, 10))                                                    \
  X(OLE_COLOR, HeaderGradientColorDown2, u"HeaderGradientColorDown2",                                   \
    host::ShiftRGBColor(m_HeaderGradientColor2, 10))                                                    \
  X(int32_t, MaxLineCount, u"MaxLineCount", 0)                                                          \
  X(int32_t, MinRowHeight, u"MinRowHeight", 27)                                                         \
  X(int32_t, MinVerticalOffset, u"MinVerticalOffset", 6)                                                \
  X(int32_t, MultiSelect, u"MultiSelect", 0)                                                            \
  X(bool, PreserveSortedColumns, u"PreserveSortedColumns", true)                                        \
  X(OLE_COLOR, ProgressBarColor1, u"ProgressBarColor1", 0x008000)                                       \
  X(OLE_COLOR, ProgressBarColor2, u"ProgressBarColor2", 0x008000)                                       \
  X(int32_t, ScrollBars, u"ScrollBars", 2)                                                              \
  X(bool, ScrollTrack, u"ScrollTrack", true)                                                            \
  X(int32_t, SearchColumn, u"SearchColumn", 0)                                                          \
  X(bool, ShowRowNumbers, u"ShowRowNumbers", false)                                                     \
  X(bool, ShowRowNumbersVary, u"ShowRowNumbersVary", false)

}  // namespace mx::grid
