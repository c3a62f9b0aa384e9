// Writes seed inputs that only the library itself can make well: compressor blobs of both source
// kinds and variants, and list blobs in each picture format (PNG, a packed bitmap file, plain
// and packed names, delayed loading). Run as: make_fuzz_seeds OUTDIR (huffman/ and livl/ land
// under it).
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIHuffman.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace fs = std::filesystem;
using mx::host::String;
using mx::host::Variant;

namespace {

void Write(const fs::path& path, const std::vector<uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!out) {
    std::fprintf(stderr, "make_fuzz_seeds: cannot write %s\n", path.c_str());
    std::exit(1);
  }
}

void Picture(int32_t w, int32_t h, int32_t seed, mx::image::API32bppDIB& cell) {
  if (!cell.InitializeDIB(w, h)) std::exit(1);
  // A few half-transparent pixels, so that the strip keeps an alpha plane.
  uint8_t* bits = cell.BitsPointer();
  for (int32_t i = 0; i < w * h; ++i) {
    uint8_t a = static_cast<uint8_t>((i * 37 + seed) & 0xFF);
    bits[i * 4 + 3] = a;
    bits[i * 4 + 0] = static_cast<uint8_t>((i * 5) % (a + 1));
    bits[i * 4 + 1] = static_cast<uint8_t>((i * 11) % (a + 1));
    bits[i * 4 + 2] = static_cast<uint8_t>((i * 3) % (a + 1));
  }
}

void Huffman(const fs::path& dir) {
  mx::imagelist::APIHuffman huffman;
  std::vector<uint8_t> blob;
  const std::string text = "LIVL keys and tags: button, button_hot, button_down, icon16, icon32, icon48";
  huffman.Compress(nullptr, std::vector<uint8_t>(text.begin(), text.end()), blob);
  Write(dir / "text.huf", blob);
  std::vector<uint8_t> noise(300);
  for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>((i * 2654435761u) >> 13);
  huffman.Compress(nullptr, noise, blob);  // does not shrink: the stored variant
  Write(dir / "stored.huf", blob);
  std::vector<uint8_t> one(64, 'a');
  huffman.Compress(nullptr, one, blob);  // a single symbol in use
  Write(dir / "onesymbol.huf", blob);
  mx::image::API32bppDIB surface;
  Picture(6, 5, 1, surface);
  huffman.Compress(&surface, {}, blob);
  Write(dir / "surface.huf", blob);
}

std::vector<uint8_t> Livl(const fs::path& dir, const std::string& name, int32_t w, int32_t h, int32_t images,
                          size_t keyLength, bool compression, bool delayLoaded) {
  auto lists = mx::imagelist::APIImageLists::Create();
  lists->Compression(compression);
  auto list = lists->Add(w, h, u"list", 1);
  auto cells = list->Images();
  for (int32_t i = 0; i < images; ++i) {
    String key = mx::host::FromUtf8("k" + std::to_string(i) + std::string(keyLength, 'x'));
    String tag = mx::host::FromUtf8(i % 2 ? "tag" + std::to_string(i) : "");
    mx::image::API32bppDIB cell;
    Picture(w, h, i, cell);
    if (!cells->AddImage_fromDIB(cell, Variant::Missing(), i == 1 ? String() : key, tag)) std::exit(1);
  }
  cells->DelayLoaded(delayLoaded);
  std::vector<uint8_t> blob;
  lists->ExportImageList(Variant(String(u"list")), blob);
  Write(dir / (name + ".lIL"), blob);
  return blob;
}

// The export writes a packed picture only when no PNG can be made, which the library's own PNG
// encoder always can; these two formats are made by replacing the image data of a written blob.
void Repacked(const fs::path& dir, std::vector<uint8_t> blob, int32_t w, int32_t h) {
  const size_t block = blob[8] | blob[9] << 8 | blob[10] << 16 | static_cast<size_t>(blob[11]) << 24;
  blob.resize(block - 1 + 7);  // through the format byte
  mx::imagelist::APIHuffman huffman;
  mx::image::API32bppDIB strip;
  Picture(w * 2, h, 7, strip);
  std::vector<uint8_t> packed;
  huffman.Compress(&strip, {}, packed);
  std::vector<uint8_t> surface = blob;
  surface.back() = mx::imagelist::LivlCompressedSurface;
  surface.insert(surface.end(), packed.begin(), packed.end());
  Write(dir / "packedsurface.lIL", surface);

  std::vector<uint8_t> bmp;
  if (!strip.SaveToStream_Bitmap(bmp, true)) std::exit(1);
  huffman.Compress(nullptr, bmp, packed);
  blob.back() = mx::imagelist::LivlCompressedFile;
  blob.insert(blob.end(), packed.begin(), packed.end());
  Write(dir / "packedfile.lIL", blob);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_fuzz_seeds OUTDIR\n");
    return 2;
  }
  const fs::path out(argv[1]);
  fs::create_directories(out / "huffman");
  fs::create_directories(out / "livl");
  Huffman(out / "huffman");

  Repacked(out / "livl", Livl(out / "livl", "png", 8, 8, 2, 2, false, false), 8, 8);
  Livl(out / "livl", "delayed", 8, 6, 2, 2, false, true);
  Livl(out / "livl", "manynames", 4, 4, 12, 60, false, false);  // names past the plain limit
  Livl(out / "livl", "empty", 16, 16, 0, 0, false, false);
  Livl(out / "livl", "three", 5, 4, 3, 2, true, false);
  return 0;
}
