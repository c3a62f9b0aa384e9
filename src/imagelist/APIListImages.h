#pragma once
// The images of one list. All of them live side by side in one surface, the strip:
//
//   x:  0        W        2W       3W  ...  cells x W
//       +--------+--------+--------+----
//       | cell 1 | cell 2 | cell 3 | (room to grow)       height H, images top-aligned
//       +--------+--------+--------+----
//
// An APIListImage is only a name for a position in it. Entry i of the item table is cell i.
// Positions by object id are found through idIndex, sorted by id; keys through a descending
// key table. The strip may be undecoded (after a delayed import): it then holds only its
// original picture bytes and is decoded on first use.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/Variant.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIItemData.h"
#include "imagelist/KeyIndex.h"
#include "platform/Types.h"

namespace mx::imagelist {

class APIEnumVARIANT;
class APIListImage;

// The format byte of a list blob's image data.
enum LivlImageFormat : uint8_t {
  LivlPictureFile = 0,        // the strip's picture file (its original bytes, or PNG)
  LivlCompressedSurface = 1,  // compressor blob of the strip's pixels
  LivlCompressedFile = 2,     // compressor blob holding a picture file
  LivlNamesCompressed = 4,    // flag: the name records are a compressor blob
};

// An in-memory icon made from a cell: the resource image (a BITMAPINFOHEADER with doubled
// height, a palette for depths up to 8, the colour rows and the 1-bit AND mask, all bottom-up)
// and the icon handle made from it, which the caller owns.
struct ExtractedIcon {
  platform::HICON handle = 0;
  int32_t bitDepth = 0;
  std::vector<uint8_t> resource;
};

class APIListImages : public host::Object, public APIItemData {
 public:
  APIListImages(std::weak_ptr<APIItemData> parent, int32_t Width, int32_t Height, int32_t initialCells);
  ~APIListImages() override;

