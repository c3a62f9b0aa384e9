#include "imagelist/APIListImages.h"

#include <algorithm>
#include <cstring>

#include "host/Err.h"
#include "host/Strings.h"
#include "imagelist/APIEnumVARIANT.h"
#include "imagelist/APIListImage.h"
#include "imagelist/IndexLookup.h"

namespace mx::imagelist {

using host::Raise;
using host::String;
using host::StringView;
using host::Variant;

namespace {

// Table entries are reserved in steps of this many.
constexpr size_t kGrowStep = 3;

// Copies a block of whole cells between strips of the same cell size, row by row.
void CopyCells(const image::API32bppDIB& from, int32_t fromCell, image::API32bppDIB& to, int32_t toCell, int32_t cells,
               int32_t cellWidth) {
  if (cells <= 0) return;
  const size_t bytes = static_cast<size_t>(cells) * cellWidth * 4;
  for (int32_t row = 0; row < from.Height(); ++row) {
    const uint8_t* s = from.BitsPointer() + static_cast<size_t>(row) * from.scanWidth() +
                       static_cast<size_t>(fromCell) * cellWidth * 4;
    uint8_t* d =
        to.BitsPointer() + static_cast<size_t>(row) * to.scanWidth() + static_cast<size_t>(toCell) * cellWidth * 4;
    std::memmove(d, s, bytes);
  }
}

void ZeroCells(image::API32bppDIB& strip, int32_t cell, int32_t cells, int32_t cellWidth) {
  if (cells <= 0) return;
  for (int32_t row = 0; row < strip.Height(); ++row)
    std::memset(
        strip.BitsPointer() + static_cast<size_t>(row) * strip.scanWidth() + static_cast<size_t>(cell) * cellWidth * 4,
        0, static_cast<size_t>(cells) * cellWidth * 4);
}

}  // namespace

APIListImages::APIListImages(std::weak_ptr<APIItemData> parent, int32_t Width, int32_t Height, int32_t initialCells)
    : m_parent(std::move(parent)), m_width(Width), m_height(Height), m_initialCells(std::max(1, initialCells)) {}

APIListImages::~APIListImages() = default;

// ---- lookup -------------------------------------------------------------------------------

int32_t APIListImages::PositionOf(uint32_t id) const {
  auto it = std::lower_bound(m_idIndex.begin(), m_idIndex.end(), id,
                             [](const std::pair<uint32_t, int32_t>& e, uint32_t v) { return e.first < v; });
  return it != m_idIndex.end() && it->first == id ? it->second : -1;
}

int32_t APIListImages::Locate(const Variant& Index) const {
  bool isNumber = false;
  if (auto p = detail::NumericPosition(Index, Count(), isNumber)) return *p;
  if (isNumber) return -1;
  if (const String* key = Index.TryGet<String>(); key && !key->empty()) {
    uint32_t id = m_keyIndex.Find(*key);
    return id ? PositionOf(id) : -1;
  }
  return -1;
}

std::shared_ptr<APIListImage> APIListImages::Find(const Variant& Index) const {
  int32_t p = Locate(Index);
  return p >= 0 ? m_items[static_cast<size_t>(p)].image : nullptr;
}

std::shared_ptr<APIListImage> APIListImages::Item(const Variant& Index) const {
  auto item = Find(Index);
  if (!item) Raise(kErrInvalidKeyOrIndex, u"Images.Item", kMsgInvalidKeyOrIndex);
  return item;
}

int32_t APIListImages::MaxImages() const {
  if (auto p = m_parent.lock()) return p->ClassDataLong(DataMaxImageCount, ObjectId());
  return MaxImagesFor(m_width, m_height);
}

void APIListImages::RebuildIdIndex() {
  m_idIndex.clear();
  m_idIndex.reserve(m_items.size());
  for (size_t i = 0; i < m_items.size(); ++i)
    m_idIndex.emplace_back(m_items[i].image->ObjectId(), static_cast<int32_t>(i));
  std::sort(m_idIndex.begin(), m_idIndex.end());
}

// ---- clearing and removing ------------------------------------------------------------------

void APIListImages::Clear() {
  m_items.clear();
  m_tags.clear();
  m_idIndex.clear();
  m_keyIndex.Clear();
  m_capacity = 0;
  m_sheet.DestroyDIB();
  m_sheet.SetOriginalBytes({});
  m_work.DestroyDIB();
  m_enumCursor = 0;
}

void APIListImages::Remove(const Variant& Index) {
  int32_t p = Locate(Index);
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"Images.Remove", kMsgInvalidKeyOrIndex);
  if (Count() == 1) {
    Clear();
    return;
  }
  EnsureDecoded();
  appendCells(StripCells(), p, -1);
  if (!m_items[static_cast<size_t>(p)].key.empty()) m_keyIndex.Remove(m_items[static_cast<size_t>(p)].key);
  m_items.erase(m_items.begin() + p);
  m_tags.erase(m_tags.begin() + p);
  // Positions above the removed one fall by one; the removed id leaves the table.
  uint32_t gone = 0;
  for (auto& e : m_idIndex) {
    if (e.second == p)
      gone = e.first;
    else if (e.second > p)
      --e.second;
  }
  std::erase_if(m_idIndex, [gone](const auto& e) { return e.first == gone; });
  if (m_items.size() + kGrowStep <= m_capacity) m_capacity -= kGrowStep;
}

