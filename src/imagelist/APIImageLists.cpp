#include "imagelist/APIImageLists.h"

#include <algorithm>
#include <cstring>
#include <fstream>

#include "host/Err.h"
#include "host/Strings.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIEnumVARIANT.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIListImages.h"
#include "imagelist/ByteIO.h"
#include "imagelist/IndexLookup.h"

namespace mx::imagelist {

using host::Raise;
using host::RuntimeError;
using host::String;
using host::StringView;
using host::Variant;

namespace {
constexpr uint8_t kMagic[4] = {'L', 'I', 'V', 'L'};
constexpr uint32_t kWrittenVersion = 2;
}  // namespace

std::shared_ptr<APIItemData> APIImageLists::Self() {
  return std::static_pointer_cast<APIImageLists>(shared_from_this());
}

// ---- lookup -------------------------------------------------------------------------------

int32_t APIImageLists::PositionOf(uint32_t id) const {
  for (size_t i = 0; i < m_lists.size(); ++i)
    if (m_lists[i]->ObjectId() == id) return static_cast<int32_t>(i);
  return -1;
}

int32_t APIImageLists::Locate(const Variant& Index) const {
  bool isNumber = false;
  if (auto p = detail::NumericPosition(Index, Count(), isNumber)) return *p;
  if (isNumber) return -1;
  if (const String* key = Index.TryGet<String>(); key && !key->empty()) {
    uint32_t id = m_keyIndex.Find(*key);
    return id ? PositionOf(id) : -1;
  }
  return -1;
}

std::shared_ptr<APIImageList> APIImageLists::Find(const Variant& Index) const {
  int32_t p = Locate(Index);
  return p >= 0 ? m_lists[static_cast<size_t>(p)] : nullptr;
}

std::shared_ptr<APIImageList> APIImageLists::Item(const Variant& Index) const {
  auto list = Find(Index);
  if (!list) Raise(kErrInvalidKeyOrIndex, u"ImageLists.Item", kMsgInvalidKeyOrIndex);
  return list;
}

bool APIImageLists::CompressionNeeded() const {
  image::API32bppDIB probe;
  return !probe.isGDIplusEnabled() && !probe.isZlibEnabled();
}

// ---- adding and removing -------------------------------------------------------------------

std::shared_ptr<APIImageList> APIImageLists::Append(int32_t Width, int32_t Height, String key) {
  auto list = std::make_shared<APIImageList>(std::weak_ptr<APIItemData>(Self()), Width, Height);
  if (!key.empty()) m_keyIndex.Insert(m_keyIndex.Search(key).position, key, list->ObjectId());
  m_lists.push_back(list);
  m_keys.push_back(std::move(key));
  return list;
}

std::shared_ptr<APIImageList> APIImageLists::Add(int32_t Width, int32_t Height, StringView Key,
                                                 int32_t InitImageCount) {
  // An empty key is not searched: such a list is reachable by index only.
  if (!Key.empty() && m_keyIndex.Search(Key).found) Raise(kErrDuplicatedKey, u"ImageLists.Add", kMsgDuplicatedKey);
  if (InitImageCount < 1) InitImageCount = 1;
  if (MaxImages(Width, Height) < InitImageCount) Raise(kErrMaxImagesExceeded, u"ImageLists.Add", kMsgMaxImages);
  auto list = Append(Width, Height, String(Key));
  list->Initialize(InitImageCount);
  return list;
}

void APIImageLists::RemoveAt(int32_t p) {
  const String& key = m_keys[static_cast<size_t>(p)];
  if (!key.empty()) m_keyIndex.Remove(key);
  m_lists.erase(m_lists.begin() + p);
  m_keys.erase(m_keys.begin() + p);
}

void APIImageLists::Remove(const Variant& Index) {
  int32_t p = Locate(Index);
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"ImageLists.Remove", kMsgInvalidKeyOrIndex);
  if (Count() == 1) {
    Clear();
    return;
  }
  RemoveAt(p);
}

void APIImageLists::Clear() {
  // A list still held elsewhere keeps its images; it only stops answering for its key and index.
  m_lists.clear();
  m_keys.clear();
  m_keyIndex.Clear();
  m_enumCursor = 0;
}

std::shared_ptr<APIEnumVARIANT> APIImageLists::xcom_IEnum() { return APIEnumVARIANT::Create(Self()); }

