// The list section of a list blob: counts, cell size, name records, format block, image data.
//
//   h       image count
//   h + 4   count of images with a key
//   h + 8   Width
//   h + 12  Height
//   h + 16  name records (key bytes u16, tag bytes u16, key, tag) in cell order, or, when keys
//           and tags pass 1024 bytes, the compressor blob of those records
//   then    format block: size 3 (u32), DelayLoaded (i16), format byte, image data to the end
#include "host/Err.h"
#include "imagelist/APIHuffman.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "imagelist/ByteIO.h"

namespace mx::imagelist {

using host::Raise;
using host::String;

namespace {

// Keys and tags up to this many bytes in all are written as plain records.
constexpr size_t kPlainNamesLimit = 1024;

[[noreturn]] void ImportFailed() { Raise(kErrImportFailed, u"ImageLists.ImportImageList", kMsgImportFailed); }

}  // namespace

void APIListImages::SetGdiToken(int32_t token) {
  m_sheet.gdiToken(token);
  m_sheet.KeepGDIplusActive(true);
}

size_t APIListImages::ExportData(std::vector<uint8_t>& out, bool compression) {
  // 1. The picture: the strip's own bytes while they still describe it, else a new PNG.
  std::vector<uint8_t> picture;
  uint8_t format = LivlPictureFile;
  if (!m_items.empty() && !m_sheet.GetOrginalFormat(picture)) {
    EnsureDecoded();
    if (!m_sheet.SaveToStream_PNG(picture) || picture.empty()) {
      // No PNG route: a bitmap file, packed by the compressor when compression is on.
      std::vector<uint8_t> bmp;
      if (!m_sheet.SaveToStream_Bitmap(bmp, true) || bmp.empty())
        Raise(kErrExportFailed, u"ImageLists.ExportImageList", kMsgExportFailed);
      if (compression) {
        APIHuffman().Compress(nullptr, bmp, picture);
        format = LivlCompressedFile;
      } else {
        picture = std::move(bmp);
      }
    }
  }

  // 2-4. Names.
  size_t nameBytes = 0, keyed = 0;
  for (size_t i = 0; i < m_items.size(); ++i) {
    nameBytes += (m_items[i].key.size() + m_tags[i].size()) * 2;
    if (!m_items[i].key.empty()) ++keyed;
    // A record holds each length in 16 bits; a longer text cannot be written faithfully.
    if (m_items[i].key.size() * 2 > 0xFFFF || m_tags[i].size() * 2 > 0xFFFF)
      Raise(kErrExportFailed, u"ImageLists.ExportImageList", kMsgExportFailed);
  }
  std::vector<uint8_t> records;
  records.reserve(nameBytes + m_items.size() * 4);
  for (size_t i = 0; i < m_items.size(); ++i) {
    PutU16(records, static_cast<uint16_t>(m_items[i].key.size() * 2));
    PutU16(records, static_cast<uint16_t>(m_tags[i].size() * 2));
    PutText(records, m_items[i].key);
    PutText(records, m_tags[i]);
  }
  if (nameBytes > kPlainNamesLimit) {
    std::vector<uint8_t> packed;
    APIHuffman().Compress(nullptr, records, packed);
    records = std::move(packed);
    format |= LivlNamesCompressed;
  }

  // 5. List section, format block, image data.
  const size_t start = out.size();
  PutU32(out, static_cast<uint32_t>(m_items.size()));
  PutU32(out, static_cast<uint32_t>(keyed));
  PutU32(out, static_cast<uint32_t>(m_width));
  PutU32(out, static_cast<uint32_t>(m_height));
  out.insert(out.end(), records.begin(), records.end());
  const size_t formatAt = out.size() - start;
  PutU32(out, 3);
  PutU16(out, m_delayLoaded ? 0xFFFF : 0);
  out.push_back(format);
  out.insert(out.end(), picture.begin(), picture.end());
  return formatAt;
}

void APIListImages::ImportData(std::span<const uint8_t> blob, size_t h, size_t formatPos, int32_t version) {
  Clear();
  if (blob.size() < h + 16) ImportFailed();
  const uint32_t count = GetU32(blob, h);
  const uint32_t width = GetU32(blob, h + 8), height = GetU32(blob, h + 12);
  if (static_cast<int32_t>(width) != m_width || static_cast<int32_t>(height) != m_height) ImportFailed();
  if (count > static_cast<uint32_t>(MaxImagesFor(m_width, m_height))) ImportFailed();

  // The format block.
  if (formatPos < h + 17 || formatPos - 1 > blob.size() || blob.size() - (formatPos - 1) < 6) ImportFailed();
  const size_t block = formatPos - 1;
  const uint32_t blockSize = GetU32(blob, block);
  // A version 1 block has no format byte: the picture is a file.
  const uint32_t minBlock = version >= 2 ? 3 : 2;
  if (blockSize < minBlock || blockSize > blob.size() - block - 4) ImportFailed();
  const bool delayLoaded = GetU16(blob, block + 4) != 0;
  const uint8_t format = version >= 2 ? blob[block + 6] : 0;
  const size_t dataAt = block + 4 + blockSize;

  // Names: plain records between the list section and the format block, or their blob.
  std::vector<uint8_t> unpacked;
  std::span<const uint8_t> names = blob.subspan(h + 16, block - (h + 16));
  if (format & LivlNamesCompressed) {
    if (!APIHuffman().Decompress(blob.first(block), h + 16, unpacked, nullptr)) ImportFailed();
    names = unpacked;
  }
  auto self = std::static_pointer_cast<APIListImages>(shared_from_this());
  size_t at = 0;
  for (uint32_t i = 0; i < count; ++i) {
    if (names.size() - at < 4) ImportFailed();
    const uint32_t lengths = GetU32(names, at);
    const size_t keyBytes = lengths & 0xFFFF, tagBytes = lengths >> 16;
    at += 4;
    if (names.size() - at < keyBytes + tagBytes) ImportFailed();
    String key = GetText(names, at, keyBytes);
    String tag = GetText(names, at + keyBytes, tagBytes);
    at += keyBytes + tagBytes;
    auto image = std::make_shared<APIListImage>(std::weak_ptr<APIItemData>(std::shared_ptr<APIItemData>(self)));
    if (!key.empty()) {
      KeySearch s = m_keyIndex.Search(key);
      if (s.found) ImportFailed();  // two images under one key: the blob is damaged
      m_keyIndex.Insert(s.position, key, image->ObjectId());
    }
    m_items.push_back(Entry{image, std::move(key)});
    m_tags.push_back(std::move(tag));
  }
  RebuildIdIndex();
  m_capacity = m_items.size();
  m_delayLoaded = delayLoaded;

  if (count == 0) return;  // an empty list carries no picture
  const uint8_t kind = format & 3;
  std::span<const uint8_t> data = blob.subspan(dataAt);
  std::vector<uint8_t> file;
  bool ok = false;
  if (kind == LivlCompressedSurface) {
    ok = APIHuffman().Decompress(data, 0, file, &m_sheet);
  } else {
    if (kind == LivlCompressedFile) {
      ok = APIHuffman().Decompress(data, 0, file, nullptr);
    } else if (kind == LivlPictureFile) {
      file.assign(data.begin(), data.end());
      ok = !file.empty();
    }
    if (ok && delayLoaded) {
      // Decoded on first use: the strip holds only its picture bytes until then.
      m_sheet.DestroyDIB();
      m_sheet.SetOriginalBytes(std::move(file));
      return;
    }
    if (ok) ok = m_sheet.LoadPicture_Stream(file, 32, 32, 0, 0, true, 32);
  }
  if (!ok || m_sheet.Height() != m_height || m_sheet.Width() < static_cast<int32_t>(count) * m_width) {
    Clear();
    ImportFailed();
  }
}

}  // namespace mx::imagelist
