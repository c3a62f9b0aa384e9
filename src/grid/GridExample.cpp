#include "grid/GridExample.h"

#include <memory>

#include "grid/USFlexGrid.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Recordset.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"

namespace mx::grid {

namespace {

// Status icons for the orders: discs of 10 pixels, 1 green (paid) and 2 amber (open). Hard
// edges keep the example's picture the same on every machine.
std::shared_ptr<imagelist::APIImageList> StatusIcons(const std::shared_ptr<imagelist::APIImageLists>& lists) {
  auto list = lists->Add(10, 10, u"status");
  for (uint32_t rgb : {0x2EA043u, 0xD29922u}) {
    image::API32bppDIB dib;
    if (!dib.InitializeDIB(10, 10)) return nullptr;
    auto* px = reinterpret_cast<uint32_t*>(dib.BitsPointer());
    for (int y = 0; y < 10; ++y)
      for (int x = 0; x < 10; ++x) {
        const double dx = x - 4.5, dy = y - 4.5;
        px[y * 10 + x] = dx * dx + dy * dy <= 22 ? 0xFF000000u | rgb : 0u;
      }
    dib.SetImageType(image::imgBmpPARGB);
    list->Images()->AddImage_fromDIB(dib);
  }
  return list;
}

}  // namespace

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
    // A status icon in front of every client: paid or still open.
    auto lists = imagelist::APIImageLists::Create();
    grid->ImageList(StatusIcons(lists));
    for (int32_t r = 0; r < grid->Rows(); ++r) grid->RowImage(r, grid->CellChecked(r, 4) ? 1 : 2);
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
