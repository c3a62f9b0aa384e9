#include "entry/ListsExample.h"

#include <memory>

#include "controls/USImageList.h"
#include "entry/Registration.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Recordset.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"

namespace mx::entry {

namespace {

// One 16 x 16 icon per region, in region order: a rounded square in the region's colour with
// a lighter band across its top. Hard edges keep the picture the same on every machine.
std::shared_ptr<controls::USImageList> RegionIcons() {
  auto control = std::make_shared<controls::USImageList>();
  auto list = control->ImageLists()->Add(16, 16, u"Key");
  // Norte, Nordeste, Centro-Oeste, Sudeste, Sul.
  for (uint32_t rgb : {0x2E8B57u, 0xE0A030u, 0xC0603Au, 0x3A6FC0u, 0x7A4FB0u}) {
    image::API32bppDIB dib;
    if (!dib.InitializeDIB(16, 16)) return control;
    auto* px = reinterpret_cast<uint32_t*>(dib.BitsPointer());
    const uint32_t light = 0xFF000000u | (((rgb >> 1) & 0x7F7F7Fu) + 0x808080u);
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x) {
        // Rows are bottom-up: row 15 of memory is the top of the picture.
        const int top = 15 - y;
        const bool corner = (x == 1 || x == 14) && (top == 1 || top == 14);
        const bool inside = x >= 1 && x <= 14 && top >= 1 && top <= 14 && !corner;
        px[y * 16 + x] = !inside ? 0u : top <= 4 ? light : 0xFF000000u | rgb;
      }
    dib.SetImageType(image::imgBmpPARGB);
    list->Images()->AddImage_fromDIB(dib);
  }
  return control;
}

}  // namespace

void FillStatesCombo(USComboBox& combo, const std::shared_ptr<host::Connection>& connection,
                     const std::shared_ptr<controls::USImageList>& icons, host::StringView current,
                     const std::shared_ptr<USListBox>& towns) {
  auto rs = host::Recordset::Create();
  rs->Open(u"SELECT rowid, Name, State, Region FROM states ORDER BY Name", connection);
  auto fields = rs->GetFields();
  if (icons) combo.SetUSImageList(icons);
  // The fill holds the combo's painting and its Change; EndFill selects the row whose data is
  // the tag, found on the way.
  combo.BeginFill();
  while (!rs->EOF_()) {
    const int32_t id = fields->Item(host::Variant(int32_t{0}))->Value().ToLong();
    const host::String state = fields->Item(host::Variant(int32_t{2}))->Value().ToString();
    combo.AddItem(fields->Item(host::Variant(int32_t{1}))->Value(), id,
                  fields->Item(host::Variant(int32_t{3}))->Value().ToLong(), -1, USListBox::kListForeColor, true, {},
                  nullptr, false, state);
    if (state == current) combo.TagID(id);
    rs->MoveNext();
  }
  rs->Close();
  if (towns) {
    // Choosing a state shows its first town in the list.
    std::weak_ptr<USListBox> weak = towns;
    combo.ListIndexChange.connect([&combo, weak] {
      auto list = weak.lock();
      const int32_t chosen = combo.ListIndex();
      if (!list || chosen < 0) return;
      const host::String state = combo.ItemTag(chosen);
      for (int32_t i = 0; i < list->ListCount(); ++i) {
        if (list->ItemTag(i) != state) continue;
        list->TopIndex(i - list->VisibleRows() / 2);
        list->ListIndex(i);
        break;
      }
    });
  }
  // Wide enough for the longest name beside its icon, with room at both ends.
  combo.EndFill(-1, true, 16 + 12);
}

int RenderListsExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                       std::ostream& err) {
  RegisterControls();
  std::shared_ptr<host::Form> form;
  // Every way out unloads the form, so that a failed run leaves no window or surface behind.
  auto fail = [&] {
    if (form) form->Unload();
    return 1;
  };
  try {
    form = host::LoadFormFile(formPath);
    if (!form) {
      err << "cannot load " << formPath << "\n";
      return 1;
    }
    std::shared_ptr<USListBox> list;
    for (const auto& c : form->Controls())
      if ((list = std::dynamic_pointer_cast<USListBox>(c))) break;
    if (!list) {
      err << formPath << " has no USListBox\n";
      return fail();
    }
    auto connection = std::make_shared<host::Connection>();
    connection->Open(host::String(dbPath.begin(), dbPath.end()));
    auto rs = host::Recordset::Create();
    rs->Open(u"SELECT c.rowid, c.Name, c.State, s.Region, c.Population FROM cities c "
             u"JOIN states s ON s.State = c.State ORDER BY c.State, c.Name",
             connection);
    list->SetUSImageList(RegionIcons());
    list->Redraw(false);
    auto fields = rs->GetFields();
    host::String lastState;
    while (!rs->EOF_()) {
      const int32_t id = fields->Item(host::Variant(int32_t{0}))->Value().ToLong();
      const host::String name = fields->Item(host::Variant(int32_t{1}))->Value().ToString();
      const host::String state = fields->Item(host::Variant(int32_t{2}))->Value().ToString();
      const int32_t region = fields->Item(host::Variant(int32_t{3}))->Value().ToLong();
      const host::String people = fields->Item(host::Variant(int32_t{4}))->Value().ToString();
      // A line above the first town of each state after the first.
      const bool newState = !lastState.empty() && state != lastState;
      list->AddItem(host::Variant(name + u" - " + state), id, region, -1, USListBox::kListForeColor, true,
                    people + u" habitantes", nullptr, newState, state);
      lastState = state;
      rs->MoveNext();
    }
    rs->Close();
    // A combo of the states beside the list, when the form has one, chooses the state shown.
    for (const auto& c : form->Controls()) {
      if (auto combo = std::dynamic_pointer_cast<USComboBox>(c)) {
        FillStatesCombo(*combo, connection, RegionIcons(), u"SP", list);
        break;
      }
    }
    // The first town of São Paulo is current, scrolled to the middle of the window.
    int32_t current = -1;
    for (int32_t i = 0; i < list->ListCount() && current < 0; ++i)
      if (list->ItemTag(i) == u"SP") current = i;
    list->Redraw(true);
    if (current >= 0) {
      list->TopIndex(current - list->VisibleRows() / 2);
      list->ListIndex(current);
    }
    form->Show();
    platform::PumpMessages();
    if (!platform::SaveWindowPng(form->hWnd(), pngPath)) {
      err << "cannot write " << pngPath << "\n";
      return fail();
    }
    form->Unload();
    return 0;
  } catch (const host::RuntimeError& e) {
    err << formPath << ": error " << e.Number() << ": " << host::ToUtf8(e.Description()) << "\n";
    return fail();
  }
}

}  // namespace mx::entry
