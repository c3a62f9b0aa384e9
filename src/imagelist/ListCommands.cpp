#include "imagelist/ListCommands.h"

#include <charconv>
#include <filesystem>
#include <ostream>

#include "host/Err.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "imagelist/FormFileImport.h"

namespace mx::imagelist {

namespace fs = std::filesystem;
using host::String;

namespace {

constexpr int kOk = 0, kFailed = 1, kUsage = 2;

int Usage(std::ostream& err) {
  err << "usage: mxil create OUT.lIL --key K --size WxH IMG...\n"
         "       mxil list FILE.lIL\n"
         "       mxil extract FILE.lIL INDEX OUT.png\n"
         "       mxil import-frm FORM.frm OUTDIR\n";
  return kUsage;
}

bool ParseInt(const std::string& s, int32_t& v) {
  auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  return ec == std::errc() && p == s.data() + s.size();
}

bool ParseSize(const std::string& s, int32_t& w, int32_t& h) {
  size_t x = s.find_first_of("xX");
  return x != std::string::npos && ParseInt(s.substr(0, x), w) && ParseInt(s.substr(x + 1), h) && w > 0 && h > 0;
}

std::string Utf8(const String& s) { return host::ToUtf8(s); }

int Create(const std::vector<std::string>& a, std::ostream& out, std::ostream& err) {
  std::string key, size;
  std::vector<std::string> files;
  for (size_t i = 2; i < a.size(); ++i) {
    if (a[i] == "--key" && i + 1 < a.size())
      key = a[++i];
    else if (a[i] == "--size" && i + 1 < a.size())
      size = a[++i];
    else if (a[i].rfind("--", 0) == 0)
      return Usage(err);
    else
      files.push_back(a[i]);
  }
  int32_t w = 0, h = 0;
  if (key.empty() || !ParseSize(size, w, h)) return Usage(err);
  auto lists = APIImageLists::Create();
  auto list = lists->Add(w, h, host::FromUtf8(key), std::max<int32_t>(1, static_cast<int32_t>(files.size())));
  for (const std::string& file : files) {
    String imageKey = host::FromUtf8(fs::path(file).stem().string());
    if (!list->Images()->AddImage_fromFile(host::FromUtf8(file), host::Variant::Missing(), imageKey)) {
      err << "mxil: cannot read the picture " << file << "\n";
      return kFailed;
    }
  }
  lists->ExportToFile(1, a[1]);
  out << "wrote " << a[1] << " count=" << list->Images()->Count() << "\n";
  return kOk;
}

std::shared_ptr<APIImageList> Open(APIImageLists& lists, const std::string& path) {
  String key;
  return lists.ImportFromFile(path, key);
}

int List(const std::vector<std::string>& a, std::ostream& out) {
  auto lists = APIImageLists::Create();
  auto list = Open(*lists, a[1]);
  auto images = list->Images();
  out << "key=" << Utf8(list->Key()) << " count=" << images->Count() << " width=" << list->Width()
      << " height=" << list->Height() << "\n";
  for (const auto& image : *images)
    out << "index=" << image->Index() << " key=" << Utf8(image->Key()) << " tag=" << Utf8(image->Tag()) << "\n";
  return kOk;
}

int Extract(const std::vector<std::string>& a, std::ostream& err) {
  auto lists = APIImageLists::Create();
  auto images = Open(*lists, a[1])->Images();
  int32_t n = 0;
  host::Variant index = ParseInt(a[2], n) ? host::Variant(n) : host::Variant(host::FromUtf8(a[2]));
  auto image = images->Item(index);
  image::API32bppDIB cell;
  if (!images->CopyCell(image->Index() - 1, cell) || !cell.SaveToFile_PNG(host::FromUtf8(a[3]))) {
    err << "mxil: cannot write " << a[3] << "\n";
    return kFailed;
  }
  return kOk;
}

// "ImageList_<key>.lIL", with " (n)" before the extension when that name is taken.
fs::path ExportName(const fs::path& dir, const String& key) {
  std::string base = "ImageList_" + Utf8(key);
  fs::path p = dir / (base + ".lIL");
  for (int n = 1; fs::exists(p); ++n) p = dir / (base + "(" + std::to_string(n) + ").lIL");
  return p;
}

int ImportForm(const std::vector<std::string>& a, std::ostream& out, std::ostream& err) {
  auto lists = APIImageLists::Create();
  FormImportResult r = ImportImageListsFromForm(*lists, a[1]);
  if (!r.isForm) {
    err << "mxil: " << r.error << "\n";
    return kFailed;
  }
  std::error_code ec;
  fs::create_directories(a[2], ec);
  for (const auto& list : r.lists) {
    fs::path p = ExportName(a[2], list->Key());
    lists->ExportToFile(list->Index(), p.string());
    out << "wrote " << p.string() << " count=" << list->Images()->Count() << "\n";
  }
  if (r.imagesSkipped) err << "mxil: " << r.imagesSkipped << " image(s) could not be read\n";
  return kOk;
}

}  // namespace

int RunImageListCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (args.empty()) return Usage(err);
  const std::string& cmd = args[0];
  try {
    if (cmd == "create" && args.size() >= 2) return Create(args, out, err);
    if (cmd == "list" && args.size() == 2) return List(args, out);
    if (cmd == "extract" && args.size() == 4) return Extract(args, err);
    if (cmd == "import-frm" && args.size() == 3) return ImportForm(args, out, err);
  } catch (const host::RuntimeError& e) {
    err << "mxil: " << Utf8(e.Description()) << " (error " << e.Number() << ")\n";
    return kFailed;
  }
  return Usage(err);
}

}  // namespace mx::imagelist