// ---- the strip -----------------------------------------------------------------------------

void APIListImages::EnsureDecoded() {
  if (m_sheet.Handle()) return;
  std::vector<uint8_t> original;
  bool ok = false;
  if (m_sheet.GetOrginalFormat(original)) {
    ok = m_sheet.LoadPicture_FromOrignalFormat(32, 32, 32) && m_sheet.Height() == m_height &&
         m_sheet.Width() >= Count() * m_width;
  }
  if (!ok && !m_items.empty()) {
    // The picture is gone or unreadable: an empty strip keeps the names usable.
    ok = m_sheet.InitializeDIB(m_width * static_cast<int32_t>(std::max(m_capacity, m_items.size())), m_height);
  }
  if (!ok) {
    Clear();
    Raise(kErrLowResources, u"Images", kMsgLowResources);
  }
}

const image::API32bppDIB& APIListImages::Sheet() {
  if (!m_items.empty()) EnsureDecoded();
  return m_sheet;
}

void APIListImages::appendCells(int32_t newCount, int32_t insertAt, int32_t insertCount) {
  // With no images there may be no strip yet: the first one is made at its full size below.
  if (!m_items.empty()) EnsureDecoded();
  const int32_t oldCount = StripCells();
  if (insertCount == 0 && newCount <= oldCount) return;

  Touched();
  if (insertCount > 0 || newCount > oldCount) {
    image::API32bppDIB fresh;
    const int32_t cells = std::max(newCount, oldCount + std::max(insertCount, 0));
    if (!fresh.InitializeDIB(cells * m_width, m_height)) {
      Clear();
      Raise(kErrLowResources, u"Images", kMsgLowResources);
    }
    if (oldCount > 0) {
      if (insertCount > 0) {
        // Cells before the insertion stay; those from it on move right, leaving a zeroed gap.
        CopyCells(m_sheet, 0, fresh, 0, std::min(insertAt, oldCount), m_width);
        CopyCells(m_sheet, insertAt, fresh, insertAt + insertCount, oldCount - insertAt, m_width);
      } else {
        CopyCells(m_sheet, 0, fresh, 0, oldCount, m_width);
      }
    }
    fresh.SetImageType(image::imgBmpPARGB);
    fresh.Alpha(image::AlphaComplex);
    m_sheet.SwapDIBs(fresh);
    m_sheet.SetOriginalBytes({});
    return;
  }
  if (insertCount < 0) {
    // Removal in place: the cells after the removed ones move left; the freed ones at the end
    // are cleared so that a later append starts from transparent cells.
    const int32_t n = -insertCount;
    CopyCells(m_sheet, insertAt + n, m_sheet, insertAt, oldCount - insertAt - n, m_width);
    ZeroCells(m_sheet, oldCount - n, n, m_width);
  }
}

