#include "host/FormFile.h"

#include <cctype>

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

// The host writes these for every control it sites; a user control's extent comes with them.
constexpr const char16_t* kExtenderKeys[] = {
    u"LEFT",     u"TOP",     u"WIDTH",   u"HEIGHT",          u"TABINDEX",        u"VISIBLE",  u"TAG",
    u"INDEX",    u"ALIGN",   u"TOOLTIPTEXT", u"TABSTOP",     u"CAUSESVALIDATION", u"HELPCONTEXTID",
    u"WHATSTHISHELPID", u"DRAGICON", u"DRAGMODE", u"_EXTENTX", u"_EXTENTY",
};

// "Attribute VB_Name = ..." -> the name and the value text; false for any other line.
bool SplitAttribute(StringView line, String& name, String& value) {
  String t = Trim(line);
  constexpr StringView kWord = u"Attribute ";
  if (t.size() <= kWord.size() || FoldCase(t.substr(0, kWord.size())) != u"ATTRIBUTE ") return false;
  StringView rest = StringView(t).substr(kWord.size());
  size_t eq = rest.find(u'=');
  if (eq == StringView::npos) return false;
  name = Trim(rest.substr(0, eq));
  value = Trim(rest.substr(eq + 1));
  return !name.empty();
}

}  // namespace

bool IsExtenderKey(StringView key) {
  String folded = FoldCase(key);
  for (const char16_t* k : kExtenderKeys) {
    if (folded == k) return true;
  }
  return false;
}

std::string CompanionExtension(const std::string& formExtension) {
  std::string ext = formExtension;
  if (!ext.empty() && ext[0] == '.') ext.erase(0, 1);
  bool upper = !ext.empty() && std::isupper(static_cast<unsigned char>(ext[0]));
  std::string lower;
  for (char c : ext) lower.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
  std::string result = "frx";
  if (lower == "ctl") result = "ctx";
  else if (lower == "pag") result = "pgx";
  else if (lower == "dob") result = "dox";
  else if (lower == "dsr") result = "dsx";
  if (upper) {
    for (char& c : result) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return "." + result;
}

std::string CompanionPathFor(const std::string& formPath) {
  size_t slash = formPath.find_last_of('/');
  size_t dot = formPath.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return formPath + ".frx";
  return formPath.substr(0, dot) + CompanionExtension(formPath.substr(dot));
}

FormBlock::FormBlock(String library_, String className_, String name_)
    : library(std::move(library_)), className(std::move(className_)), name(std::move(name_)) {}

bool FormBlock::IsHostClass() const { return FoldCase(library) == kHostLibrary; }

std::optional<int32_t> FormBlock::Index() const {
  const BagEntry* entry = host.Find(u"Index");
  if (!entry) return std::nullopt;
  try {
    return entry->value.ToLong();
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

FormBlock* FormBlock::FindControl(StringView controlName, std::optional<int32_t> index) {
  return const_cast<FormBlock*>(static_cast<const FormBlock*>(this)->FindControl(controlName, index));
}

const FormBlock* FormBlock::FindControl(StringView controlName, std::optional<int32_t> index) const {
  if (FoldCase(name) == FoldCase(controlName) && (!index || Index() == index)) return this;
  for (const FormBlock& child : children) {
    if (const FormBlock* found = child.FindControl(controlName, index)) return found;
  }
  return nullptr;
}

FormBlock& FormBlock::AddChild(String childLibrary, String childClass, String childName) {
  children.emplace_back(std::move(childLibrary), std::move(childClass), std::move(childName));
  return children.back();
}

bool FormBlock::SameContents(const FormBlock& other) const {
  if (library != other.library || className != other.className || name != other.name) return false;
  if (!host.SameContents(other.host) || !bag.SameContents(other.bag)) return false;
  if (children.size() != other.children.size()) return false;
  for (size_t i = 0; i < children.size(); ++i) {
    if (!children[i].SameContents(other.children[i])) return false;
  }
  return true;
}

std::optional<String> FormFile::Attribute(StringView attributeName) const {
  String name, value;
  for (const String& line : trailer) {
    if (SplitAttribute(line, name, value) && FoldCase(name) == FoldCase(attributeName)) return value;
  }
  return std::nullopt;
}

void FormFile::SetAttribute(StringView attributeName, StringView valueText) {
  String line = u"Attribute " + String(attributeName) + u" = " + String(valueText);
  String name, value;
  size_t insertAt = 0;
  for (size_t i = 0; i < trailer.size(); ++i) {
    if (!SplitAttribute(trailer[i], name, value)) continue;
    if (FoldCase(name) == FoldCase(attributeName)) {
      trailer[i] = line;
      return;
    }
    insertAt = i + 1;
  }
  trailer.insert(trailer.begin() + static_cast<ptrdiff_t>(insertAt), line);
}

void FormFile::AddObjectReference(StringView reference, StringView file) {
  for (const FormHeaderLine& line : header) {
    if (line.object && FoldCase(line.object->reference) == FoldCase(reference)) return;
  }
  header.push_back(FormHeaderLine{FormObjectReference{String(reference), String(file)}, {}});
}

std::vector<FormObjectReference> FormFile::ObjectReferences() const {
  std::vector<FormObjectReference> refs;
  for (const FormHeaderLine& line : header) {
    if (line.object) refs.push_back(*line.object);
  }
  return refs;
}

bool FormFile::SameContents(const FormFile& other) const {
  return version == other.version && header == other.header && trailer == other.trailer &&
         root.SameContents(other.root);
}

}  // namespace mx::host