  // ---- the collection ----
  // By index (a number, 1..Count) or key (a non-empty string); nullptr when none matches.
  [[nodiscard]] std::shared_ptr<APIListImage> Find(const host::Variant& Index) const;
  // Raises 1962 when none matches.
  [[nodiscard]] std::shared_ptr<APIListImage> Item(const host::Variant& Index) const;
  [[nodiscard]] std::shared_ptr<APIListImage> operator[](const host::Variant& Index) const { return Item(Index); }
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_items.size()); }
  [[nodiscard]] int32_t MaxImages() const;
  [[nodiscard]] bool IsKeyAssigned(host::StringView Key) const { return m_keyIndex.Search(Key).found; }
  void Clear();
  void Remove(const host::Variant& Index);
  [[nodiscard]] bool DelayLoaded() const { return m_delayLoaded; }
  void DelayLoaded(bool value) { m_delayLoaded = value; }
  [[nodiscard]] std::shared_ptr<APIEnumVARIANT> xcom_IEnum();

  // ---- adding ----
  // Each loads the picture into a scratch surface and adds it before the image that Index
  // names (at the end when Index is missing or names none). Scaled True fits the picture into
  // the cell keeping its aspect, centred; False stretches it over the cell. Returns the new
  // image; nullptr when the picture cannot be read. Raises 1973 over the budget, 1963 for a
  // key in use, 1977 when the strip cannot grow.
  std::shared_ptr<APIListImage> AddImage_fromStream(const std::vector<uint8_t>& inStream,
                                                    const host::Variant& Index = host::Variant::Missing(),
                                                    host::StringView Key = u"", host::StringView Tag = u"",
                                                    int32_t streamStart = 0, int32_t streamLength = 0,
                                                    int32_t iconBitDepth = 32, bool Scaled = true);
  std::shared_ptr<APIListImage> AddImage_fromFile(const host::String& FileName,
                                                  const host::Variant& Index = host::Variant::Missing(),
                                                  host::StringView Key = u"", host::StringView Tag = u"",
                                                  int32_t iconBitDepth = 32, bool Scaled = true);
  // A picture object (icons and bitmaps through their handles), a platform bitmap or icon handle
  // (which stays the caller's), or the clipboard's bitmap.
  std::shared_ptr<APIListImage> AddImage_fromStdPicture(const std::shared_ptr<host::StdPicture>& Picture,
                                                        const host::Variant& Index = host::Variant::Missing(),
                                                        host::StringView Key = u"", host::StringView Tag = u"",
                                                        bool Scaled = true);
  std::shared_ptr<APIListImage> AddImage_fromHandle(uint32_t Handle,
                                                    const host::Variant& Index = host::Variant::Missing(),
                                                    host::StringView Key = u"", host::StringView Tag = u"",
                                                    bool Scaled = true);
  std::shared_ptr<APIListImage> AddImage_fromClipBoard(const host::Variant& Index = host::Variant::Missing(),
                                                       host::StringView Key = u"", host::StringView Tag = u"",
                                                       bool Scaled = true);
  // A surface already loaded (what the other members end in).
  std::shared_ptr<APIListImage> AddImage_fromDIB(const image::API32bppDIB& picture,
                                                 const host::Variant& Index = host::Variant::Missing(),
                                                 host::StringView Key = u"", host::StringView Tag = u"",
                                                 bool Scaled = true);

  // ---- drawing ----
  // Draws one cell. Sizes of 0 take the cell's; the source never reaches past its cell.
  // Raises 1962 for an unknown image; with no images does nothing.
  void Render(const host::Variant& Index, platform::HDC destinationDC, int32_t DestX, int32_t DestY,
              int32_t DestWidth = 0, int32_t DestHeight = 0, int32_t srcX = 0, int32_t srcY = 0, int32_t srcwidth = 0,
              int32_t srcheight = 0, int32_t Opacity = 100, int32_t grayScale = -1, int32_t LightAdjustment = 0,
              float Angle = 0, image::API32bppDIB* destHostDIB = nullptr);
  // Draws a run of images left to right into boxes of imageWidth x imageHeight at DestY.
  void RenderRange(const host::Variant& StartIndex, const host::Variant& StopIndex, platform::HDC destinationDC,
                   int32_t DestX, int32_t DestY, int32_t imageWidth, int32_t imageHeight,
                   image::API32bppDIB* destHostDIB = nullptr);
  // A cell as an icon; Rtn_BitDepth gets the depth chosen (1, 4, 8 or 32).
  [[nodiscard]] platform::HICON ExtractIcon(const host::Variant& Index, int32_t& Rtn_BitDepth,
                                            ExtractedIcon* details = nullptr);
  [[nodiscard]] platform::HICON ExtractIconEx(const host::Variant& Index, bool MirrorAxisX, bool MirrorAxisY,
                                              int32_t Opacity, int32_t grayScale, int32_t LightAdjustment, float Angle,
                                              int32_t& Rtn_iconWidth, int32_t& Rtn_iconHeight, int32_t& Rtn_BitDepth,
                                              ExtractedIcon* details = nullptr);

  // ---- the strip ----
  // The strip, decoded first if needed (raises 1977 when it cannot be). Callers must not resize it.
  [[nodiscard]] const image::API32bppDIB& Sheet();
  [[nodiscard]] bool IsDecoded() const { return m_sheet.Handle() != 0; }
  [[nodiscard]] int32_t Width() const { return m_width; }
  [[nodiscard]] int32_t Height() const { return m_height; }
  // A copy of one cell's pixels into a new surface of the cell's size.
  [[nodiscard]] bool CopyCell(int32_t position, image::API32bppDIB& out);

  // ---- blob ----
  // Appends the list section, format block and image data of a list blob (see APIImageLists);
  // returns the format block's offset from where it began appending.
  size_t ExportData(std::vector<uint8_t>& out, bool compression);
  // The parent's system-codec token goes to the strip, which keeps its session between renders.
  void SetGdiToken(int32_t token);
  // Reads the list section at h and what follows; raises 1975 (or the error under way).
  void ImportData(std::span<const uint8_t> blob, size_t h, size_t formatPos, int32_t version);

  // ---- parent interface ----
  [[nodiscard]] int32_t ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) override;
  [[nodiscard]] host::String ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, host::StringView value) override;
  [[nodiscard]] host::Variant ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t oID) override;

  // ---- C++ iteration (does not touch the shared cursor) ----
  class iterator {
   public:
    using value_type = std::shared_ptr<APIListImage>;
    using difference_type = std::ptrdiff_t;
    iterator() = default;
    iterator(const APIListImages* owner, size_t i) : m_owner(owner), m_i(i) {}
    value_type operator*() const;
    iterator& operator++() {
      ++m_i;
      return *this;
    }
    iterator operator++(int) {
      iterator t = *this;
      ++m_i;
      return t;
    }
    friend bool operator==(const iterator& a, const iterator& b) { return a.m_i == b.m_i; }

   private:
    const APIListImages* m_owner = nullptr;
    size_t m_i = 0;
  };
  [[nodiscard]] iterator begin() const { return iterator(this, 0); }
  [[nodiscard]] iterator end() const { return iterator(this, m_items.size()); }

  [[nodiscard]] host::String TypeName() const override { return u"APIListImages"; }
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;
  [[nodiscard]] std::vector<host::Variant> EnumerateItems() override;

 private:
  struct Entry {
    std::shared_ptr<APIListImage> image;
    host::String key;
  };

  // 0-based position of an image, or -1.
  [[nodiscard]] int32_t PositionOf(uint32_t id) const;
  [[nodiscard]] int32_t Locate(const host::Variant& Index) const;
  void RebuildIdIndex();
  // Makes the strip hold newCount cells; an insertion of insertCount cells at insertAt (0-based)
  // opens a zeroed gap, a negative insertCount closes the cells there. Raises 1977 after
  // clearing the list when the strip cannot be made.
  void appendCells(int32_t newCount, int32_t insertAt, int32_t insertCount);
  // Decodes an undecoded strip; raises 1977 (after Clear) when that fails.
  void EnsureDecoded();
  // The strip changed: its picture bytes no longer describe it.
  void Touched() { m_sheet.SetOriginalBytes({}); }
  void SetKey(int32_t position, host::StringView value);
  void MoveTo(int32_t from, int32_t to);
  [[nodiscard]] int32_t StripCells() const { return m_width > 0 ? m_sheet.Width() / m_width : 0; }
  void DrawIntoCell(const image::API32bppDIB& picture, int32_t position, bool Scaled);
  [[nodiscard]] platform::HICON MakeIcon(const image::API32bppDIB& cell, int32_t& bitDepth, ExtractedIcon* details);

  std::weak_ptr<APIItemData> m_parent;
  std::vector<Entry> m_items;
  std::vector<host::String> m_tags;
  std::vector<std::pair<uint32_t, int32_t>> m_idIndex;  // (object id, 0-based position), by id
  KeyIndex m_keyIndex;
  size_t m_capacity = 0;  // table entries reserved; grows in steps of 3
  image::API32bppDIB m_sheet;
  image::API32bppDIB m_work;
  int32_t m_width;
  int32_t m_height;
  int32_t m_initialCells;
  bool m_delayLoaded = false;
  int32_t m_enumCursor = 0;
};

}  // namespace mx::imagelist