bool APIListImages::CopyCell(int32_t position, image::API32bppDIB& out) {
  if (position < 0 || position >= Count()) return false;
  EnsureDecoded();
  if (out.Width() != m_width || out.Height() != m_height || !out.Handle()) {
    if (!out.InitializeDIB(m_width, m_height)) return false;
  }
  CopyCells(m_sheet, position, out, 0, 1, m_width);
  out.SetImageType(image::imgBmpPARGB);
  out.Alpha(image::AlphaComplex);
  return true;
}

void APIListImages::DrawIntoCell(const image::API32bppDIB& picture, int32_t position, bool Scaled) {
  const int32_t x0 = position * m_width;
  if (picture.Width() == m_width && picture.Height() == m_height) {
    // Same size: the cell is transparent, so blending the picture onto it is a plain copy.
    for (int32_t row = 0; row < m_height; ++row)
      std::memcpy(m_sheet.BitsPointer() + static_cast<size_t>(row) * m_sheet.scanWidth() + static_cast<size_t>(x0) * 4,
                  picture.BitsPointer() + static_cast<size_t>(row) * picture.scanWidth(),
                  static_cast<size_t>(m_width) * 4);
    return;
  }
  int32_t w = m_width, h = m_height, dx = 0, dy = 0;
  if (Scaled) {
    picture.ScaleImage(m_width, m_height, w, h, image::scaleToSize);
    dx = (m_width - w) / 2;
    dy = (m_height - h) / 2;
  }
  // Cast away const: Render draws from the picture without changing its pixels.
  const_cast<image::API32bppDIB&>(picture).Render(0, x0 + dx, dy, w, h, 0, 0, picture.Width(), picture.Height(), 100,
                                                  true, true, &m_sheet);
}

// ---- adding --------------------------------------------------------------------------------

std::shared_ptr<APIListImage> APIListImages::AddImage_fromStream(const std::vector<uint8_t>& inStream,
                                                                 const Variant& Index, StringView Key, StringView Tag,
                                                                 int32_t streamStart, int32_t streamLength,
                                                                 int32_t iconBitDepth, bool Scaled) {
  image::API32bppDIB picture;
  if (!picture.LoadPicture_Stream(inStream, m_width, m_height, streamStart, streamLength, false, iconBitDepth))
    return nullptr;
  return AddImage_fromDIB(picture, Index, Key, Tag, Scaled);
}

std::shared_ptr<APIListImage> APIListImages::AddImage_fromFile(const String& FileName, const Variant& Index,
                                                               StringView Key, StringView Tag, int32_t iconBitDepth,
                                                               bool Scaled) {
  image::API32bppDIB picture;
  if (!picture.LoadPicture_File(FileName, m_width, m_height, false, iconBitDepth)) return nullptr;
  return AddImage_fromDIB(picture, Index, Key, Tag, Scaled);
}

std::shared_ptr<APIListImage> APIListImages::AddImage_fromStdPicture(const std::shared_ptr<host::StdPicture>& Picture,
                                                                     const Variant& Index, StringView Key,
                                                                     StringView Tag, bool Scaled) {
  image::API32bppDIB picture;
  if (!picture.LoadPicture_StdPicture(Picture)) return nullptr;
  return AddImage_fromDIB(picture, Index, Key, Tag, Scaled);
}

std::shared_ptr<APIListImage> APIListImages::AddImage_fromHandle(uint32_t Handle, const Variant& Index, StringView Key,
                                                                 StringView Tag, bool Scaled) {
  image::API32bppDIB picture;
  if (!picture.LoadPicture_ByHandle(Handle)) return nullptr;
  return AddImage_fromDIB(picture, Index, Key, Tag, Scaled);
}

