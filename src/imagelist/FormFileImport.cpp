#include "imagelist/FormFileImport.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "host/Err.h"
#include "host/FormFileReader.h"
#include "host/Strings.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace mx::imagelist {

using host::String;
using host::StringView;

namespace {

// The form header must show a Begin VB block within its first 4096 bytes.
constexpr size_t kSniffBytes = 4096;
// A picture entry of the common controls: the image's byte count stands this far in.
constexpr uint64_t kImageLengthOffset = 24;

struct PendingImage {
  int64_t offset = -1;  // into the companion file; -1 for a Picture line without a reference
  String companion;
  String key;
  String tag;
};

StringView Trimmed(StringView s) {
  size_t a = 0, b = s.size();
  while (a < b && (s[a] == u' ' || s[a] == u'\t')) ++a;
  while (b > a && (s[b - 1] == u' ' || s[b - 1] == u'\t')) --b;
  return s.substr(a, b - a);
}

// The text after "=", without its quotes (a doubled quote inside stands for one).
String ValueText(StringView line) {
  size_t eq = line.find(u'=');
  if (eq == StringView::npos) return {};
  StringView v = Trimmed(line.substr(eq + 1));
  if (v.empty() || v[0] != u'"') {
    size_t comment = v.find(u'\'');
    return String(Trimmed(v.substr(0, comment)));
  }
  String out;
  for (size_t i = 1; i < v.size(); ++i) {
    if (v[i] == u'"') {
      if (i + 1 < v.size() && v[i + 1] == u'"') {
        out.push_back(u'"');
        ++i;
        continue;
      }
      break;
    }
    out.push_back(v[i]);
  }
  return out;
}

// The property name of a line "Name = value", compared without regard to case.
bool NameIs(StringView line, StringView name) {
  size_t eq = line.find(u'=');
  return eq != StringView::npos && host::TextEquals(Trimmed(line.substr(0, eq)), name);
}

bool IsImageListBlock(const host::FormBlock& b) {
  return host::TextEquals(b.className, u"ImageList") &&
         (host::TextEquals(b.library, u"MSComctlLib") || host::TextEquals(b.library, u"ComctlLib"));
}

int32_t BagLong(const host::PropertyBag& bag, StringView key) {
  try {
    return bag.ReadProperty(key, host::Variant(int32_t{0})).ToLong();
  } catch (const host::RuntimeError&) {
    return 0;
  }
}

class Importer {
 public:
  Importer(APIImageLists& lists, std::filesystem::path folder, FormImportResult& result)
      : m_lists(lists), m_folder(std::move(folder)), m_result(result) {}

  void Walk(const host::FormBlock& block) {
    if (IsImageListBlock(block)) ImportList(block);
    for (const auto& child : block.children) Walk(child);
  }

 private:
  void ImportList(const host::FormBlock& block) {
    const int32_t width = BagLong(block.bag, u"ImageWidth");
    const int32_t height = BagLong(block.bag, u"ImageHeight");
    std::vector<PendingImage> images;
    for (const auto& item : block.bag.Items()) {
      for (const String& raw : item.unknownLines) {
        StringView line = Trimmed(raw);
        if (NameIs(line, u"NumListImages")) {
          // Sizes the table; the images themselves are counted by their Picture lines.
          long n = std::strtol(host::ToUtf8(ValueText(line)).c_str(), nullptr, 10);
          if (n > 0 && n <= 1024000) images.reserve(static_cast<size_t>(n));
        } else if (NameIs(line, u"Picture")) {
          PendingImage p;
          auto refs = host::FindFrxReferences(line);
          if (!refs.empty()) {
            p.offset = refs.front().offset;
            p.companion = refs.front().fileName;
          }
          images.push_back(std::move(p));
        } else if (NameIs(line, u"Key") && !images.empty()) {
          images.back().key = ValueText(line);
        } else if (NameIs(line, u"Object.Tag") && !images.empty()) {
          images.back().tag = ValueText(line);
        }
      }
    }

    String base = host::FromUtf8(std::to_string(height) + "x" + std::to_string(width));
    String key = base;
    for (int n = 1; m_lists.IsKeyAssigned(key); ++n) key = base + u"(" + host::FromUtf8(std::to_string(n)) + u")";
    std::shared_ptr<APIImageList> list;
    try {
      list = m_lists.Add(width, height, key, std::max<int32_t>(1, static_cast<int32_t>(images.size())));
    } catch (const host::RuntimeError&) {
      m_result.imagesSkipped += static_cast<int32_t>(images.size());
      return;
    }
    m_result.lists.push_back(list);
    for (const PendingImage& p : images) {
      if (p.offset < 0) continue;
      const host::FrxReader* frx = Companion(p.companion);
      uint32_t length = 0;
      host::ByteArray bytes;
      bool added = false;
      if (frx && frx->ReadUInt32(static_cast<uint64_t>(p.offset) + kImageLengthOffset, length) &&
          frx->ReadBytes(static_cast<uint64_t>(p.offset) + kImageLengthOffset + 4, length, bytes)) {
        try {
          added = list->Images()->AddImage_fromStream(bytes, host::Variant::Missing(), p.key, p.tag, 0, 0, 32, true) !=
                  nullptr;
        } catch (const host::RuntimeError&) {
          added = false;
        }
      }
      if (!added) ++m_result.imagesSkipped;
    }
  }

  // The companion file by name, relative to the form's folder, read once.
  const host::FrxReader* Companion(const String& name) {
    String folded = host::FoldCase(name);
    auto it = m_companions.find(folded);
    if (it != m_companions.end()) return it->second ? &*it->second : nullptr;
    std::string file = host::ToUtf8(name);
    size_t sep = file.find_last_of("/\\");
    if (sep != std::string::npos) file = file.substr(sep + 1);
    std::optional<host::FrxReader> reader;
    std::ifstream in(m_folder / file, std::ios::binary);
    if (in) reader.emplace(host::ByteArray((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>()));
    auto& slot = m_companions[folded] = std::move(reader);
    return slot ? &*slot : nullptr;
  }

  APIImageLists& m_lists;
  std::filesystem::path m_folder;
  FormImportResult& m_result;
  std::map<String, std::optional<host::FrxReader>> m_companions;
};

}  // namespace

FormImportResult ImportImageListsFromForm(APIImageLists& lists, const std::string& formPath) {
  FormImportResult result;
  {
    std::ifstream in(formPath, std::ios::binary);
    if (!in) {
      result.error = "cannot read " + formPath;
      return result;
    }
    std::string head(kSniffBytes, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<size_t>(in.gcount()));
    if (head.find("Begin VB") == std::string::npos) {
      result.error = formPath + " is not a form file";
      return result;
    }
  }
  host::FormFile form;
  host::FormFileError error;
  if (!host::ReadFormFile(formPath, form, error)) {
    result.error = formPath + ": " + error.Message();
    return result;
  }
  result.isForm = true;
  std::filesystem::path folder = std::filesystem::path(formPath).parent_path();
  if (folder.empty()) folder = ".";
  Importer(lists, folder, result).Walk(form.root);
  return result;
}

}  // namespace mx::imagelist