int32_t APIImageLists::ImageSizesFromStream(const std::vector<uint8_t>& inStream,
                                            std::vector<std::array<int32_t, 2>>& arraySizes) {
  arraySizes.clear();
  image::API32bppDIB scratch;
  if (!scratch.LoadPicture_Stream(inStream, 0, 0, 0, 0, true)) return 0;
  std::vector<std::array<int32_t, 4>> icons;
  if (scratch.SourceIconSizes(icons) > 0) {
    for (const auto& row : icons) arraySizes.push_back({row[0], row[1]});
  } else {
    arraySizes.push_back({scratch.Width(), scratch.Height()});
  }
  return static_cast<int32_t>(arraySizes.size());
}

// ---- parent interface ----------------------------------------------------------------------

int32_t APIImageLists::ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) {
  switch (DataName) {
    case DataIndex: {
      int32_t p = PositionOf(oID);
      return p < 0 ? 0 : p + 1;
    }
    case DataGDIToken:
      return m_gdiToken;
    case DataMaxImageCount: {
      int32_t p = PositionOf(oID);
      return p < 0 ? 0 : m_lists[static_cast<size_t>(p)]->MaxImages();
    }
    case DataNext:
      if (m_enumCursor <= Count()) ++m_enumCursor;
      return m_enumCursor <= Count() ? -1 : 0;
    default:
      return 0;
  }
}

void APIImageLists::ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) {
  if (DataName == DataReset) {
    m_enumCursor = 0;
    return;
  }
  if (DataName != DataIndex) return;
  int32_t from = PositionOf(oID);
  if (from < 0 || value < 1 || value > Count()) Raise(kErrInvalidKeyOrIndex, u"ImageLists.Index", u"Invalid Index");
  // The list moves; its key stays where it is in the key table.
  const int32_t to = value - 1;
  auto list = m_lists[static_cast<size_t>(from)];
  String key = m_keys[static_cast<size_t>(from)];
  m_lists.erase(m_lists.begin() + from);
  m_keys.erase(m_keys.begin() + from);
  m_lists.insert(m_lists.begin() + to, list);
  m_keys.insert(m_keys.begin() + to, key);
}

String APIImageLists::ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) {
  int32_t p = PositionOf(oID);
  return DataName == DataKey && p >= 0 ? m_keys[static_cast<size_t>(p)] : String();
}

void APIImageLists::ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, StringView value) {
  int32_t p = PositionOf(oID);
  if (DataName != DataKey || p < 0) return;
  if (value.empty()) Raise(kErrInvalidKeyOrIndex, u"ImageLists.Key", u"Invalid Key");
  String& key = m_keys[static_cast<size_t>(p)];
  KeySearch s = m_keyIndex.Search(value);
  if (s.found && m_keyIndex.Entries()[s.position].id != oID)
    Raise(kErrDuplicatedKey, u"ImageLists.Key", kMsgDuplicatedKey);
  if (!key.empty()) m_keyIndex.Remove(key);
  key = String(value);
  m_keyIndex.Insert(m_keyIndex.Search(key).position, key, oID);
}

Variant APIImageLists::ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t) {
  if (DataName == DataItem && m_enumCursor >= 1 && m_enumCursor <= Count())
    return Variant(m_lists[static_cast<size_t>(m_enumCursor - 1)]);
  return Variant::Nothing();
}

// ---- blob ----------------------------------------------------------------------------------

void APIImageLists::ExportImageList(const Variant& Index, std::vector<uint8_t>& outData) {
  int32_t p = Locate(Index);
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"ImageLists.ExportImageList", kMsgInvalidKeyOrIndex);
  const String& key = m_keys[static_cast<size_t>(p)];
  std::vector<uint8_t> out;
  try {
    out.assign(kMagic, kMagic + 4);
    PutU32(out, kWrittenVersion);
    PutU32(out, 0);  // formatPos and imagePos, known once the list section is written
    PutU32(out, 0);
    PutU32(out, static_cast<uint32_t>(key.size() * 2));
    PutText(out, key);
    const size_t h = out.size();
    size_t formatAt = h + m_lists[static_cast<size_t>(p)]->Images()->ExportData(out, m_compression);
    SetU32(out, 8, static_cast<uint32_t>(formatAt + 1));
    SetU32(out, 12, static_cast<uint32_t>(formatAt + 4));
  } catch (const RuntimeError& e) {
    Raise(e.Number(), u"ImageLists.ExportImageList", key);
  } catch (const std::bad_alloc&) {
    Raise(kErrExportFailed, u"ImageLists.ExportImageList", kMsgExportFailed);
  }
  outData = std::move(out);
}

