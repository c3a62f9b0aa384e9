// Forms from and to form files: the root block's own lines, each control built by class name,
// sited with its extender lines and fed its bag; the host's own controls built the same way where
// their class is registered, and the blocks of the others kept as they came.
#include <cmath>
#include <filesystem>

#include "host/ControlRegistry.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/FormFileWriter.h"
#include "host/FormImpl.h"
#include "host/HostControls.h"
#include "host/IntrinsicControl.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/UserControl.h"

namespace mx::host {

namespace {

// The library's own control file, named in a form's header when it holds one of its controls.
constexpr char16_t kLibraryName[] = u"Morvantix";
constexpr char16_t kLibraryReference[] = u"{6A3F1C20-4B7D-4E2A-9C51-0D8E7F1A2B3C}#1.0#0";
constexpr char16_t kLibraryFile[] = u"Morvantix.ocx";

// A position or size as a form file shows it: a whole number where it is one.
Variant Measure(float value) {
  const double rounded = std::round(static_cast<double>(value));
  if (std::fabs(static_cast<double>(value) - rounded) < 1e-3 && std::fabs(rounded) < 2147483647.0)
    return static_cast<int32_t>(rounded);
  return value;
}

// Writes a value into a section that came from a file: an entry the file had with the same value
// stays as it was (its style and comment too); otherwise the bag's rule applies, so a value equal
// to the default is left out.
void Keep(PropertyBag& section, const PropertyBag* source, StringView key, const Variant& value,
          const Variant& defaultValue) {
  if (source) {
    if (const BagEntry* e = source->Find(key); e && BagValuesEqual(value, e->value)) {
      section.Put(*e);
      return;
    }
  }
  section.WriteProperty(key, value, defaultValue);
}

template <typename F>
void NamingFailures(StringView controlName, F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    Raise(e.Number(), controlName, u"Control '" + String(controlName) + u"': " + e.Description());
  }
}

}  // namespace

std::shared_ptr<Form> Form::FromFormFile(const FormFile& file, FormMode mode) {
  const FormBlock& root = file.root;
  if (FoldCase(root.FullClassName()) != FoldCase(u"VB.Form"))
    Raise(kErrInvalidProcedureCall, root.name, u"The file's root block is " + root.FullClassName() + u", not VB.Form");
  RegisterHostControls();
  auto form = std::make_shared<Form>(root.name, mode);
  Impl& im = *form->m_impl;
  im.source = file;
  // The controls are rebuilt from the blocks; the copy keeps only the header, trailer and the
  // root's own lines.
  im.source->root.children.clear();

  const PropertyBag& host = root.host;
  NamingFailures(root.name, [&] {
    form->m_caption = host.ReadProperty(u"Caption", Variant(root.name)).ToString();
    form->m_backColor = host.ReadProperty(u"BackColor", Variant(vbButtonFace)).ToLong();
    form->m_foreColor = host.ReadProperty(u"ForeColor", Variant(vbButtonText)).ToLong();
    form->m_borderStyle = host.ReadProperty(u"BorderStyle", Variant(int16_t{2})).ToInteger();
    if (form->m_borderStyle < 0 || form->m_borderStyle > 5) Raise(kErrInvalidPropertyValue, root.name);
    form->m_keyPreview = host.ReadProperty(u"KeyPreview", Variant(false)).ToBoolean();
    im.clientLeft = host.ReadProperty(u"ClientLeft", Variant(0.0f)).ToSingle();
    im.clientTop = host.ReadProperty(u"ClientTop", Variant(0.0f)).ToSingle();
    im.clientWidth = host.ReadProperty(u"ClientWidth", Variant(im.clientWidth)).ToSingle();
    im.clientHeight = host.ReadProperty(u"ClientHeight", Variant(im.clientHeight)).ToSingle();
    if (im.clientWidth < 0 || im.clientHeight < 0) Raise(kErrInvalidPropertyValue, root.name);
    im.scaleMode = host.ReadProperty(u"ScaleMode", Variant(int16_t{1})).ToInteger();
    im.startUpPosition = host.ReadProperty(u"StartUpPosition", Variant(int16_t{0})).ToInteger();
    if (host.Contains(u"Font")) {
      auto font = std::dynamic_pointer_cast<StdFont>(host.ReadProperty(u"Font").ToObject());
      if (font) form->m_font = font;
    }
  });
  // The window was made with the defaults: it takes the file's frame, caption and size now.
  form->EnsureWindow();
  form->Caption(form->m_caption);
  form->BorderStyle(form->m_borderStyle);
  form->LoadBlocks(root, nullptr);
  // Loading is not a change.
  form->m_dirty = false;
  for (auto& c : form->m_controls)
    if (auto* uc = dynamic_cast<UserControl*>(c.get())) uc->m_changed.clear();
  return form;
}

