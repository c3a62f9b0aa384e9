// mxdemo OUT.png [FORM.frm]: draws a showcase of the drawing system on a 640 x 480 memory
// surface and writes it as a PNG; everything goes through the same calls the controls use. With a
// form file, OUT.png is the form as it shows at run time and the showcase goes beside it as
// OUT-drawing.png.
//
// mxdemo --form FORM.frm OUT.png [MS]: only the form, as it shows after MS milliseconds of the
// virtual clock (default 500), so that timer-driven controls (reads, animations) have run.
//
// mxdemo --gallery FORM.frm DATABASE.db OUT.png [--window]: the gallery, a form with every
// control of the library; its grids are filled from the orders of the database, the clock runs
// 500 ms and the form is written as OUT.png. With --window it then stays open in a real window
// until it is closed (headless, with a message, when no display can be opened).
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "entry/EntryExample.h"
#include "chrome/USRibbon.h"
#include "chrome/USRibbonExample.h"
#include "entry/ListsExample.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "grid/GridExample.h"
#include "grid/USFlexGrid.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Recordset.h"
#include "host/ScriptPlayer.h"
#include "morvantix/Library.h"
#include "platform/Clock.h"

#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/MessageQueue.h"
#include "platform/PngEncoder.h"
#include "platform/SdlBackend.h"
#include "platform/Text.h"

using namespace mx::platform;