std::shared_ptr<APIImageList> APIImageLists::ImportImageList(std::span<const uint8_t> inData, String& Key) {
  if (inData.size() < 16 || std::memcmp(inData.data(), kMagic, 4) != 0) return nullptr;
  const uint32_t version = GetU32(inData, 4);
  if (version >= 3) Raise(kErrInvalidVersion, u"ImageLists.ImportImageList", kMsgInvalidVersion);
  auto fail = []() { Raise(kErrImportFailed, u"ImageLists.ImportImageList", kMsgImportFailed); };
  if (version < 1 || inData.size() < 20) fail();

  const uint32_t formatPos = GetU32(inData, 8);
  const uint32_t keyBytes = GetU32(inData, 16);
  if (keyBytes > inData.size() - 20) fail();
  const size_t h = 20 + keyBytes;
  if (inData.size() - h < 16) fail();
  const int32_t width = static_cast<int32_t>(GetU32(inData, h + 8));
  const int32_t height = static_cast<int32_t>(GetU32(inData, h + 12));
  if (width < 1 || height < 1 || MaxImagesFor(width, height) < 1) fail();

  // The key in force: the caller's, else the blob's, with a counter while it is taken.
  String base = Key.empty() ? GetText(inData, 20, keyBytes) : Key;
  String key = base;
  for (int32_t n = 1; !key.empty() && m_keyIndex.Search(key).found; ++n)
    key = base + u"(" + host::FromUtf8(std::to_string(n)) + u")";

  auto list = Append(width, height, key);
  try {
    list->Initialize(1);
    list->Images()->ImportData(inData, h, formatPos, static_cast<int32_t>(version));
    list->Images()->SetGdiToken(m_gdiToken);
  } catch (const RuntimeError& e) {
    RemoveAt(Count() - 1);
    Raise(e.Number(), u"ImageLists.ImportImageList", e.Description());
  } catch (...) {
    RemoveAt(Count() - 1);
    fail();
  }
  Key = key;
  return list;
}

void APIImageLists::ExportToFile(const Variant& Index, const std::string& path) {
  std::vector<uint8_t> blob;
  ExportImageList(Index, blob);
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  if (f) f.write(reinterpret_cast<const char*>(blob.data()), static_cast<std::streamsize>(blob.size()));
  if (!f) Raise(kErrExportFailed, u"ImageLists.ExportImageList", kMsgExportFailed);
}

std::shared_ptr<APIImageList> APIImageLists::ImportFromFile(const std::string& path, String& Key) {
  std::ifstream f(path, std::ios::binary);
  if (!f) Raise(kErrImportFailed, u"ImageLists.ImportImageList", kMsgImportFailed);
  std::vector<uint8_t> blob((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
  auto list = ImportImageList(blob, Key);
  if (!list) Raise(kErrImportFailed, u"ImageLists.ImportImageList", kMsgImportFailed);
  return list;
}

// ---- late binding --------------------------------------------------------------------------

std::vector<Variant> APIImageLists::EnumerateItems() {
  std::vector<Variant> out;
  for (const auto& list : m_lists) out.emplace_back(list);
  return out;
}

Variant APIImageLists::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  auto is = [&](StringView n) { return host::TextEquals(name, n); };
  auto arg = [&](size_t i) -> const Variant& { return host::ArgumentAt(args, i); };
  if (name.empty() || is(u"Item")) return Variant(Item(arg(0)));
  if (is(u"Count")) return Variant(Count());
  if (is(u"Compression")) {
    if (kind == host::CallKind::Let) {
      Compression(arg(0).ToBoolean());
      return {};
    }
    return Variant(Compression());
  }
  if (is(u"CompressionNeeded")) return Variant(CompressionNeeded());
  if (is(u"Clear")) {
    Clear();
    return {};
  }
  if (is(u"Remove")) {
    Remove(arg(0));
    return {};
  }
  if (is(u"MaxImages")) return Variant(MaxImages(arg(0).ToLong(), arg(1).ToLong()));
  if (is(u"IsKeyAssigned")) return Variant(IsKeyAssigned(arg(0).ToString()));
  if (is(u"Add")) {
    int32_t init = arg(3).IsMissing() ? 1 : arg(3).ToLong();
    return Variant(Add(arg(0).ToLong(), arg(1).ToLong(), arg(2).IsMissing() ? String() : arg(2).ToString(), init));
  }
  if (is(u"ExportImageList")) {
    std::vector<uint8_t> blob;
    ExportImageList(arg(0), blob);
    if (args.size() > 1) args[1] = Variant(std::move(blob));
    return {};
  }
  if (is(u"ImportImageList")) {
    String key = arg(1).IsMissing() ? String() : arg(1).ToString();
    auto list = ImportImageList(arg(0).ToBytes(), key);
    if (args.size() > 1) args[1] = Variant(key);
    return list ? Variant(list) : Variant::Nothing();
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::imagelist
