// USFlexGrid: late binding. Every member a program, a form or another control calls on the grid
// is reachable here by name, without regard to case, so that scripts and containers can drive
// the grid as they drive any other control.
//
// Three shapes of member:
//   property          Name reads, Name = v writes
//   indexed property  Name(i[, j]) reads, Name(i[, j]) = v writes; the value comes last
//   method            Name a, b, ... (optional arguments take the defaults of the C++ members)
// The call kind decides between reading and writing an indexed property, so an index that is
// optional (RowBackColor's row, -1 the current row) is never mistaken for the value.
//
// Errors are the host's: a value of the wrong type raises 13 (through the Variant's own
// conversions), a required argument that is left out or too many arguments 450, writing a
// read-only property 383, reading a write-only one 451, assigning to a method 438. Bad indices
// get what the member itself does (the validated members do nothing; the storage members raise
// 9). The grid has no default member: an empty name goes to the host and raises 438 there.
#include <functional>
#include <unordered_map>
#include <vector>

#include "controls/AboutBox.h"
#include "grid/USFlexGrid.h"
#include "host/Err.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/Strings.h"
#include "imagelist/APIImageList.h"
#include "platform/Window.h"

namespace mx::grid {

using host::CallKind;
using host::String;
using host::StringView;
using host::Variant;
using G = USFlexGrid;

namespace {

constexpr const char16_t* kSource = u"USFlexGrid";

// ---- arguments ----------------------------------------------------------------------------------

// A left-out optional argument arrives either as a shorter list or as a Missing value.
bool Given(std::span<Variant> a, size_t i) { return i < a.size() && !a[i].IsMissing(); }

const Variant& Req(std::span<Variant> a, size_t i) {
  if (!Given(a, i)) host::Raise(host::kErrWrongArgumentCount, kSource);
  return a[i];
}

int32_t L(std::span<Variant> a, size_t i) { return Req(a, i).ToLong(); }
int32_t L(std::span<Variant> a, size_t i, int32_t d) { return Given(a, i) ? a[i].ToLong() : d; }
int16_t I(std::span<Variant> a, size_t i, int16_t d) { return Given(a, i) ? a[i].ToInteger() : d; }
bool B(std::span<Variant> a, size_t i) { return Req(a, i).ToBoolean(); }
bool B(std::span<Variant> a, size_t i, bool d) { return Given(a, i) ? a[i].ToBoolean() : d; }
float F(std::span<Variant> a, size_t i, float d) { return Given(a, i) ? a[i].ToSingle() : d; }
String S(std::span<Variant> a, size_t i) { return Req(a, i).ToString(); }
String S(std::span<Variant> a, size_t i, StringView d) { return Given(a, i) ? a[i].ToString() : String(d); }

// An object argument: Nothing is accepted where the member can be cleared; anything that is no
// object is a type mismatch, as an argument declared As Object would be.
host::ObjectRef ObjectArg(const Variant& v) {
  if (!v.IsObject()) host::Raise(host::kErrTypeMismatch, kSource);
  return v.Obj();
}

template <typename T>
std::shared_ptr<T> TypedObject(const Variant& v) {
  host::ObjectRef o = ObjectArg(v);
  if (!o) return nullptr;
  auto typed = std::dynamic_pointer_cast<T>(o);
  if (!typed) host::Raise(host::kErrTypeMismatch, kSource);
  return typed;
}

Variant ObjectResult(host::ObjectRef o) { return o ? Variant(std::move(o)) : Variant::Nothing(); }

// Values of the persisted-property table, by their C++ type.
template <typename T>
struct Conv;
template <>
struct Conv<bool> {
  static bool From(const Variant& v) { return v.ToBoolean(); }
};
template <>
struct Conv<int32_t> {
  static int32_t From(const Variant& v) { return v.ToLong(); }
};
template <>
struct Conv<String> {
  static String From(const Variant& v) { return v.ToString(); }
};

// ---- the member table ---------------------------------------------------------------------------

using Args = std::span<Variant>;
using Getter = std::function<Variant(G&, Args indices)>;
using Letter = std::function<void(G&, Args indices, const Variant& value)>;
using Caller = std::function<Variant(G&, Args)>;

struct Member {
  size_t indices = 0;  // index arguments of a property
  size_t maxArgs = 0;  // the most arguments a method takes
  Getter get;
  Letter let;
  Caller call;
};

class GridMembers {
 public:
  void Prop(StringView name, Getter get, Letter let = {}) { Indexed(name, 0, std::move(get), std::move(let)); }
  void Indexed(StringView name, size_t indices, Getter get, Letter let = {}) {
    Member& m = m_members[host::UCase(name)];
    m.indices = indices;
    m.get = std::move(get);
    m.let = std::move(let);
  }
  void Method(StringView name, size_t maxArgs, Caller call) {
    Member& m = m_members[host::UCase(name)];
    m.maxArgs = maxArgs;
    m.call = std::move(call);
  }
  // Sub-like members that take no argument and return nothing.
  void Action(StringView name, void (*run)(G&)) {
    Method(name, 0, [run](G& g, Args) {
      run(g);
      return Variant();
    });
  }

