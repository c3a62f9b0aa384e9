#pragma once
// host::Form: a top-level window that holds controls, as the host's forms do. It owns its
// controls, gives each a child window, drives their lifecycle, routes keys between them (focus,
// Tab order, access keys, default and cancel) and runs modal or modeless on the platform's
// message queue.
//
// A form is at design time (FormMode::Design: controls see Ambient.UserMode False and get
// InitProperties when dropped) or at run time (FormMode::Run). Forms load from and save to the
// classic form file (FormFile), creating each control through the class registry by its
// "Library.Class" name and feeding it its block's property bag.
//
// Scale: the form's ScaleMode is twips, as the host's default; a control's Left, Top, Width and
// Height are twips, and its window is that rectangle divided by Screen.TwipsPerPixel.
//
// Events of the form itself: Load (after its controls have loaded), Activate, Deactivate,
// Resize, QueryUnload(Cancel, UnloadMode), Unload(Cancel), Terminate. Every event of every
// control, and the form's own, also reach the form's event sink with the source's name.
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/Colors.h"
#include "host/Control.h"
#include "host/Event.h"
#include "host/FormFile.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {

enum class FormMode : uint8_t { Run, Design };

// The host's UnloadMode values of QueryUnload.
enum QueryUnloadConstants : int16_t { vbFormControlMenu = 0, vbFormCode = 1, vbAppWindows = 2,
                                      vbAppTaskManager = 3, vbFormMDIForm = 4, vbFormOwner = 5 };

class Form : public Object {
 public:
  explicit Form(String name = u"Form1", FormMode mode = FormMode::Run);
  ~Form() override;

  // ---- Loading and saving ---------------------------------------------------------------------

  // Builds a form from a form file: its own properties from the root block, then each control
  // block in file order (containers before what they contain): created by class name, sited
  // with its extender lines, loaded with ReadProperties from its bag (LoadFrom). Unknown classes
  // and bags that fail raise a RuntimeError naming the control; companion data comes with the
  // file. The form's Load event is raised once all controls have loaded, when the form is shown
  // or loaded explicitly (Load()).
  [[nodiscard]] static std::shared_ptr<Form> FromFormFile(const FormFile& file, FormMode mode = FormMode::Run);
  // The form as a form file: its own properties, then every control with its extender lines and
  // the bag its WriteProperties fills, in Controls order.
  [[nodiscard]] FormFile ToFormFile() const;

  // ---- Controls --------------------------------------------------------------------------------

  // Controls in the order they were added (file order), containers first.
  [[nodiscard]] const std::vector<std::shared_ptr<Control>>& Controls() const { return m_controls; }
  // By name (without regard to case) and index; nullptr when there is none.
  [[nodiscard]] std::shared_ptr<Control> FindControl(StringView name, int32_t index = -1) const;
  // The host's Controls.Add: creates a control by class name on this form (or in a container), as
  // a control made by code: Initialize and InitProperties, with Ambient.UserMode taken from the
  // form's mode, and no ReadProperties. Raises 429 for an unknown class and 727 for a name in use.
  std::shared_ptr<Control> AddControl(StringView progId, StringView name, Control* container = nullptr);
  // Places a control made elsewhere (a test's) on the form without loading it.
  void SiteControl(const std::shared_ptr<Control>& control, StringView name, int32_t index = -1,
                   Control* container = nullptr);
  // Unloads a control made by AddControl (Hide, Terminate, window destroyed).
  void RemoveControl(StringView name);

  // ---- Form properties ---------------------------------------------------------------------------

  [[nodiscard]] const String& Name() const { return m_name; }
  [[nodiscard]] FormMode Mode() const { return m_mode; }
  [[nodiscard]] platform::HWND hWnd() const { return m_hwnd; }
  [[nodiscard]] const String& Caption() const { return m_caption; }
  void Caption(StringView value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] std::shared_ptr<StdFont> Font() const { return m_font; }
  void Font(std::shared_ptr<StdFont> value);
  // Outer rectangle in twips; ScaleWidth/ScaleHeight the client area in twips.
  [[nodiscard]] float Left() const;
  [[nodiscard]] float Top() const;
  [[nodiscard]] float Width() const;
  [[nodiscard]] float Height() const;
  void Move(float left, Variant top = Variant::Missing(), Variant width = Variant::Missing(),
            Variant height = Variant::Missing());
  [[nodiscard]] float ScaleWidth() const;
  [[nodiscard]] float ScaleHeight() const;
  // 0 none, 1 fixed single, 2 sizable (default), 3 fixed dialog, 4 fixed tool, 5 sizable tool.
  [[nodiscard]] int16_t BorderStyle() const { return m_borderStyle; }
  void BorderStyle(int16_t value);
  [[nodiscard]] bool Visible() const;
  [[nodiscard]] bool KeyPreview() const { return m_keyPreview; }
  void KeyPreview(bool value) { m_keyPreview = value; }
  // The control that has the focus, or nullptr.
  [[nodiscard]] std::shared_ptr<Control> ActiveControl() const;

