#pragma once
// The private state of a Form, shared by its sources (window and controls; form files). Not for
// use outside the host layer.
#include <map>
#include <memory>
#include <vector>

#include "host/Form.h"
#include "host/FormFile.h"
#include "host/PropertyBag.h"
#include "platform/Types.h"

namespace mx::host {

class UserControl;

struct Form::Impl {
  static constexpr const char16_t* kClassName = u"MxForm";
  static void RegisterClassOnce();
  static platform::LRESULT WindowProc(platform::HWND hwnd, platform::UINT msg, platform::WPARAM wParam,
                                      platform::LPARAM lParam);

  FormEventSink sink;
  // Where the form sits when it has no window yet, and its client size, in twips.
  float clientLeft = 0;
  float clientTop = 0;
  float clientWidth = 4680;
  float clientHeight = 3195;
  int16_t scaleMode = 1;  // twips
  int16_t startUpPosition = 3;
  bool loadRaised = false;
  bool modalRunning = false;
  // Whether the form has been shown since it was loaded (controls then get Show on siting).
  bool shown = false;
  // The window that had the focus last, given back when the form is activated again.
  platform::HWND lastFocus = 0;
  // A key the form took (Tab, Enter, Esc): its character message is not the control's either.
  uint32_t swallowChar = 0;
  // Set while the form hides or unloads its controls: the focus is not handed on meanwhile.
  bool holdFocus = false;
  // Controls made by AddControl, the only ones RemoveControl takes away.
  std::vector<const Control*> addedByCode;

  // What a form file gave that the form keeps for writing back: its header, trailer and the
  // root block's own lines; each control's original extender lines; and the blocks of the
  // host's intrinsic controls, which are not built here and are written back as they came,
  // at the position (count of controls before them) and in the container where they stood.
  std::optional<FormFile> source;
  std::map<const Control*, PropertyBag> controlHostLines;
  struct KeptBlock {
    size_t position;
    const Control* container;
    FormBlock block;
  };
  std::vector<KeptBlock> keptBlocks;
};

}  // namespace mx::host