namespace {

constexpr int kWidth = 640, kHeight = 480;

// Selects an object for the lifetime of the guard and deletes it afterwards.
class Use {
 public:
  Use(HDC dc, HGDIOBJ obj) : m_dc(dc), m_obj(obj), m_old(SelectObject(dc, obj)) {}
  ~Use() {
    SelectObject(m_dc, m_old);
    DeleteObject(m_obj);
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

 private:
  HDC m_dc;
  HGDIOBJ m_obj, m_old;
};

void gradient(HDC dc, RECT r, COLORREF from, COLORREF to, ULONG mode) {
  // 8-bit channels become 16-bit vertex values as c * 256.
  TRIVERTEX v[2] = {
      TRIVERTEX{r.left, r.top, static_cast<COLOR16>(GetRValue(from) << 8), static_cast<COLOR16>(GetGValue(from) << 8),
                static_cast<COLOR16>(GetBValue(from) << 8), 0xFF00},
      TRIVERTEX{r.right, r.bottom, static_cast<COLOR16>(GetRValue(to) << 8), static_cast<COLOR16>(GetGValue(to) << 8),
                static_cast<COLOR16>(GetBValue(to) << 8), 0xFF00}};
  GRADIENT_RECT gr{0, 1};
  GradientFill(dc, v, 2, &gr, 1, mode);
}

void caption(HDC dc, const char16_t* text, int x, int y, int w, COLORREF color = RGB(40, 40, 40), int h = 18) {
  RECT r{x, y, x + w, y + h};
  SetTextColor(dc, color);
  SetBkMode(dc, TRANSPARENT);
  DrawTextW(dc, text, -1, &r, DT_CENTER | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

// A premultiplied 32-bit sprite: a soft disc in one colour, alpha falling off to the rim.
HBITMAP makeSprite(int size, COLORREF color) {
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = size;
  bi.bmiHeader.biHeight = size;
  uint32_t* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(0, &bi, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits), 0, 0);
  if (!bmp) return 0;
  const double c = (size - 1) / 2.0;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      double d = std::hypot(x - c, y - c) / c;
      uint32_t a = d >= 1 ? 0 : static_cast<uint32_t>(255 * (1 - d * d));
      uint32_t r = GetRValue(color) * a / 255, g = GetGValue(color) * a / 255, b = GetBValue(color) * a / 255;
      bits[y * size + x] = (a << 24) | (r << 16) | (g << 8) | b;
    }
  return bmp;
}

void drawShapes(HDC dc) {
  caption(dc, u"Figures and pens", 20, 64, 290);
  {
    Use brush(dc, CreateSolidBrush(RGB(255, 214, 90)));
    Use pen(dc, CreatePen(PS_SOLID, 1, RGB(150, 90, 0)));
    RoundRect(dc, 24, 88, 120, 150, 16, 16);
  }
  {
    Use brush(dc, CreateSolidBrush(RGB(120, 190, 255)));
    Use pen(dc, CreatePen(PS_SOLID, 3, RGB(20, 70, 160)));
    Ellipse(dc, 132, 86, 212, 152);
  }
  {
    Use brush(dc, CreateHatchBrush(HS_DIAGCROSS, RGB(0, 140, 60)));
    Use pen(dc, CreatePen(PS_SOLID, 2, RGB(0, 100, 40)));
    SetBkMode(dc, OPAQUE);
    SetBkColor(dc, RGB(225, 250, 230));
    Rectangle(dc, 224, 88, 306, 150);
  }
  // One line in every pen style, then wide ones.
  const UINT styles[] = {PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT};
  SetBkMode(dc, TRANSPARENT);
  for (int i = 0; i < 5; ++i) {
    Use pen(dc, CreatePen(static_cast<int>(styles[i]), 1, RGB(30 + 40 * i, 30, 160 - 25 * i)));
    MoveToEx(dc, 24, 166 + 8 * i, nullptr);
    LineTo(dc, 306, 166 + 8 * i);
  }
  for (int i = 0; i < 3; ++i) {
    Use pen(dc, CreatePen(PS_SOLID, 2 + 2 * i, RGB(200, 60 + 50 * i, 40)));
    const POINT zig[4] = {{24 + 96 * i, 236}, {52 + 96 * i, 210}, {80 + 96 * i, 236}, {104 + 96 * i, 214}};
    Polyline(dc, zig, 4);
  }
}

void drawRegions(HDC dc) {
  caption(dc, u"Regions", 330, 64, 290);
  // A round rectangle with an ellipse cut out, XOR a star: three shapes, one region.
  HRGN round = CreateRoundRectRgn(344, 88, 470, 240, 30, 30);
  HRGN hole = CreateEllipticRgn(370, 120, 444, 210);
  CombineRgn(round, round, hole, RGN_DIFF);
  const POINT star[5] = {{545, 86}, {580, 236}, {490, 140}, {604, 140}, {512, 236}};
  HRGN starRgn = CreatePolygonRgn(star, 5, WINDING);
  HRGN both = CreateRectRgn(0, 0, 0, 0);
  CombineRgn(both, round, starRgn, RGN_OR);
  HBRUSH fill = CreateSolidBrush(RGB(170, 120, 220));
  HBRUSH edge = CreateSolidBrush(RGB(80, 30, 120));
  FillRgn(dc, both, fill);
  FrameRgn(dc, both, edge, 1, 1);
  // Clip a gradient to the star.
  SaveDC(dc);
  SelectClipRgn(dc, starRgn);
  gradient(dc, RECT{480, 80, 610, 240}, RGB(255, 240, 120), RGB(240, 80, 40), GRADIENT_FILL_RECT_V);
  RestoreDC(dc, -1);
  for (HGDIOBJ h : {round, hole, starRgn, both}) DeleteObject(h);
  DeleteObject(fill);
  DeleteObject(edge);
}

void drawGradients(HDC dc) {
  caption(dc, u"Gradients", 20, 256, 290);
  gradient(dc, RECT{24, 280, 306, 312}, RGB(0, 84, 166), RGB(180, 220, 255), GRADIENT_FILL_RECT_H);
  gradient(dc, RECT{24, 318, 160, 380}, RGB(255, 255, 255), RGB(154, 87, 43), GRADIENT_FILL_RECT_V);
  TRIVERTEX tri[3] = {TRIVERTEX{168, 380, 0xFF00, 0, 0, 0xFF00}, TRIVERTEX{237, 318, 0, 0xFF00, 0, 0xFF00},
                      TRIVERTEX{306, 380, 0, 0, 0xFF00, 0xFF00}};
  GRADIENT_TRIANGLE t{0, 1, 2};
  GradientFill(dc, tri, 3, &t, 1, GRADIENT_FILL_TRIANGLE);
  RECT edge{24, 392, 160, 420};
  DrawEdge(dc, &edge, EDGE_RAISED, BF_RECT | BF_MIDDLE);
  RECT sunk{170, 392, 306, 420};
  DrawEdge(dc, &sunk, EDGE_SUNKEN, BF_RECT | BF_MIDDLE);
  caption(dc, u"Raised", 24, 397, 136);
  caption(dc, u"Sunken", 170, 397, 136);
  RECT focus{20, 388, 310, 424};
  SetTextColor(dc, 0);
  SetBkColor(dc, RGB(255, 255, 255));
  DrawFocusRect(dc, &focus);
}

void drawBlending(HDC dc) {
  caption(dc, u"Alpha blending", 330, 256, 290);
  // A checkerboard shows what shines through.
  HBRUSH dark = CreateSolidBrush(RGB(200, 200, 200));
  for (int y = 280; y < 420; y += 10)
    for (int x = 344; x < 610; x += 10)
      if (((x - 344) / 10 + (y - 280) / 10) % 2 == 0) {
        RECT r{x, y, x + 10, y + 10};
        FillRect(dc, &r, dark);
      }
  DeleteObject(dark);
  HDC mem = CreateCompatibleDC(dc);
  const COLORREF colors[3] = {RGB(230, 40, 40), RGB(40, 180, 60), RGB(40, 80, 230)};
  for (int i = 0; i < 3; ++i) {
    HBITMAP sprite = makeSprite(64, colors[i]);
    HGDIOBJ old = SelectObject(mem, sprite);
    for (int k = 0; k < 4; ++k) {
      BLENDFUNCTION bf{AC_SRC_OVER, 0, static_cast<BYTE>(255 - 60 * k), AC_SRC_ALPHA};
      AlphaBlend(dc, 350 + 64 * k, 286 + 42 * i, 56, 56, mem, 0, 0, 64, 64, bf);
    }
    SelectObject(mem, old);
    DeleteObject(sprite);
  }
  DeleteDC(mem);
}

}  // namespace

// Shows the form headless and writes its window as the picture; a script may run first.
int renderForm(const std::string& form, const std::string& out, const std::string& script = {}) {
  mx::RegisterLibrary();
  mx::platform::ScopedVirtualClock clock;
  mx::host::FormRunOptions options;
  options.formPath = form;
  options.pngPath = out;
  options.scriptPath = script;
  // A ribbon's tabs are added by code: an empty one gets the example's.
  options.prepare = [](mx::host::Form& f) {
    for (const auto& control : f.Controls()) {
      auto ribbon = std::dynamic_pointer_cast<mx::chrome::USRibbon>(control);
      if (ribbon && ribbon->TabCount() == 0) mx::chrome::FillExampleRibbon(*ribbon);
    }
  };
  // Events are not of interest here; errors are.
  std::ostream quiet(nullptr);
  return mx::host::RunForm(options, quiet, std::cerr);
}

// Fills every grid of the form with the orders of the example database, totals on, the way the
// grid example shows them. Grids inside containers count too: Controls() lists them all.
void fillGalleryGrids(mx::host::Form& form, const std::string& dbPath) {
  auto connection = std::make_shared<mx::host::Connection>();
  connection->Open(mx::host::String(dbPath.begin(), dbPath.end()));
  for (const auto& control : form.Controls()) {
    auto grid = std::dynamic_pointer_cast<mx::grid::USFlexGrid>(control);
    if (!grid) continue;
    auto rs = mx::host::Recordset::Create();
    rs->Open(u"SELECT Client, Qty, Price, Ordered, Paid, Progress, Action FROM orders ORDER BY rowid", connection);
    grid->Redraw(false);
    grid->TotalLineShow(true);
    grid->FillGridFromQuery(mx::host::Variant(std::static_pointer_cast<mx::host::Object>(rs)));
    grid->TotalLineCaption(0, u"Total");
    grid->TotalLineColAvg(2, true);
    grid->TotalLineCaption(2, u"M\u00e9dia");
    if (grid->Rows() > 4) {
      grid->RowChecked(1, true);
      grid->RowSelected(4, true);
      grid->Row(2);
    }
    grid->Redraw(true);
    rs->Close();
  }
  // The clients of the same orders fill the list and the combo box; the ribbon gets the example
  // tabs.
  std::vector<mx::host::String> clients;
  std::vector<int32_t> orders;
  {
    auto rs = mx::host::Recordset::Create();
    rs->Open(u"SELECT Client, COUNT(*) FROM orders GROUP BY Client ORDER BY Client", connection);
    auto fields = rs->GetFields();
    while (!rs->EOF_()) {
      clients.push_back(fields->Item(mx::host::Variant(int32_t{0}))->Value().ToString());
      orders.push_back(fields->Item(mx::host::Variant(int32_t{1}))->Value().ToLong());
      rs->MoveNext();
    }
    rs->Close();
  }
  for (const auto& control : form.Controls()) {
    if (auto list = std::dynamic_pointer_cast<mx::entry::USListBox>(control)) {
      list->Redraw(false);
      for (size_t i = 0; i < clients.size(); ++i) {
        list->AddItem(mx::host::Variant(clients[i]), orders[i], -1, -1, mx::entry::USListBox::kListForeColor, true,
                      mx::host::FromUtf8(std::to_string(orders[i]) + (orders[i] == 1 ? " pedido" : " pedidos")));
      }
      list->Redraw(true);
      if (list->ListCount() > 2) list->ListIndex(2);
    } else if (auto combo = std::dynamic_pointer_cast<mx::entry::USComboBox>(control)) {
      combo->BeginFill();
      for (size_t i = 0; i < clients.size(); ++i) combo->AddItem(mx::host::Variant(clients[i]), orders[i]);
      combo->EndFill(0);
    } else if (auto ribbon = std::dynamic_pointer_cast<mx::chrome::USRibbon>(control)) {
      mx::chrome::FillExampleRibbon(*ribbon);
    }
  }
}

int runGallery(const std::string& formPath, const std::string& dbPath, const std::string& out, bool window) {
  mx::RegisterLibrary();
  // Headless, the clock is virtual so that the picture is the same on every run; a real window
  // runs on the real clock, which the SDL back end switches to.
  std::unique_ptr<mx::platform::ScopedVirtualClock> clock;
  if (window && !UseSdlBackend()) {
    std::fprintf(stderr, "mxdemo: no display could be opened; writing the picture only\n");
    window = false;
  }
  if (!window) clock = std::make_unique<mx::platform::ScopedVirtualClock>();
  int rc = 0;
  try {
    auto form = mx::host::LoadFormFile(formPath);
    if (!form) {
      std::fprintf(stderr, "mxdemo: cannot load %s\n", formPath.c_str());
      return 1;
    }
    fillGalleryGrids(*form, dbPath);
    form->Show();
    PumpMessages();
    RunFor(500);  // the animated images read and play their first frames
    if (!SaveWindowPng(form->hWnd(), out)) {
      std::fprintf(stderr, "mxdemo: cannot write %s\n", out.c_str());
      rc = 1;
    }
    if (window) {
      // The application's loop: a closed window unloads its form.
      while (!mx::host::Forms().empty()) RunFor(50);
    }
  } catch (const mx::host::RuntimeError& e) {
    std::fprintf(stderr, "mxdemo: gallery: error %d: %s\n", static_cast<int>(e.Number()),
                 mx::host::ToUtf8(e.Description()).c_str());
    rc = 1;
  }
  for (const auto& f : mx::host::Forms()) f->Unload();
  PumpMessages();
  if (IsSdlBackendActive()) StopSdlBackend();
  return rc;
}

int main(int argc, char** argv) {
  if ((argc == 5 || argc == 6) && std::string(argv[1]) == "--gallery") {
    const bool window = argc == 6 && std::string(argv[5]) == "--window";
    if (argc == 6 && !window) {
      std::fprintf(stderr, "mxdemo: unknown option %s\n", argv[5]);
      return 2;
    }
    return runGallery(argv[2], argv[3], argv[4], window);
  }
  // mxdemo --grid FORM.frm DATABASE.db OUT.png: the grid example filled from its database.
  if (argc == 5 && std::string(argv[1]) == "--grid") {
    mx::RegisterLibrary();
    mx::platform::ScopedVirtualClock clock;
    return mx::grid::RenderGridExample(argv[2], argv[3], argv[4], std::cerr);
  }
  // mxdemo --lists FORM.frm DATABASE.db OUT.png: the lists example filled from its database.
  if (argc == 5 && std::string(argv[1]) == "--lists") {
    mx::RegisterLibrary();
    mx::platform::ScopedVirtualClock clock;
    return mx::entry::RenderListsExample(argv[2], argv[3], argv[4], std::cerr);
  }
  // mxdemo --entry FORM.frm DATABASE.db OUT.png: the text boxes, the town field completing
  // from its database.
  if (argc == 5 && std::string(argv[1]) == "--entry") {
    mx::RegisterLibrary();
    mx::platform::ScopedVirtualClock clock;
    return mx::entry::RenderEntryExample(argv[2], argv[3], argv[4], std::cerr);
  }
  if ((argc == 4 || argc == 5) && std::string(argv[1]) == "--form") {
    // The wait is a one-line script kept beside the picture while the form runs.
    const std::string wait = argc == 5 ? argv[4] : "500";
    if (wait.empty() || wait.find_first_not_of("0123456789") != std::string::npos) {
      std::fprintf(stderr, "mxdemo: the wait must be a number of milliseconds\n");
      return 2;
    }
    const std::string script = std::string(argv[3]) + ".script";
    if (FILE* f = std::fopen(script.c_str(), "w")) {
      std::fprintf(f, "wait %s\n", wait.c_str());
      std::fclose(f);
    }
    const int rc = renderForm(argv[2], argv[3], script);
    std::remove(script.c_str());
    return rc;
  }
  if (argc != 2 && argc != 3) {
    std::fprintf(stderr, "usage: mxdemo OUT.png [FORM.frm] | --form FORM.frm OUT.png [MS] | --grid FORM.frm DB OUT.png\n"
                 "       mxdemo --lists FORM.frm DB OUT.png | --entry FORM.frm DB OUT.png\n"
                 "       mxdemo --gallery FORM.frm DB OUT.png [--window]\n");
    return 2;
  }
  std::string showcase = argv[1];
  if (argc == 3) {
    if (const int rc = renderForm(argv[2], argv[1]); rc != 0) return rc;
    const size_t dot = showcase.rfind(".png");
    showcase = (dot == std::string::npos ? showcase : showcase.substr(0, dot)) + "-drawing.png";
  }
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = kWidth;
  bi.bmiHeader.biHeight = kHeight;
  void* bits = nullptr;
  HDC dc = CreateCompatibleDC(0);
  HBITMAP canvas = CreateDIBSection(dc, &bi, DIB_RGB_COLORS, &bits, 0, 0);
  if (!dc || !canvas) {
    std::fprintf(stderr, "mxdemo: cannot make the drawing surface\n");
    return 1;
  }
  HGDIOBJ old = SelectObject(dc, canvas);

  RECT all{0, 0, kWidth, kHeight};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  gradient(dc, RECT{0, 0, kWidth, 52}, RGB(43, 87, 154), RGB(120, 170, 230), GRADIENT_FILL_RECT_V);
  {
    LOGFONTW lf;
    lf.lfHeight = -22;
    lf.lfWeight = 700;
    const char16_t face[] = u"Arial";
    for (size_t i = 0; i < sizeof face / sizeof face[0]; ++i) lf.lfFaceName[i] = face[i];
    Use font(dc, CreateFontIndirectW(&lf));
    caption(dc, u"Morvantix drawing system", 0, 8, kWidth, RGB(255, 255, 255), 36);
  }
  SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
  drawShapes(dc);
  drawRegions(dc);
  drawGradients(dc);
  drawBlending(dc);

  SelectObject(dc, old);
  Surface s{kWidth, kHeight, static_cast<uint8_t*>(bits), kWidth * 4, true};
  PngEncodeOptions o;
  o.dropAlpha = true;  // fills leave alpha 0; the picture is opaque
  bool ok = WritePngFile(s, showcase, o);
  DeleteObject(canvas);
  DeleteDC(dc);
  if (!ok) {
    std::fprintf(stderr, "mxdemo: cannot write %s\n", showcase.c_str());
    return 1;
  }
  return 0;
}