  // False when the name is unknown (the caller falls back to the host's members).
  bool Dispatch(G& g, StringView name, CallKind kind, Args args, Variant& result) const {
    const auto it = m_members.find(host::UCase(name));
    if (it == m_members.end()) return false;
    const Member& m = it->second;
    const bool write = kind == CallKind::Let || kind == CallKind::Set;
    if (m.call && !write) {
      if (args.size() > m.maxArgs) host::Raise(host::kErrWrongArgumentCount, kSource);
      result = m.call(g, args);
      return true;
    }
    if (write) {
      if (!m.let) host::Raise(m.call ? host::kErrMemberNotSupported : 383, kSource);
      if (args.empty() || args.size() - 1 > m.indices) host::Raise(host::kErrWrongArgumentCount, kSource);
      m.let(g, args.first(args.size() - 1), args.back());
      result = Variant();
      return true;
    }
    if (!m.get) host::Raise(451, kSource);
    if (args.size() > m.indices) host::Raise(host::kErrWrongArgumentCount, kSource);
    result = m.get(g, args);
    return true;
  }

 private:
  std::unordered_map<String, Member> m_members;
};

// ---- groups of members --------------------------------------------------------------------------

void AddPersisted(GridMembers& t) {
  // The table-driven properties go to the model; Enabled is the control's own, which also
  // forwards to the host's window.
#define MX_GRID_DISPATCH(T, Name, Key, Default)                                             \
  t.Prop(u## #Name, [](G& g, Args) { return Variant(g.GridData::Name()); },                \
         [](G& g, Args, const Variant& v) { g.GridData::Name(Conv<T>::From(v)); });
  MX_GRID_PROPERTIES(MX_GRID_DISPATCH)
#undef MX_GRID_DISPATCH
  t.Prop(u"Enabled", [](G& g, Args) { return Variant(g.Enabled()); },
         [](G& g, Args, const Variant& v) { g.Enabled(v.ToBoolean()); });
  t.Prop(u"AllowColumnResizing", [](G& g, Args) { return Variant(g.AllowColumnResizing()); },
         [](G& g, Args, const Variant& v) { g.AllowColumnResizing(v.ToBoolean()); });
  t.Prop(u"ColumnHeaderSmall", [](G& g, Args) { return Variant(g.ColumnHeaderSmall()); },
         [](G& g, Args, const Variant& v) { g.ColumnHeaderSmall(v.ToBoolean()); });
  t.Prop(u"FocusRowHighlightKeepTextForeColor", [](G& g, Args) { return Variant(g.FocusRowHighlightKeepTextForeColor()); },
         [](G& g, Args, const Variant& v) { g.FocusRowHighlightKeepTextForeColor(v.ToBoolean()); });
  t.Prop(u"CacheIncrement", [](G& g, Args) { return Variant(g.CacheIncrement()); },
         [](G& g, Args, const Variant& v) { g.CacheIncrement(v.ToLong()); });
  t.Prop(u"ColumnHeaderLines", [](G& g, Args) { return Variant(g.ColumnHeaderLines()); },
         [](G& g, Args, const Variant& v) { g.ColumnHeaderLines(v.ToInteger()); });
  t.Prop(u"CaptionHeight", [](G& g, Args) { return Variant(g.CaptionHeight()); },
         [](G& g, Args, const Variant& v) { g.CaptionHeight(v.ToLong()); });
  t.Prop(u"Theme", [](G& g, Args) { return Variant(g.Theme()); },
         [](G& g, Args, const Variant& v) { g.Theme(v.ToLong()); });
  t.Prop(u"TotalLineShow", [](G& g, Args) { return Variant(g.TotalLineShow()); },
         [](G& g, Args, const Variant& v) { g.TotalLineShow(v.ToBoolean()); });
  t.Prop(u"HeaderFormatString", [](G& g, Args) { return Variant(g.HeaderFormatString()); },
         [](G& g, Args, const Variant& v) { g.HeaderFormatString(v.ToString()); });
  // Fonts are objects: a font that is no StdFont is a type mismatch; Nothing keeps the font the
  // grid has, since measuring and painting always need one.
  t.Prop(u"Font", [](G& g, Args) { return ObjectResult(g.Font()); },
         [](G& g, Args, const Variant& v) {
           if (auto f = TypedObject<host::StdFont>(v)) g.Font(std::move(f));
         });
  t.Prop(u"FontHeader", [](G& g, Args) { return ObjectResult(g.FontHeader()); },
         [](G& g, Args, const Variant& v) {
           if (auto f = TypedObject<host::StdFont>(v)) g.FontHeader(std::move(f));
         });
  t.Prop(u"ImageList", [](G& g, Args) { return ObjectResult(g.ImageList()); },
         [](G& g, Args, const Variant& v) { g.ImageList(TypedObject<imagelist::APIImageList>(v)); });
}

void AddCountsAndView(GridMembers& t) {
  t.Prop(u"Rows", [](G& g, Args) { return Variant(g.Rows()); });
  t.Prop(u"ListCount", [](G& g, Args) { return Variant(g.ListCount()); });
  t.Prop(u"Cols", [](G& g, Args) { return Variant(g.Cols()); });
  t.Prop(u"Row", [](G& g, Args) { return Variant(g.Row()); },
         [](G& g, Args, const Variant& v) { g.Row(v.ToLong()); });
  t.Prop(u"Col", [](G& g, Args) { return Variant(g.Col()); },
         [](G& g, Args, const Variant& v) { g.Col(v.ToLong()); });
  t.Prop(u"CellsChanged", [](G& g, Args) { return Variant(g.CellsChanged()); });
  t.Prop(u"EditPending", [](G& g, Args) { return Variant(g.EditPending()); });
  t.Prop(u"MouseRow", [](G& g, Args) { return Variant(g.MouseRow()); });
  t.Prop(u"MouseCol", [](G& g, Args) { return Variant(g.MouseCol()); });
  t.Prop(u"Redraw", [](G& g, Args) { return Variant(g.Redraw()); },
         [](G& g, Args, const Variant& v) { g.Redraw(v.ToBoolean()); });
  t.Prop(u"RowNumberWidth", [](G& g, Args) { return Variant(g.RowNumberWidth()); });
  t.Prop(u"VerticalScrollBarVisible", [](G& g, Args) { return Variant(g.VerticalScrollBarVisible()); });
  t.Prop(u"HorizontalScrollBarVisible", [](G& g, Args) { return Variant(g.HorizontalScrollBarVisible()); });
  t.Prop(u"VisibleHeight", [](G& g, Args) { return Variant(g.VisibleHeight()); });
  t.Prop(u"VisibleWidth", [](G& g, Args) { return Variant(g.VisibleWidth()); });
  t.Prop(u"RowsVisible", [](G& g, Args) { return Variant(g.RowsVisible()); });
  t.Prop(u"RowFirstVisible", [](G& g, Args) { return Variant(g.RowFirstVisible()); });
  t.Prop(u"RowLastVisible", [](G& g, Args) { return Variant(g.RowLastVisible()); });
  t.Prop(u"CheckedCount", [](G& g, Args) { return Variant(g.CheckedCount()); });
  t.Prop(u"SelectedCount", [](G& g, Args) { return Variant(g.SelectedCount()); });
  t.Prop(u"hWnd", [](G& g, Args) { return Variant(static_cast<int32_t>(g.hWnd())); });
  t.Prop(u"hDC", [](G& g, Args) { return Variant(static_cast<int32_t>(g.hDC())); });
  t.Method(u"GetScrollVerticalPosition", 0, [](G& g, Args) { return Variant(g.GetScrollVerticalPosition()); });
  t.Method(u"GetScrollHorizontalPosition", 0, [](G& g, Args) { return Variant(g.GetScrollHorizontalPosition()); });
  t.Method(u"SetScrollVerticalPosition", 1, [](G& g, Args a) {
    g.SetScrollVerticalPosition(L(a, 0));
    return Variant();
  });
  t.Action(u"Refresh", [](G& g) { g.Refresh(); });
  t.Method(u"RedrawEx", 2, [](G& g, Args a) {
    g.RedrawEx(L(a, 0), B(a, 1, true));
    return Variant();
  });
  // Brings the window's pending paint to the screen now.
  t.Action(u"WindowUpdate", [](G& g) { platform::UpdateWindow(g.hWnd()); });
  t.Action(u"About", [](G&) { controls::ShowAboutBox(); });
  // The platform has no task bar to report to: the forwarding family answers as a task bar
  // that accepted the call would (0, success) and changes nothing.
  for (const char16_t* name : {u"TaskBar_SetProgressState", u"TaskBar_SetProgressValue", u"TaskBar_SetOverlayIcon",
                               u"TaskBar_SetThumbnailClip", u"TaskBar_SetThumbnailTooltip"})
    t.Method(name, 5, [](G&, Args) { return Variant(int32_t{0}); });
}

void AddFill(GridMembers& t) {
  t.Method(u"BeginFill", 2, [](G& g, Args a) {
    g.BeginFill(L(a, 0, -1), L(a, 1, -1));
    return Variant();
  });
  t.Method(u"EndFill", 4, [](G& g, Args a) {
    g.EndFill(L(a, 0, -1), L(a, 1, 0), B(a, 2, true), L(a, 3, -1));
    return Variant();
  });
  t.Method(u"AddColumn", 11, [](G& g, Args a) {
    return Variant(g.AddColumn(S(a, 0), F(a, 1, 500.0f), L(a, 2, AlignToLeftCenter), I(a, 3, TypeString), S(a, 4, {}),
                               S(a, 5, {}), L(a, 6, AlignToLeftCenter), B(a, 7, false), L(a, 8, 0), B(a, 9, true),
                               B(a, 10, false)));
  });
  t.Method(u"AddItem", 7, [](G& g, Args a) {
    return Variant(g.AddItem(S(a, 0), L(a, 1, -1), B(a, 2, false), B(a, 3, false), B(a, 4, false), B(a, 5, true),
                             L(a, 6, 0)));
  });
  t.Method(u"FillGridFromQuery", 4, [](G& g, Args a) {
    // Checked before the grid is cleared, so a wrong argument leaves the grid as it was.
    const Variant& rs = Req(a, 0);
    if (!ObjectArg(rs)) host::Raise(host::kErrObjectNotSet, kSource);
    g.FillGridFromQuery(rs, B(a, 1, false), B(a, 2, false), B(a, 3, false));
    return Variant();
  });
  t.Action(u"Clear", [](G& g) { g.Clear(); });
  t.Action(u"ClearAll", [](G& g) { g.ClearAll(); });
}

void AddStorageMembers(GridMembers& t) {
  t.Method(u"SetColHeading", 2, [](G& g, Args a) {
    g.SetColHeading(L(a, 0), S(a, 1));
    return Variant();
  });
  t.Method(u"SetRowData", 2, [](G& g, Args a) {
    g.SetRowData(L(a, 0), L(a, 1));
    return Variant();
  });
  t.Method(u"SetRowForeColor", 2, [](G& g, Args a) {
    g.SetRowForeColor(L(a, 0), L(a, 1));
    return Variant();
  });
  t.Method(u"SetRowChecked", 2, [](G& g, Args a) {
    g.SetRowChecked(L(a, 0), B(a, 1));
    return Variant();
  });
  t.Method(u"SetCellAlignment", 3, [](G& g, Args a) {
    g.SetCellAlignment(L(a, 0), L(a, 1), L(a, 2));
    return Variant();
  });
  t.Method(u"SetCellAlignmentL", 2, [](G& g, Args a) {
    g.SetCellAlignmentL(L(a, 0), L(a, 1));
    return Variant();
  });
  t.Method(u"SetCellAlignmentR", 2, [](G& g, Args a) {
    g.SetCellAlignmentR(L(a, 0), L(a, 1));
    return Variant();
  });
  t.Method(u"SetCellAlignmentC", 2, [](G& g, Args a) {
    g.SetCellAlignmentC(L(a, 0), L(a, 1));
    return Variant();
  });
  t.Method(u"SetCellAlignmentForAllRows", 2, [](G& g, Args a) {
    const int32_t alignment = L(a, 0);
    const host::VariantArray* cols = Req(a, 1).Array();
    if (cols == nullptr) host::Raise(host::kErrTypeMismatch, kSource);
    std::vector<int32_t> list;
    list.reserve(cols->Size());
    for (const Variant& c : *cols) list.push_back(c.ToLong());
    g.SetCellAlignmentForAllRows(alignment, list);
    return Variant();
  });
  t.Method(u"SetCellForeColor", 3, [](G& g, Args a) {
    g.SetCellForeColor(L(a, 0), L(a, 1), L(a, 2));
    return Variant();
  });
  using CellFlagSetter = void (GridData::*)(int32_t, int32_t, bool);
  const std::pair<const char16_t*, CellFlagSetter> cellFonts[] = {
      {u"SetCellFontBold", &GridData::SetCellFontBold},
      {u"SetCellFontItalic", &GridData::SetCellFontItalic},
      {u"SetCellFontUnderline", &GridData::SetCellFontUnderline},
      {u"SetCellFontStrikethrough", &GridData::SetCellFontStrikethrough}};
  for (const auto& [name, set] : cellFonts)
    t.Method(name, 3, [set = set](G& g, Args a) {
      (g.*set)(L(a, 0), L(a, 1), B(a, 2));
      return Variant();
    });
  t.Method(u"SetCellData", 3, [](G& g, Args a) {
    g.SetCellData(L(a, 0), L(a, 1), L(a, 2));
    return Variant();
  });
  using RowForeFont = void (GridData::*)(int32_t, OLE_COLOR, bool, bool);
  const std::pair<const char16_t*, RowForeFont> rowForeFonts[] = {
      {u"SetRowForeColorAndFontBold", &GridData::SetRowForeColorAndFontBold},
      {u"SetRowForeColorAndFontItalic", &GridData::SetRowForeColorAndFontItalic},
      {u"SetRowForeColorAndFontUnderline", &GridData::SetRowForeColorAndFontUnderline},
      {u"SetRowForeColorAndFontStrikethrough", &GridData::SetRowForeColorAndFontStrikethrough}};
  for (const auto& [name, set] : rowForeFonts)
    t.Method(name, 4, [set = set](G& g, Args a) {
      (g.*set)(L(a, 0), L(a, 1), B(a, 2), B(a, 3));
      return Variant();
    });
  using RowCheckedFont = void (GridData::*)(int32_t, bool, bool);
  const std::pair<const char16_t*, RowCheckedFont> rowCheckedFonts[] = {
      {u"SetRowCheckedAndFontBold", &GridData::SetRowCheckedAndFontBold},
      {u"SetRowCheckedAndFontItalic", &GridData::SetRowCheckedAndFontItalic},
      {u"SetRowCheckedAndFontUnderline", &GridData::SetRowCheckedAndFontUnderline},
      {u"SetRowCheckedAndFontStrikethrough", &GridData::SetRowCheckedAndFontStrikethrough}};
  for (const auto& [name, set] : rowCheckedFonts)
    t.Method(name, 3, [set = set](G& g, Args a) {
      (g.*set)(L(a, 0), B(a, 1), B(a, 2));
      return Variant();
    });
}

// Cell properties, all (xRow, xCol) with both required.
void AddCells(GridMembers& t) {
#define MX_CELL(Name, Make, conv)                                                               \
  t.Indexed(u## #Name, 2, [](G& g, Args i) { return Variant(Make(g.Name(L(i, 0), L(i, 1)))); }, \
            [](G& g, Args i, const Variant& v) { g.Name(L(i, 0), L(i, 1), v.conv()); })
#define MX_SAME(x) (x)
  MX_CELL(CellAlignment, MX_SAME, ToLong);
  MX_CELL(CellBackColor, MX_SAME, ToLong);
  MX_CELL(CellForeColor, MX_SAME, ToLong);
  MX_CELL(CellFontName, MX_SAME, ToString);
  MX_CELL(CellHandPointer, MX_SAME, ToBoolean);
  MX_CELL(CellImage, MX_SAME, ToInteger);
  MX_CELL(CellChecked, MX_SAME, ToBoolean);
  MX_CELL(CellFontBold, MX_SAME, ToBoolean);
  MX_CELL(CellFontItalic, MX_SAME, ToBoolean);
  MX_CELL(CellFontUnderline, MX_SAME, ToBoolean);
  MX_CELL(CellFontStrikethrough, MX_SAME, ToBoolean);
  MX_CELL(CellWordWrap, MX_SAME, ToBoolean);
  MX_CELL(CellProgressValue, MX_SAME, ToInteger);
  MX_CELL(CellTag, MX_SAME, ToString);
  MX_CELL(CellData, MX_SAME, ToLong);
  MX_CELL(CellText, MX_SAME, ToString);
#undef MX_CELL
#undef MX_SAME
  // The grid-control spelling of CellText that programs written for other grids use.
  t.Indexed(u"TextMatrix", 2, [](G& g, Args i) { return Variant(g.CellText(L(i, 0), L(i, 1))); },
            [](G& g, Args i, const Variant& v) { g.CellText(L(i, 0), L(i, 1), v.ToString()); });
  t.Indexed(u"CellValue", 2, [](G& g, Args i) { return g.CellValue(L(i, 0), L(i, 1)); },
            [](G& g, Args i, const Variant& v) { g.CellValue(L(i, 0), L(i, 1), v); });
  t.Indexed(u"CellChanged", 2, [](G& g, Args i) { return Variant(g.CellChanged(L(i, 0), L(i, 1))); });
  t.Indexed(u"CellAsPicture", 2, [](G& g, Args i) { return ObjectResult(g.CellAsPicture(L(i, 0), L(i, 1))); });
  // CellPicture is written as a property (Set CellPicture(r, c) = p) or called with the picture
  // as the third argument; it has no read (CellAsPicture reads).
  t.Indexed(u"CellPicture", 2, {}, [](G& g, Args i, const Variant& v) {
    g.CellPicture(L(i, 0), L(i, 1), ObjectArg(v));
  });
  t.Method(u"CellPicture", 3, [](G& g, Args a) {
    g.CellPicture(L(a, 0), L(a, 1), ObjectArg(Req(a, 2)));
    return Variant();
  });
}

void AddRows(GridMembers& t) {
#define MX_ROW(Name, conv)                                                                        \
  t.Indexed(u## #Name, 1, [](G& g, Args i) { return Variant(g.Name(L(i, 0))); },                 \
            [](G& g, Args i, const Variant& v) { g.Name(L(i, 0), v.conv()); })
  MX_ROW(RowChecked, ToBoolean);
  MX_ROW(RowData, ToLong);
  MX_ROW(RowGroupHeader, ToBoolean);
  MX_ROW(RowHeight, ToLong);
  MX_ROW(RowImage, ToLong);
  MX_ROW(RowLocked, ToBoolean);
  MX_ROW(RowSelected, ToBoolean);
  MX_ROW(RowTag, ToString);
  MX_ROW(RowVisible, ToBoolean);
#undef MX_ROW
  t.Indexed(u"RowChanged", 1, [](G& g, Args i) { return Variant(g.RowChanged(L(i, 0))); });
  t.Indexed(u"RowMarkedAsNew", 1, [](G& g, Args i) { return Variant(g.RowMarkedAsNew(L(i, 0))); });
  // Write-only row members; the row may be left out for the current one (-1).
#define MX_ROW_WO(Name, conv) \
  t.Indexed(u## #Name, 1, {}, [](G& g, Args i, const Variant& v) { g.Name(L(i, 0, -1), v.conv()); })
  MX_ROW_WO(RowBackColor, ToLong);
  MX_ROW_WO(RowForeColor, ToLong);
  MX_ROW_WO(RowFontBold, ToBoolean);
  MX_ROW_WO(RowFontItalic, ToBoolean);
  MX_ROW_WO(RowFontUnderline, ToBoolean);
  MX_ROW_WO(RowFontStrikethrough, ToBoolean);
#undef MX_ROW_WO
  t.Action(u"CheckAllRowsSelected", [](G& g) { g.CheckAllRowsSelected(); });
  t.Action(u"UnCheckAllRowsSelected", [](G& g) { g.UnCheckAllRowsSelected(); });
  t.Action(u"CheckAllRowsVisibles", [](G& g) { g.CheckAllRowsVisibles(); });
  t.Action(u"UnCheckAllRowsVisibles", [](G& g) { g.UnCheckAllRowsVisibles(); });
  t.Action(u"InvertCheckedAllRowsVisibles", [](G& g) { g.InvertCheckedAllRowsVisibles(); });
  t.Action(u"SelectAllRows", [](G& g) { g.SelectAllRows(); });
  t.Action(u"UnselectAllRows", [](G& g) { g.UnselectAllRows(); });
  t.Action(u"SelectedClearAll", [](G& g) { g.SelectedClearAll(); });
  t.Method(u"GetIndexFromData", 2, [](G& g, Args a) { return Variant(g.GetIndexFromData(L(a, 0), B(a, 1, false))); });
  t.Method(u"GetIndexFromCellData", 3, [](G& g, Args a) {
    return Variant(g.GetIndexFromCellData(L(a, 0), L(a, 1), B(a, 2, false)));
  });
}

// Column and totals properties, all with the column as their one index.
void AddColumns(GridMembers& t) {
#define MX_COL(Name, conv)                                                                        \
  t.Indexed(u## #Name, 1, [](G& g, Args i) { return Variant(g.Name(L(i, 0))); },                 \
            [](G& g, Args i, const Variant& v) { g.Name(L(i, 0), v.conv()); })
  MX_COL(ColAlignment, ToLong);
  MX_COL(ColFormat, ToString);
  MX_COL(ColHeading, ToString);
  MX_COL(ColImageAlignment, ToLong);
  MX_COL(ColInputFilter, ToString);
  MX_COL(ColLocked, ToBoolean);
  MX_COL(ColTag, ToString);
  MX_COL(ColType, ToInteger);
  MX_COL(ColVisible, ToBoolean);
  MX_COL(ColWidth, ToSingle);
  MX_COL(ColWordWrap, ToBoolean);
  MX_COL(TotalLineColFontBold, ToBoolean);
  MX_COL(TotalLineColFontItalic, ToBoolean);
  MX_COL(TotalLineColFontUnderline, ToBoolean);
  MX_COL(TotalLineColFontStrikethrough, ToBoolean);
  MX_COL(TotalLineColAlignment, ToLong);
  MX_COL(TotalLineColInvisible, ToBoolean);
  MX_COL(TotalLineForeColor, ToLong);
  MX_COL(TotalLineCaption, ToString);
  MX_COL(TotalLineColAvg, ToBoolean);
#undef MX_COL
  t.Indexed(u"TotalColumns", 1, [](G& g, Args i) { return Variant(g.TotalColumns(L(i, 0))); });

  t.Method(u"SetColumnWidthAutoSize", 1, [](G& g, Args a) {
    g.SetColumnWidthAutoSize(L(a, 0));
    return Variant();
  });
  t.Method(u"StretchCol", 2, [](G& g, Args a) {
    g.StretchCol(L(a, 0), L(a, 1, 0));
    return Variant();
  });
  t.Action(u"ColumnsForceFit", [](G& g) { g.ColumnsForceFit(); });
  t.Action(u"RestoreColumnOrder", [](G& g) { g.RestoreColumnOrder(); });
  t.Method(u"FormatCells", 7, [](G& g, Args a) {
    g.FormatCells(L(a, 0, 0), L(a, 1, -1), L(a, 2, 0), L(a, 3, -1), L(a, 4, Format_Image),
                  Given(a, 5) ? a[5] : Variant(String()), L(a, 6, AlignToLeftCenter));
    return Variant();
  });
  t.Method(u"FormatCellsAlignment", 5, [](G& g, Args a) {
    g.FormatCellsAlignment(L(a, 0, 0), L(a, 1, -1), L(a, 2, 0), L(a, 3, -1), L(a, 4, AlignToLeftCenter));
    return Variant();
  });

  // Column files: the description of a failure comes back in the second argument (by
  // reference) and the result says whether it worked.
  using FileMember = bool (GridData::*)(StringView, String&);
  const std::pair<const char16_t*, FileMember> files[] = {
      {u"SaveColumnOrderToFile", &GridData::SaveColumnOrderToFile},
      {u"LoadColumnOrderFromFile", &GridData::LoadColumnOrderFromFile},
      {u"SaveColumnWidthsToFile", &GridData::SaveColumnWidthsToFile},
      {u"LoadColumnWidthsFromFile", &GridData::LoadColumnWidthsFromFile}};
  for (const auto& [name, member] : files)
    t.Method(name, 2, [member = member](G& g, Args a) {
      String error;
      const bool ok = (g.*member)(S(a, 0), error);
      if (a.size() > 1) a[1] = Variant(error);
      return Variant(ok);
    });
  // The registry forms are kept as members that do nothing; their arguments are still checked.
  for (const char16_t* name : {u"SaveColumnOrderToRegistry", u"LoadColumnOrderFromRegistry",
                               u"SaveColumnWidthsToRegistry", u"LoadColumnWidthsFromRegistry"})
    t.Method(name, 2, [](G&, Args a) {
      (void)S(a, 0);
      return Variant();
    });
}

void AddSortAndSearch(GridMembers& t) {
  t.Method(u"Sort", 4, [](G& g, Args a) {
    g.Sort(L(a, 0, -1), L(a, 1, -1), L(a, 2, -1), L(a, 3, -1));
    return Variant();
  });
  t.Method(u"FindItem", 5, [](G& g, Args a) {
    return Variant(g.FindItem(S(a, 0), L(a, 1, -1), L(a, 2, Search_Equal), B(a, 3, false), L(a, 4, 0)));
  });
  t.Method(u"FilterOn", 5, [](G& g, Args a) {
    g.FilterOn(S(a, 0), L(a, 1), L(a, 2, Search_Equal), B(a, 3, false), L(a, 4, 0));
    return Variant();
  });
  t.Method(u"FilterOnEx", 4, [](G& g, Args a) {
    g.FilterOnEx(S(a, 0), L(a, 1), L(a, 2, Search_Equal), L(a, 3, 0));
    return Variant();
  });
  t.Method(u"FilterOff", 1, [](G& g, Args a) {
    g.FilterOff(L(a, 0, 0));
    return Variant();
  });
}

void AddEditing(GridMembers& t) {
  t.Method(u"RowColSet", 2, [](G& g, Args a) {
    g.RowColSet(L(a, 0, -1), L(a, 1, -1));
    return Variant();
  });
  t.Method(u"ForceCellEdit", 3, [](G& g, Args a) {
    g.ForceCellEdit(L(a, 0, -1), L(a, 1, -1), B(a, 2, false));
    return Variant();
  });
  t.Method(u"BeginCellEdit", 3, [](G& g, Args a) { return Variant(g.BeginCellEdit(L(a, 0), L(a, 1), B(a, 2, false))); });
  t.Method(u"UpdateCell", 1, [](G& g, Args a) { return Variant(g.UpdateCell(B(a, 0, false))); });
  t.Method(u"BindControl", 3, [](G& g, Args a) {
    const int32_t col = L(a, 0);
    g.BindControl(col, ObjectArg(Req(a, 1)), L(a, 2, Move_Height | Move_Width | Move_Left | Move_Top));
    return Variant();
  });
  t.Method(u"RemoveRow", 1, [](G& g, Args a) {
    g.RemoveRow(L(a, 0));
    return Variant();
  });
  t.Method(u"DeleteChecked", 1, [](G& g, Args a) {
    g.DeleteChecked(B(a, 0, true));
    return Variant();
  });
  t.Action(u"DeleteSelected", [](G& g) { g.DeleteSelected(); });
}

const GridMembers& Members() {
  static const GridMembers table = [] {
    GridMembers t;
    AddPersisted(t);
    AddCountsAndView(t);
    AddFill(t);
    AddStorageMembers(t);
    AddCells(t);
    AddRows(t);
    AddColumns(t);
    AddSortAndSearch(t);
    AddEditing(t);
    return t;
  }();
  return table;
}

}  // namespace

Variant USFlexGrid::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  Variant result;
  if (Members().Dispatch(*this, name, kind, args, result)) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::grid
