#include "grid/GridExample.h"

#include <memory>

#include "grid/USFlexGrid.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Recordset.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"

namespace mx::grid {

int RenderGridExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                      std::ostream& err) {
  RegisterControls();
  try {
    auto form = host::LoadFormFile(formPath);
    if (!form) {
      err << "cannot load " << formPath << "\n";
      return 1;
    }
    std::shared_ptr<USFlexGrid> grid;
    for (const auto& c : form->Controls())
      if ((grid = std::dynamic_pointer_cast<USFlexGrid>(c))) break;
    if (!grid) {
      err << formPath << " has no USFlexGrid\n";
      return 1;
    }
    auto connection = std::make_shared<host::Connection>();
    connection->Open(host::String(dbPath.begin(), dbPath.end()));
    auto rs = host::Recordset::Create();
    rs->Open(u"SELECT Client, Qty, Price, Ordered, Paid, Progress, Action, Client FROM orders ORDER BY rowid",
             connection);
    grid->Redraw(false);
    grid->TotalLineShow(true);  // totals add up as the rows arrive
    grid->FillGridFromQuery(host::Variant(std::static_pointer_cast<host::Object>(rs)));
    grid->TotalLineCaption(0, u"Total");
    grid->TotalLineColAvg(2, true);
    grid->TotalLineCaption(2, u"Média");
    grid->RowChecked(1, true);
    grid->RowSelected(4, true);
    grid->Row(2);
    grid->Redraw(true);
    form->Show();
    platform::PumpMessages();
    if (!platform::SaveWindowPng(form->hWnd(), pngPath)) {
      err << "cannot write " << pngPath << "\n";
      return 1;
    }
    form->Unload();
    return 0;
  } catch (const host::RuntimeError& e) {
    err << "error " << e.Number() << ": " << host::ToUtf8(e.Description()) << "\n";
    return 1;
  }
}

}  // namespace mx::grid
