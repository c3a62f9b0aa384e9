#pragma once
// The model of a form file (.frm, or .ctl for a user control's own design): what the text form
// and its companion hold, as a tree that the form loader walks and the writer turns back into
// text.
//
//   FormFile
//     version              "5.00"
//     header               Object lines naming control libraries, and lines kept as they were
//     root: FormBlock      Begin VB.Form frmMain
//       host               the host's own lines: the form's properties, a control's extender
//       bag                the control's property bag, exactly the keys it wrote
//       children           nested blocks (controls, controls inside containers), any depth
//     trailer              Attribute lines and whatever follows them, as they were
//
// In a block of one of the host's own classes ("VB.Form", "VB.Label", ...) every line is the
// host's. In a block of a library control ("Morvantix.USButton") the extender lines (position,
// size, tab order, Index...) are the host's and everything else goes to the control's bag, which
// is what the control's ReadProperties receives and its WriteProperties refills.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/PropertyBag.h"
#include "host/String.h"

namespace mx::host {

// The library name of the host's own classes.
inline constexpr char16_t kHostLibrary[] = u"VB";

// The host's extender keys of a control, and the user control's extent (_ExtentX, _ExtentY in
// HiMetric), which the host writes for it. Compared without regard to case.
[[nodiscard]] bool IsExtenderKey(StringView key);

// The companion file's extension for a form file's: ".frm" -> ".frx", ".ctl" -> ".ctx", ".pag"
// -> ".pgx", ".dob" -> ".dox", ".dsr" -> ".dsx"; any other gives ".frx". Case follows the input's
// first letter after the dot.
[[nodiscard]] std::string CompanionExtension(const std::string& formExtension);
// The companion file's path for a form file's path (same folder and base name).
[[nodiscard]] std::string CompanionPathFor(const std::string& formPath);

// `Object = "{6A3F1C20-...}#1.0#0"; "Morvantix.ocx"`: a control library the form uses.
struct FormObjectReference {
  String reference;
  String file;
  friend bool operator==(const FormObjectReference&, const FormObjectReference&) = default;
};

// A line before the first block: an Object line, or a line kept as it stood.
struct FormHeaderLine {
  std::optional<FormObjectReference> object;
  String text;
  friend bool operator==(const FormHeaderLine&, const FormHeaderLine&) = default;
};

struct FormBlock {
  FormBlock() = default;
  FormBlock(String library, String className, String name);

  String library;    // "VB", "Morvantix"
  String className;  // "Form", "USButton"
  String name;       // "frmClientes", "cmdOk"
  PropertyBag host;
  PropertyBag bag;
  // Nested blocks in order; a reference into it is invalidated by adding another.
  std::vector<FormBlock> children;

  // "Library.Class", as the class registry names it.
  [[nodiscard]] String FullClassName() const { return library + u"." + className; }
  // A class of the host itself: all of its lines are the host's.
  [[nodiscard]] bool IsHostClass() const;
  // Where a key of this block belongs: true for the host's part, false for the control's bag.
  [[nodiscard]] bool IsHostKey(StringView key) const { return IsHostClass() || IsExtenderKey(key); }
  // The section that holds a key.
  [[nodiscard]] PropertyBag& SectionFor(StringView key) { return IsHostKey(key) ? host : bag; }
  [[nodiscard]] const PropertyBag& SectionFor(StringView key) const { return IsHostKey(key) ? host : bag; }

  // The Index of a member of a control array; nothing for a control that is in none.
  [[nodiscard]] std::optional<int32_t> Index() const;
  // The first block of that name (without regard to case) and index, this one or any below it,
  // depth first in file order; nullptr when there is none.
  [[nodiscard]] FormBlock* FindControl(StringView controlName, std::optional<int32_t> index = std::nullopt);
  [[nodiscard]] const FormBlock* FindControl(StringView controlName,
                                             std::optional<int32_t> index = std::nullopt) const;
  FormBlock& AddChild(String childLibrary, String childClass, String childName);

  // Equal names, sections with the same contents (PropertyBag::SameContents), and equal
  // children in the same order.
  [[nodiscard]] bool SameContents(const FormBlock& other) const;
};

struct FormFile {
  String version = u"5.00";
  std::vector<FormHeaderLine> header;
  FormBlock root;
  std::vector<String> trailer;

  // The value text of an Attribute line ("\"frmClientes\"", "False"), or nothing.
  [[nodiscard]] std::optional<String> Attribute(StringView name) const;
  // Replaces the Attribute line of that name, or adds one after the last Attribute line.
  void SetAttribute(StringView name, StringView valueText);
  // Adds an Object line unless one with the same reference is there already.
  void AddObjectReference(StringView reference, StringView file);
  [[nodiscard]] std::vector<FormObjectReference> ObjectReferences() const;

  [[nodiscard]] bool SameContents(const FormFile& other) const;
};

}  // namespace mx::host