  // ---- Life -----------------------------------------------------------------------------------

  // Loads the form if needed (raising Load), then shows it: controls get Show and paint. Modal 1
  // runs the platform's modal loop until the form is hidden or unloaded, then returns.
  void Load();
  void Show(int16_t modal = 0, Form* owner = nullptr);
  void Hide();
  // QueryUnload then Unload, either of which may cancel (returns false); then controls get Hide
  // and Terminate, the window goes, and the form leaves the Forms list.
  bool Unload(int16_t unloadMode = vbFormCode);
  [[nodiscard]] bool IsLoaded() const { return m_loaded; }

  // ---- Events -----------------------------------------------------------------------------------

  Event<> LoadEvent;    // the host's Load (Load() is the statement)
  Event<> Activate;
  Event<> Deactivate;
  Event<> Resize;
  Event<int16_t&, int16_t&> QueryUnload;  // Cancel, UnloadMode
  Event<int16_t&> UnloadEvent;           // Cancel; the host's Unload
  Event<> Terminate;

  // Receives every event raised by a control on the form (sourceName "cmdOk", index -1 unless in
  // a control array) and the form's own (sourceName the form's name). Set before loading.
  using FormEventSink = std::function<void(StringView sourceName, int32_t index, StringView eventName,
                                           std::span<Variant> args)>;
  void SetEventSink(FormEventSink sink);

  [[nodiscard]] String TypeName() const override { return m_name; }
  // Late binding: the form's properties, and its controls by name.
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

  // Sets the client area's size in twips (ClientWidth, ClientHeight of a form file); the frame
  // grows around it.
  void ClientSize(float width, float height);

  // Whether a control reported a property change (PropertyChanged) since the form was last
  // loaded or saved.
  [[nodiscard]] bool Dirty() const { return m_dirty; }

 private:
  friend class Control;
  friend class UserControl;
  // Control's TabIndex: the host renumbers the others so that the indexes stay 0..n-1.
  void SetTabIndex(Control& control, int16_t value);
  // Control's Default and Cancel: one control of the form holds each.
  void DefaultOrCancelChanged(Control& control, bool isDefault, bool value);

  void EnsureWindow();
  [[nodiscard]] platform::HWND ContainerWindow(const Control* container) const;
  // Controls by TabIndex, and the next one that can take the focus (wrapping around).
  [[nodiscard]] std::vector<Control*> TabOrder() const;
  void RenumberTabIndexes();
  [[nodiscard]] bool CanTakeFocus(const Control& control) const;
  [[nodiscard]] Control* NextTabControl(Control* from, bool forward) const;
  [[nodiscard]] Control* ControlOfWindow(platform::HWND hwnd) const;
  // Keys at form level: Tab, Enter, Esc and Alt+access key. True when the form took the key.
  bool RouteKey(uint32_t msg, uintptr_t wParam, intptr_t lParam);
  bool ControlKey(Control& control, uint32_t msg, uintptr_t wParam, intptr_t lParam);
  [[nodiscard]] Control* EnterTarget(Control* focused) const;
  void FireAccessKey(Control& target, int16_t keyAscii);
  void UpdateDisplayAsDefault();
  void RunModal(Form* owner);
  void LoadBlocks(const FormBlock& parent, Control* container);
  void WriteBlocks(FormBlock& parent, const Control* container) const;

  struct Impl;
  std::unique_ptr<Impl> m_impl;
  bool m_dirty = false;
  String m_name;
  FormMode m_mode;
  platform::HWND m_hwnd = 0;
  String m_caption;
  OLE_COLOR m_backColor = vbButtonFace;
  OLE_COLOR m_foreColor = vbButtonText;
  std::shared_ptr<StdFont> m_font;
  int16_t m_borderStyle = 2;
  bool m_keyPreview = false;
  bool m_loaded = false;
  std::vector<std::shared_ptr<Control>> m_controls;
};

// The loaded forms, in load order (the host's Forms collection).
[[nodiscard]] std::vector<std::shared_ptr<Form>> Forms();

// Reads a form file from disk (with its companion) and builds the form; a bad file raises a
// RuntimeError whose description names the line.
[[nodiscard]] std::shared_ptr<Form> LoadFormFile(const std::string& path, FormMode mode = FormMode::Run);
// Writes the form (and its companion when it has binary data) to disk.
void SaveFormFile(const Form& form, const std::string& path);

}  // namespace mx::host
