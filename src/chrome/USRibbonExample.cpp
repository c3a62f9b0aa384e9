#include "chrome/USRibbonExample.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "chrome/USRibbon.h"
#include "image/API32bppDIB.h"

namespace mx::chrome {

namespace {

// A colour and its coverage for one pixel; alpha 0 leaves the pixel clear.
struct Ink {
  int32_t colour = 0;  // 0xBBGGRR
  int32_t alpha = 0;
};

// Paints a picture pixel by pixel from a shape function over coordinates scaled to 0..32, so one
// drawing serves 16 and 32 pixels.
std::shared_ptr<host::StdPicture> Paint(int size, const std::function<Ink(double, double)>& shape) {
  image::API32bppDIB dib;
  if (size <= 0 || !dib.InitializeDIB(size, size)) return nullptr;
  const double scale = 32.0 / size;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      const Ink ink = shape((x + 0.5) * scale, (y + 0.5) * scale);
      dib.SetPixel(x, y, ink.colour, ink.alpha);
    }
  std::vector<uint8_t> png;
  if (!dib.SaveToStream_PNG(png)) return nullptr;
  return host::StdPicture::FromBytes(host::ByteArray(png.begin(), png.end()));
}

bool InBox(double x, double y, double l, double t, double r, double b) { return x >= l && x < r && y >= t && y < b; }

double Distance(double x, double y, double cx, double cy) { return std::hypot(x - cx, y - cy); }

// Distance from a point to the segment (x1, y1)-(x2, y2).
double ToSegment(double x, double y, double x1, double y1, double x2, double y2) {
  const double dx = x2 - x1, dy = y2 - y1;
  double t = ((x - x1) * dx + (y - y1) * dy) / (dx * dx + dy * dy);
  t = std::clamp(t, 0.0, 1.0);
  return Distance(x, y, x1 + t * dx, y1 + t * dy);
}

Ink Glyph(int glyph, double x, double y) {
  constexpr Ink clear{};
  switch (glyph) {
    case 0:  // a page with a folded corner
      if (!InBox(x, y, 7, 3, 26, 29) || (x > 19 && y < 3 + (x - 19))) return clear;
      if (x < 8 || x >= 25 || y < 4 || y >= 28 || (x > 18 && std::abs(y - 3 - (x - 19)) < 1)) return {0x7A7A7A, 255};
      return {0xFFFFFF, 255};
    case 1:  // a disk
      if (!InBox(x, y, 4, 4, 28, 28)) return clear;
      if (InBox(x, y, 9, 4, 23, 13)) return {0xF0F0F0, 255};
      if (InBox(x, y, 8, 18, 24, 28)) return {0xD8C8B0, 255};
      return {0x9A572B, 255};
    case 2:  // a cross
      if (ToSegment(x, y, 7, 7, 25, 25) < 3 || ToSegment(x, y, 25, 7, 7, 25) < 3) return {0x2020C8, 255};
      return clear;
    case 3: {  // a magnifier
      const double d = Distance(x, y, 13, 13);
      if (d < 7) return {0xF5E6D0, 255};
      if (d < 9.5) return {0x6A4A2A, 255};
      if (ToSegment(x, y, 19, 19, 28, 28) < 2.5) return {0x3A3A3A, 255};
      return clear;
    }
    case 4:  // a printer
      if (InBox(x, y, 9, 3, 23, 12)) return {0xFFFFFF, 255};
      if (InBox(x, y, 3, 11, 29, 24)) return InBox(x, y, 22, 14, 26, 16) ? Ink{0x30B030, 255} : Ink{0x707070, 255};
      if (InBox(x, y, 8, 22, 24, 29)) return {0xFFFFFF, 255};
      return clear;
    case 5:  // a bar chart
      if (InBox(x, y, 4, 18, 10, 28)) return {0x3070E0, 255};
      if (InBox(x, y, 13, 10, 19, 28)) return {0x30A030, 255};
      if (InBox(x, y, 22, 4, 28, 28)) return {0xC06030, 255};
      return clear;
    case 6: {  // a help mark on a blue disc
      const double d = Distance(x, y, 16, 16);
      if (d >= 14) return clear;
      const bool mark = (std::abs(Distance(x, y, 16, 12) - 5) < 2 && y < 14) || InBox(x, y, 14.5, 15, 17.5, 20) ||
                        Distance(x, y, 16, 24) < 2;
      return mark ? Ink{0xFFFFFF, 255} : Ink{0xC07830, 255};
    }
    case 7: {  // a gear
      const double d = Distance(x, y, 16, 16);
      const double angle = std::atan2(y - 16, x - 16);
      const double outer = 11 + 3 * (std::cos(8 * angle) > 0 ? 1 : 0);
      if (d < 4.5 || d >= outer) return clear;
      return {0x606060, 255};
    }
    default:
      return InBox(x, y, 4, 4, 28, 28) ? Ink{0x909090, 255} : clear;
  }
}

}  // namespace

std::shared_ptr<host::StdPicture> RibbonExamplePicture(int glyph, int size) {
  return Paint(size, [glyph](double x, double y) { return Glyph(glyph, x, y); });
}

void FillExampleRibbon(USRibbon& r) {
  r.Clear();
  r.AddTab(0, u"In\u00edcio");
  r.AddTab(1, u"Relat\u00f3rios");
  r.AddTab(2, u"Ajuda");
  r.AddCat(1, 0, u"Registro", true);
  r.AddCat(2, 0, u"Busca");
  r.AddCat(3, 1, u"Impress\u00e3o");
  r.AddCat(4, 1, u"An\u00e1lise");
  r.AddCat(5, 2, u"Sobre");
  r.AddButton(1, 1, u"&Novo", RibbonExamplePicture(0, 32));
  r.AddButton(2, 1, u"&Gravar", RibbonExamplePicture(1, 32));
  r.AddButton(3, 1, u"E&xcluir", RibbonExamplePicture(2, 32), host::Variant::Missing(), false,
              u"Excluir o registro atual");
  r.AddButton(4, 2, u"&Localizar", RibbonExamplePicture(3, 32), host::Variant::Missing(), true);
  r.AddButton(5, 3, u"&Imprimir", RibbonExamplePicture(4, 32));
  r.AddButton(6, 4, u"Gr\u00e1&fico", RibbonExamplePicture(5, 32));
  r.AddButton(7, 5, u"&Vers\u00e3o", RibbonExamplePicture(6, 32));
  r.AddTabButton(1, RibbonExamplePicture(6, 16), host::Variant::Missing(), u"Ajuda");
  r.AddTabButton(2, RibbonExamplePicture(7, 16), host::Variant::Missing(), u"Op\u00e7\u00f5es");
  r.Refresh();
}

}  // namespace mx::chrome