void Form::LoadBlocks(const FormBlock& parent, Control* container) {
  for (const FormBlock& block : parent.children) {
    if (block.IsHostClass() && !IsControlClassRegistered(block.FullClassName())) {
      // The host's intrinsic controls that are not implemented are not built: their blocks, and
      // whatever they contain, are written back as they came.
      m_impl->keptBlocks.push_back(Impl::KeptBlock{m_controls.size(), container, block});
      continue;
    }
    std::shared_ptr<Control> control;
    NamingFailures(block.name, [&] {
      control = CreateControl(block.FullClassName());
      SiteControl(control, block.name, block.Index().value_or(-1), container);
      const PropertyBag& h = block.host;
      control->m_left = h.ReadProperty(u"Left", Variant(0.0f)).ToSingle();
      control->m_top = h.ReadProperty(u"Top", Variant(0.0f)).ToSingle();
      control->m_width = h.ReadProperty(u"Width", Variant(control->m_width)).ToSingle();
      control->m_height = h.ReadProperty(u"Height", Variant(control->m_height)).ToSingle();
      if (control->m_width < 0 || control->m_height < 0) Raise(kErrInvalidPropertyValue, block.name);
      control->m_tabIndex = h.ReadProperty(u"TabIndex", Variant(control->m_tabIndex)).ToInteger();
      control->m_visible = h.ReadProperty(u"Visible", Variant(true)).ToBoolean();
      control->m_tabStop = h.ReadProperty(u"TabStop", Variant(true)).ToBoolean();
      control->m_tag = h.ReadProperty(u"Tag", Variant(String())).ToString();
      control->m_default = h.ReadProperty(u"Default", Variant(false)).ToBoolean();
      control->m_cancel = h.ReadProperty(u"Cancel", Variant(false)).ToBoolean();
    });
    m_impl->controlHostLines[control.get()] = block.host;
    control->ApplyGeometry();
    if (auto* uc = dynamic_cast<UserControl*>(control.get())) {
      PropertyBag bag = block.bag;
      uc->LoadFrom(bag, m_mode == FormMode::Run);
    } else if (auto* ic = dynamic_cast<IntrinsicControl*>(control.get())) {
      // All lines of a host class's block are the host's: the control reads its own among them.
      PropertyBag lines = block.host;
      NamingFailures(block.name, [&] { ic->LoadFrom(lines, m_mode == FormMode::Run); });
    }
    LoadBlocks(block, control.get());
  }
}

FormFile Form::ToFormFile() const {
  FormFile file;
  const Impl& im = *m_impl;
  if (im.source) {
    file.version = im.source->version;
    file.header = im.source->header;
    file.trailer = im.source->trailer;
  }
  file.root = FormBlock(kHostLibrary, u"Form", m_name);
  const PropertyBag* src = im.source ? &im.source->root.host : nullptr;
  if (src) file.root.host = *src;
  PropertyBag& host = file.root.host;
  Keep(host, src, u"BorderStyle", m_borderStyle, int16_t{2});
  Keep(host, src, u"Caption", m_caption, Variant::Missing());
  Keep(host, src, u"BackColor", m_backColor, vbButtonFace);
  Keep(host, src, u"ForeColor", m_foreColor, vbButtonText);
  Keep(host, src, u"KeyPreview", m_keyPreview, false);
  Keep(host, src, u"ClientLeft", Measure(im.clientLeft), Variant::Missing());
  Keep(host, src, u"ClientTop", Measure(im.clientTop), Variant::Missing());
  Keep(host, src, u"ClientWidth", Measure(ScaleWidth()), Variant::Missing());
  Keep(host, src, u"ClientHeight", Measure(ScaleHeight()), Variant::Missing());
  Keep(host, src, u"ScaleMode", im.scaleMode, int16_t{1});
  // In twips the scale is the client area itself.
  if (im.scaleMode == 1) {
    Keep(host, src, u"ScaleWidth", Measure(ScaleWidth()), Variant::Missing());
    Keep(host, src, u"ScaleHeight", Measure(ScaleHeight()), Variant::Missing());
  }
  Keep(host, src, u"StartUpPosition", im.startUpPosition, int16_t{0});
  Keep(host, src, u"Font", Variant(m_font), Variant::Missing());

  WriteBlocks(file.root, nullptr);

  bool usesLibrary = false;
  for (const auto& c : m_controls) {
    const String progId = c->ProgId();
    usesLibrary |= FoldCase(progId.substr(0, progId.find(u'.'))) == FoldCase(kLibraryName);
  }
  bool named = false;
  for (const auto& ref : file.ObjectReferences()) named |= FoldCase(ref.file) == FoldCase(kLibraryFile);
  if (usesLibrary && !named) file.AddObjectReference(kLibraryReference, kLibraryFile);
  if (!im.source) {
    file.SetAttribute(u"VB_Name", u"\"" + m_name + u"\"");
    file.SetAttribute(u"VB_GlobalNameSpace", u"False");
    file.SetAttribute(u"VB_Creatable", u"False");
    file.SetAttribute(u"VB_PredeclaredId", u"True");
    file.SetAttribute(u"VB_Exposed", u"False");
  }
  return file;
}