std::shared_ptr<APIListImage> APIListImages::AddImage_fromClipBoard(const Variant& Index, StringView Key,
                                                                    StringView Tag, bool Scaled) {
  image::API32bppDIB picture;
  if (!picture.LoadPicture_ClipBoard()) return nullptr;
  return AddImage_fromDIB(picture, Index, Key, Tag, Scaled);
}

std::shared_ptr<APIListImage> APIListImages::AddImage_fromDIB(const image::API32bppDIB& picture, const Variant& Index,
                                                              StringView Key, StringView Tag, bool Scaled) {
  if (!picture.Handle()) return nullptr;
  if (Count() + 1 > MaxImages()) Raise(kErrMaxImagesExceeded, u"Images.Add", kMsgMaxImages);
  KeySearch ks;
  if (!Key.empty()) {
    ks = m_keyIndex.Search(Key);
    if (ks.found) Raise(kErrDuplicatedKey, u"Images.Add", kMsgDuplicatedKey);
  }
  if (m_items.size() + 1 > m_capacity) m_capacity += kGrowStep;

  int32_t position = Count();
  if (!Index.IsMissing() && !Index.IsEmpty()) {
    int32_t p = Locate(Index);
    if (p >= 0) position = p;
  }

  // The strip: made at the first add with room for the initial count, widened to the table's
  // reserve when full, and rebuilt with a gap for an insertion in the middle.
  const int32_t reserve = StripCells() == 0 ? m_initialCells : static_cast<int32_t>(m_capacity);
  const int32_t wanted = std::max<int32_t>(Count() + 1, std::min<int32_t>(reserve, MaxImages()));
  if (position < Count())
    appendCells(std::max(wanted, StripCells()), position, 1);
  else if (Count() + 1 > StripCells())
    appendCells(wanted, position, 0);
  else
    EnsureDecoded();

  auto self = std::static_pointer_cast<APIListImages>(shared_from_this());
  auto image = std::make_shared<APIListImage>(std::weak_ptr<APIItemData>(std::shared_ptr<APIItemData>(self)));
  m_items.insert(m_items.begin() + position, Entry{image, String(Key)});
  m_tags.insert(m_tags.begin() + position, String(Tag));
  for (auto& e : m_idIndex)
    if (e.second >= position) ++e.second;
  auto at = std::lower_bound(m_idIndex.begin(), m_idIndex.end(), std::make_pair(image->ObjectId(), int32_t{-1}));
  m_idIndex.insert(at, {image->ObjectId(), position});
  if (!Key.empty()) m_keyIndex.Insert(ks.position, String(Key), image->ObjectId());

  Touched();
  DrawIntoCell(picture, position, Scaled);
  return image;
}

// ---- keys, tags, positions -------------------------------------------------------------------

void APIListImages::SetKey(int32_t position, StringView value) {
  Entry& e = m_items[static_cast<size_t>(position)];
  if (value.empty()) {
    if (!e.key.empty()) m_keyIndex.Remove(e.key);
    e.key.clear();
    return;
  }
  KeySearch s = m_keyIndex.Search(value);
  if (s.found) {
    // The same key in other letters is a rename of this image's own key, not a collision.
    if (m_keyIndex.Entries()[s.position].id != e.image->ObjectId())
      Raise(kErrDuplicatedKey, u"Images.Key", kMsgDuplicatedKey);
    m_keyIndex.Remove(e.key);
  } else if (!e.key.empty()) {
    m_keyIndex.Remove(e.key);
  }
  e.key = String(value);
  m_keyIndex.Insert(m_keyIndex.Search(value).position, e.key, e.image->ObjectId());
}

