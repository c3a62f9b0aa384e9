#pragma once
// The grid's public enumerations and the records of its five tables.
//
// Five parallel tables hold the content: columns, rows (each with its cells), formats, total
// columns and column totals. None is ever reordered: sorting and column moves permute only the
// two order maps, rowOrder (display row -> storage row) and colOrder (display column -> storage
// column). Everything public works on display positions and maps through them, except the
// storage-index Set* members meant for fills.
#include <cstdint>
#include <memory>

#include "grid/GridText.h"
#include "host/Colors.h"
#include "host/String.h"
#include "host/Variant.h"

namespace mx::grid {

using host::OLE_COLOR;

// Member names carry the blanks of the public names as underscores.
enum GRID_DATA_TYPE : int16_t {
  TypeString = 0,
  TypeNumeric = 1,
  TypeDate = 2,
  TypeBoolean = 3,
  TypeProgressBar = 4,
  TypeCustom = 5,
  TypeButton = 6,
};

// Selectors of FormatCells; not the cell's flag bits.
enum GRID_CELL_FORMAT : int32_t {
  Format_BackColor = 1,
  Format_ForeColor = 4,
  Format_Image = 8,
  Format_FontName = 16,
  Format_FontBold = 32,
  Format_FontItalic = 64,
  Format_FontUnderline = 128,
  Format_FontStrikethrough = 256,
  Format_HandPointer = 512,
  Format_Alignment = 1024,
};

// The platform's DrawText alignment flags, passed to the text call unchanged.
enum GRID_ALIGNMENT : int32_t {
  AlignToLeftTop = 0,
  AlignToCenterTop = 1,
  AlignToRightTop = 2,
  AlignToLeftCenter = 4,
  AlignToCenterCenter = 5,
  AlignToRightCenter = 6,
  AlignToLeftBottom = 8,
  AlignToCenterBottom = 9,
  AlignToRightBottom = 10,
};

enum GRID_CAPTION_ALIGNMENT : int32_t { AlignToLeft = 4, AlignToCenter = 5, AlignToRight = 6 };
enum GRID_BORDER_STYLE : int32_t { No_Border = 0, Fixed_Single = 1 };
enum GRID_LINES : int32_t { None_Lines = 0, Both_Lines = 1, Vertical_Lines = 2, Horizontal_Lines = 3 };
enum GRID_FOCUSRECT : int32_t { Focus_None = 0, Focus_Row = 1, Focus_Col = 2 };
enum GRID_SCROLLBAR_ORIENTATION : int32_t { Scroll_Horizontal = 0, Scroll_Vertical = 1, Scroll_Both = 2, Scroll_None = 3 };
enum GRID_MULTISELECT : int32_t { Single_Select = 0, Multi_Standard = 1, Multi_Latch = 2 };
enum GRID_EDIT_TRIGGER : int32_t {
  None_Edit = 0,
  OnEnterKey = 2,
  OnF2Key = 4,
  OnMouseClick = 8,
  OnMouseDblClick = 16,
  OnAnyKey = 32,
  OnF2OrDblClick = 52,
};
enum GRID_EDIT_MOVE : int32_t { DontMove = 0, MoveRight = 1, MoveDown = 2 };
enum GRID_MOVE_CONTROL : int32_t { Move_None = 0, Move_Height = 1, Move_Width = 2, Move_Left = 4, Move_Top = 8 };
enum GRID_SORT_TYPE : int32_t { Sort_Normal = 0, Sort_Ascending = 1, Sort_Descending = 2 };
enum GRID_SEARCH_MODE : int32_t {
  Search_Equal = 0,
  Search_GreaterEqual = 1,
  Search_Like = 2,
  Search_Navigate = 4,
  Search_BeginsWith = 5,
  Search_EndsWith = 6,
};

// Bits of GridRow::flags.
inline constexpr int16_t kRowChecked = 2;
inline constexpr int16_t kRowSelected = 4;
inline constexpr int16_t kRowChanged = 8;
inline constexpr int16_t kRowNew = 512;
inline constexpr int16_t kRowLocked = 1024;

// Bits of GridCell::flags. In a TypeProgressBar column the same word is the progress value.
inline constexpr int16_t kCellChecked = 2;
inline constexpr int16_t kCellChanged = 8;
inline constexpr int16_t kCellBold = 16;
inline constexpr int16_t kCellItalic = 32;
inline constexpr int16_t kCellUnderline = 64;
inline constexpr int16_t kCellStrikethrough = 128;
inline constexpr int16_t kCellWordWrap = 256;

// The cell format index is 16 bits wide.
inline constexpr int32_t kMaxFormats = 32767;

struct GridColumn {
  host::ObjectRef boundControl;
  float widthScaled = 0;   // host scale units, as last set; ColWidth reads this
  int32_t widthPixels = 0; // what painting and hit testing use
  int32_t leftPixels = 0;  // refreshed while the header band is drawn
  int32_t alignment = AlignToLeftCenter;       // header text only
  int32_t imageAlignment = AlignToLeftCenter;  // images in the cells
  int16_t sortState = 0;   // 0 none, 2 ascending, 1 descending (reverse of GRID_SORT_TYPE)
  int16_t dataType = TypeString;
  int16_t cellFlagsDefault = 0;  // flags of new cells: kCellWordWrap for a wrapped column
  int16_t moveControl = 0;
  bool visible = true;
  bool locked = false;
  host::String heading;
  host::String format;
  host::String inputFilter;
  host::String tag;
};

// 40 bytes. Tag and picture are rare, so they live in a side table (GridData's cell extras) and
// the cell keeps only their slot number.
struct GridCell {
  GridText text;
  int32_t data = 0;
  uint32_t extra = 0;  // slot + 1 in the extras table, 0 when the cell has neither tag nor picture
  int16_t formatIndex = 0;
  int16_t flags = 0;
  int16_t alignment = AlignToCenterCenter;
  bool measured = false;
};
static_assert(sizeof(GridCell) == 40);

struct GridCellExtra {
  host::String tag;
  host::ObjectRef picture;
};

struct GridRow {
  std::unique_ptr<GridCell[]> cells;  // one per storage column
  GridText tag;
  int32_t height = 0;
  int32_t image = 0;
  int32_t data = 0;
  int16_t flags = 0;
  bool groupHeader = false;
  bool visible = true;
};

struct GridFormat {
  OLE_COLOR backColor = 0;
  OLE_COLOR foreColor = 0;
  host::String fontName;
  bool handPointer = false;
  int32_t useCount = 0;  // 0 marks a free slot; only ever raised, except when rows are removed
  int16_t image = 0;

  // The interning key: every field but the count.
  [[nodiscard]] bool SameLook(const GridFormat& o) const {
    return backColor == o.backColor && foreColor == o.foreColor && fontName == o.fontName &&
           handPointer == o.handPointer && image == o.image;
  }
};

struct GridTotalColumn {
  int32_t alignment = 0;
  bool average = false;
  host::String caption;
  bool invisible = false;
  bool fontItalic = false;
  bool fontBold = false;
  bool fontUnderline = false;
  bool fontStrikethrough = false;
  OLE_COLOR foreColor = 0;
};

}  // namespace mx::grid