void Form::WriteBlocks(FormBlock& parent, const Control* container) const {
  const Impl& im = *m_impl;
  auto writeKept = [&](size_t position) {
    for (const auto& kept : im.keptBlocks)
      if (kept.position == position && kept.container == container) parent.children.push_back(kept.block);
  };
  const float tpx = GetScreen().TwipsPerPixelX(), tpy = GetScreen().TwipsPerPixelY();
  for (size_t i = 0; i < m_controls.size(); ++i) {
    writeKept(i);
    const Control& c = *m_controls[i];
    if (c.m_container != container) continue;
    const String progId = c.ProgId();
    const size_t dot = progId.find(u'.');
    FormBlock block(dot == String::npos ? String() : progId.substr(0, dot),
                    dot == String::npos ? progId : progId.substr(dot + 1), c.m_name);
    auto lines = im.controlHostLines.find(&c);
    const PropertyBag* src = lines != im.controlHostLines.end() ? &lines->second : nullptr;
    if (src) block.host = *src;
    PropertyBag& h = block.host;
    Keep(h, src, u"Left", Measure(c.m_left), Variant::Missing());
    Keep(h, src, u"Top", Measure(c.m_top), Variant::Missing());
    Keep(h, src, u"Width", Measure(c.m_width), Variant::Missing());
    Keep(h, src, u"Height", Measure(c.m_height), Variant::Missing());
    if (c.CanGetFocus()) Keep(h, src, u"TabIndex", c.m_tabIndex, Variant::Missing());
    if (c.m_index >= 0) Keep(h, src, u"Index", c.m_index, Variant::Missing());
    else h.Remove(u"Index");
    Keep(h, src, u"Visible", c.m_visible, true);
    Keep(h, src, u"TabStop", c.m_tabStop, true);
    Keep(h, src, u"Tag", c.m_tag, String());
    Keep(h, src, u"Default", c.m_default, false);
    Keep(h, src, u"Cancel", c.m_cancel, false);
    if (auto* uc = dynamic_cast<UserControl*>(const_cast<Control*>(&c))) {
      // The user control's own extent, in HiMetric.
      const double w = static_cast<double>(c.m_width) / tpx, hgt = static_cast<double>(c.m_height) / tpy;
      Keep(h, src, u"_ExtentX", static_cast<int32_t>(std::lround(w * 2540.0 / 96.0)), Variant::Missing());
      Keep(h, src, u"_ExtentY", static_cast<int32_t>(std::lround(hgt * 2540.0 / 96.0)), Variant::Missing());
      uc->SaveTo(block.bag);
    } else if (auto* ic = dynamic_cast<const IntrinsicControl*>(&c)) {
      ic->SaveTo(h);
    }
    WriteBlocks(block, &c);
    parent.children.push_back(std::move(block));
  }
  writeKept(m_controls.size());
}

std::shared_ptr<Form> LoadFormFile(const std::string& path, FormMode mode) {
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) Raise(kErrFileNotFound, FromUtf8(path));
  FormFile file;
  FormFileError error;
  if (!ReadFormFile(path, file, error))
    Raise(321, FromUtf8(path), u"Invalid file format: " + FromUtf8(error.Message()));
  return Form::FromFormFile(file, mode);
}

void SaveFormFile(const Form& form, const std::string& path) {
  std::string error;
  if (!SaveFormFile(form.ToFormFile(), path, &error, FormWriteOptions{}))
    Raise(kErrPathFileAccess, FromUtf8(path), FromUtf8(error));
}

}  // namespace mx::host