void APIListImages::MoveTo(int32_t from, int32_t to) {
  if (from == to) return;
  EnsureDecoded();
  // The cells between the two positions rotate by one, carrying the moved image's pixels along.
  const int32_t lo = std::min(from, to), hi = std::max(from, to);
  const size_t span = static_cast<size_t>(hi - lo + 1) * m_width;
  for (int32_t row = 0; row < m_height; ++row) {
    auto* px = reinterpret_cast<uint32_t*>(m_sheet.BitsPointer() + static_cast<size_t>(row) * m_sheet.scanWidth()) +
               static_cast<size_t>(lo) * m_width;
    if (from < to)
      std::rotate(px, px + m_width, px + span);
    else
      std::rotate(px, px + span - m_width, px + span);
  }
  auto rotateVec = [&](auto& v) {
    if (from < to)
      std::rotate(v.begin() + lo, v.begin() + lo + 1, v.begin() + hi + 1);
    else
      std::rotate(v.begin() + lo, v.begin() + hi, v.begin() + hi + 1);
  };
  rotateVec(m_items);
  rotateVec(m_tags);
  RebuildIdIndex();
  Touched();
}

// ---- parent interface ----------------------------------------------------------------------

int32_t APIListImages::ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) {
  switch (DataName) {
    case DataIndex: {
      int32_t p = PositionOf(oID);
      return p < 0 ? 0 : p + 1;
    }
    case DataNext:
      if (m_enumCursor <= Count()) ++m_enumCursor;
      return m_enumCursor <= Count() ? -1 : 0;
    case DataWidth:
    case DataHeight:
    case DataMaxImageCount:
    case DataGDIToken:
      if (auto p = m_parent.lock()) return p->ClassDataLong(DataName, ObjectId());
      return DataName == DataWidth           ? m_width
             : DataName == DataHeight        ? m_height
             : DataName == DataMaxImageCount ? MaxImagesFor(m_width, m_height)
                                             : 0;
    default:
      return 0;
  }
}

void APIListImages::ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) {
  if (DataName == DataReset) {
    m_enumCursor = 0;
  } else if (DataName == DataIndex) {
    int32_t from = PositionOf(oID);
    if (from < 0 || value < 1 || value > Count()) Raise(kErrInvalidKeyOrIndex, u"Images.Index", kMsgInvalidKeyOrIndex);
    MoveTo(from, value - 1);
  }
}

String APIListImages::ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) {
  int32_t p = PositionOf(oID);
  if (p < 0) return {};
  if (DataName == DataKey) return m_items[static_cast<size_t>(p)].key;
  if (DataName == DataTag) return m_tags[static_cast<size_t>(p)];
  return {};
}

void APIListImages::ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, StringView value) {
  int32_t p = PositionOf(oID);
  if (p < 0) return;
  if (DataName == DataKey)
    SetKey(p, value);
  else if (DataName == DataTag)
    m_tags[static_cast<size_t>(p)] = String(value);
}

Variant APIListImages::ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t) {
  if (DataName == DataItem && m_enumCursor >= 1 && m_enumCursor <= Count())
    return Variant(m_items[static_cast<size_t>(m_enumCursor - 1)].image);
  return Variant::Nothing();
}

std::shared_ptr<APIEnumVARIANT> APIListImages::xcom_IEnum() {
  return APIEnumVARIANT::Create(std::static_pointer_cast<APIListImages>(shared_from_this()));
}

APIListImages::iterator::value_type APIListImages::iterator::operator*() const { return m_owner->m_items[m_i].image; }

std::vector<Variant> APIListImages::EnumerateItems() {
  std::vector<Variant> out;
  for (const auto& e : m_items) out.emplace_back(e.image);
  return out;
}

Variant APIListImages::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  auto is = [&](StringView n) { return host::TextEquals(name, n); };
  if (name.empty() || is(u"Item")) return Variant(Item(host::ArgumentAt(args, 0)));
  if (is(u"Count")) return Variant(Count());
  if (is(u"MaxImages")) return Variant(MaxImages());
  if (is(u"IsKeyAssigned")) return Variant(IsKeyAssigned(host::ArgumentAt(args, 0).ToString()));
  if (is(u"Clear")) {
    Clear();
    return {};
  }
  if (is(u"Remove")) {
    Remove(host::ArgumentAt(args, 0));
    return {};
  }
  if (is(u"DelayLoaded")) {
    if (kind == host::CallKind::Let) {
      DelayLoaded(host::ArgumentAt(args, 0).ToBoolean());
      return {};
    }
    return Variant(DelayLoaded());
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::imagelist
