#pragma once
// Shared pieces of the ribbon tests: a run-time form holding a ribbon across its top, a standard
// content (three tabs, categories with and without launchers, buttons with pictures), and
// pointer input at the centre of an element.
#include <memory>
#include <string>
#include <vector>

#include "ChromeTestSupport.h"
#include "chrome/USRibbon.h"
#include "host/StdPicture.h"

namespace mx::chrome::testing {

inline std::shared_ptr<host::StdPicture> ExamplePicture(const char* name) {
  return host::LoadPicture(std::string(MX_SOURCE_DIR) + "/examples/images/" + name);
}

// Tabs 0 "Início", 1 "Inserir", 2 "Exibir"; categories 10 (with a launcher) and 11 on tab 0,
// 20 on tab 1; buttons 100..102 in 10, 103 in 11, 104 in 20.
inline void FillStandard(USRibbon& r) {
  r.AddTab(0, u"In\u00edcio");
  r.AddTab(1, u"Inserir");
  r.AddTab(2, u"Exibir");
  r.AddCat(10, 0, u"\u00c1rea de\r\nTransfer\u00eancia", true);
  r.AddCat(11, 0, u"Edi\u00e7\u00e3o");
  r.AddCat(20, 1, u"Tabelas");
  r.AddButton(100, 10, u"&Colar", ExamplePicture("check.png"), host::Variant::Missing(), true);
  r.AddButton(101, 10, u"Co&piar", ExamplePicture("star.png"));
  r.AddButton(102, 10, u"Recor&tar", ExamplePicture("heart.png"));
  r.AddButton(103, 11, u"&Localizar", ExamplePicture("star.png"), host::Variant::Missing(), false,
              u"Localizar texto");
  r.AddButton(104, 20, u"&Tabela", ExamplePicture("check.png"));
  r.AddTabButton(1, ExamplePicture("heart.png"), host::Variant::Missing(), u"Ajuda");
  r.AddTabButton(2, ExamplePicture("star.png"));
}

class RibbonTest : public ChromeTest {
 protected:
  // A run-time form of w x h pixels with a ribbon read from `bag` across its top.
  std::shared_ptr<USRibbon> MakeRibbon(host::PropertyBag bag = {}, int w = 600, int h = 260,
                                       host::Form::FormEventSink sink = {}) {
    auto form = std::make_shared<host::Form>(u"frmRibbon");
    if (sink) form->SetEventSink(std::move(sink));
    form->Caption(u"Ribbon");
    form->Move(100 * 15.0f, host::Variant(100 * 15.0f), host::Variant(static_cast<float>(w * 15)),
               host::Variant(static_cast<float>(h * 15)));
    auto ribbon = std::make_shared<USRibbon>();
    form->SiteControl(ribbon, u"USRibbon1");
    ribbon->LoadFrom(bag, true);
    platform::RECT client{};
    form->Show();
    platform::GetClientRect(form->hWnd(), &client);
    ribbon->Move(0, 0, static_cast<float>(client.right * 15), 1500);
    platform::RunFor(20);
    m_forms.push_back(form);
    return ribbon;
  }

  std::shared_ptr<USRibbon> MakeFilled(host::PropertyBag bag = {}) {
    auto ribbon = MakeRibbon(std::move(bag));
    FillStandard(*ribbon);
    ribbon->Refresh();
    return ribbon;
  }

  static platform::POINT Centre(const RibbonElement& e) { return {e.Left + e.Width / 2, e.Top + e.Height / 2}; }

  static void MoveOver(const USRibbon& r, RibbonArray array, int32_t row) {
    const platform::POINT p = Centre(r.Element(array, row));
    MoveTo(r.hWnd(), p.x, p.y);
  }
  static void ClickOver(const USRibbon& r, RibbonArray array, int32_t row) {
    const platform::POINT p = Centre(r.Element(array, row));
    ClickAt(r.hWnd(), p.x, p.y);
  }
  static void Key(int vk) {
    platform::InjectKeyPress(vk);
    platform::PumpMessages();
  }

  // Events as "Name index x y" lines, positions in whole twips.
  void Record(USRibbon& r) {
    r.TabClick.connect([this](int32_t i) { m_events.push_back("TabClick " + std::to_string(i)); });
    auto positioned = [this](const char* name) {
      return [this, name](int32_t i, float x, float y) {
        m_events.push_back(std::string(name) + " " + std::to_string(i) + " " + std::to_string(static_cast<int>(x)) +
                           " " + std::to_string(static_cast<int>(y)));
      };
    };
    r.CatClick.connect(positioned("CatClick"));
    r.ButtonClick.connect(positioned("ButtonClick"));
    r.TabButtonClick.connect(positioned("TabButtonClick"));
  }

  std::vector<std::string> m_events;
};

}  // namespace mx::chrome::testing
