#include "entry/EntryExample.h"

#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "host/Err.h"
#include "host/Form.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"

namespace mx::entry {

namespace {

std::shared_ptr<USTextBoxEx> Box(host::Form& form, host::StringView name) {
  return std::dynamic_pointer_cast<USTextBoxEx>(form.FindControl(name));
}

// Types into a box as a person would: the focus first, then one character at a time.
void TypeInto(const std::shared_ptr<USTextBoxEx>& box, host::StringView text) {
  if (!box) return;
  box->SetFocus();
  platform::PumpMessages();
  for (char16_t ch : text) {
    platform::InjectText(host::StringView(&ch, 1));
    platform::PumpMessages();
  }
}

}  // namespace

void WireEntryCompletion(host::Form& form, const std::string& dbPath) {
  auto city = Box(form, u"txtCity");
  if (!city) host::Raise(424, u"EntryExample", form.Name() + u" has no USTextBoxEx txtCity");
  city->InitializeAutoComplete(host::Variant(host::FromUtf8(dbPath)), u"cidades", u"nome");
}

int RenderEntryExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                       std::ostream& err) {
  RegisterControls();
  std::shared_ptr<host::Form> form;
  try {
    form = host::LoadFormFile(formPath);
    if (!form) {
      err << "cannot load " << formPath << "\n";
      return 1;
    }
    WireEntryCompletion(*form, dbPath);
    form->Show();
    platform::PumpMessages();
    TypeInto(Box(*form, u"txtDate"), u"21112026");
    TypeInto(Box(*form, u"txtPrice"), u"1234,5");
    TypeInto(Box(*form, u"txtQty"), u"12");
    TypeInto(Box(*form, u"txtName"), u"maria");
    TypeInto(Box(*form, u"txtCPF"), u"12345678909");
    // The town field last, so that it keeps the focus and shows its completion selected.
    TypeInto(Box(*form, u"txtCity"), u"são j");
    if (!platform::SaveWindowPng(form->hWnd(), pngPath)) {
      err << "cannot write " << pngPath << "\n";
      return 1;
    }
    form->Unload();
    return 0;
  } catch (const host::RuntimeError& e) {
    // A form that loaded goes again, with its windows.
    if (form) form->Unload();
    err << formPath << ": error " << e.Number() << ": " << host::ToUtf8(e.Description()) << "\n";
    return 1;
  }
}

}  // namespace mx::entry
