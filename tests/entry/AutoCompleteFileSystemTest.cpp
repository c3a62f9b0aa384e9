// Completion of file and directory names in a temporary directory: files and directories,
// directories only, the appended rest selected, append and suggest turned off, the pop-up list
// chosen with Down and Enter and closed with Esc, Tab with SHACF_USETAB, and what the list
// looks like.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "AutoCompleteTestSupport.h"
#include "entry/ShellAutoComplete.h"
#include "host/Colors.h"
#include "host/TextBox.h"
#include "platform/Desktop.h"
#include "platform/Window.h"

namespace mx::entry::testing {
namespace {

namespace fs = std::filesystem;

class AutoCompleteFileSystemTest : public AutoCompleteTest {
 protected:
  void SetUp() override {
    AutoCompleteTest::SetUp();
    root = fs::path(::testing::TempDir()) /
           (std::string("autocomplete_") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(root);
    fs::create_directories(root / "alpine");
    fs::create_directories(root / "beta");
    std::ofstream(root / "alpha.txt") << "a";
    std::ofstream(root / "bête.txt") << "b";
    std::ofstream(root / ".hidden") << "h";
    prefix = host::FromUtf8(root.string() + "/");
    form->SetEventSink([this](host::StringView source, int32_t, host::StringView name, std::span<host::Variant> args) {
      if (host::ToUtf8(source) != "txt") return;
      std::string line = host::ToUtf8(name);
      for (const host::Variant& a : args) line += " " + host::ToUtf8(a.ToString());
      events.push_back(line);
    });
  }
  void TearDown() override {
    AutoCompleteTest::TearDown();
    fs::remove_all(root);
  }
  // Puts the directory into the box from code with the caret at its end, then types the rest.
  void TypeInRoot(std::u16string_view typed) {
    box->Text(prefix);
    box->SelStart(box->TextLen());
    Type(typed);
  }
  // What is shown after the directory.
  [[nodiscard]] std::u16string Rest() const {
    const std::u16string shown = Shown();
    return shown.rfind(prefix, 0) == 0 ? shown.substr(prefix.size()) : shown;
  }
  [[nodiscard]] ShellAutoComplete& Shell() const { return *box->ShellCompletion(); }
  [[nodiscard]] std::vector<std::u16string> ListedNames() const {
    std::vector<std::u16string> names;
    for (const auto& item : Shell().Items()) names.push_back(item.substr(prefix.size()));
    return names;
  }

  fs::path root;
  std::u16string prefix;
  std::vector<std::string> events;
};

using Names = std::vector<std::u16string>;

TEST_F(AutoCompleteFileSystemTest, FilesAndDirectoriesWithTheRestAppendedSelected) {
  box->AutoCompleteEx(SHACF_FILESYSTEM);
  TypeInRoot(u"a");
  EXPECT_EQ(Rest(), u"a|lpha.txt");
  EXPECT_EQ(ListedNames(), (Names{u"alpha.txt", u"alpine"}));
  EXPECT_TRUE(Shell().ListVisible());
  // Each typed character replaces the selection and completes anew.
  Type(u"lpi");
  EXPECT_EQ(Rest(), u"alpi|ne");
  EXPECT_EQ(ListedNames(), (Names{u"alpine"}));
  // Names beyond ASCII, and the list closing when nothing matches.
  box->Text(u"");
  TypeInRoot(u"bê");
  EXPECT_EQ(Rest(), u"bê|te.txt");
  Type(u"x");
  EXPECT_EQ(Rest(), u"bêx|");
  EXPECT_FALSE(Shell().ListVisible());
}

TEST_F(AutoCompleteFileSystemTest, BackspaceHiddenNamesAndTheDirectoryItself) {
  box->AutoCompleteEx(SHACF_FILESYS_ONLY);
  TypeInRoot(u"al");
  ASSERT_EQ(Rest(), u"al|pha.txt");
  // Backspace takes the completion away and nothing is appended again; the list stays.
  Press(platform::VK_BACK);
  EXPECT_EQ(Rest(), u"al|");
  EXPECT_TRUE(Shell().ListVisible());
  // Right after the "/" the whole directory is listed without hidden names, and nothing is
  // appended yet.
  box->Text(u"");
  TypeInRoot(u"");
  box->Text(prefix.substr(0, prefix.size() - 1));
  box->SelStart(box->TextLen());
  Type(u"/");
  EXPECT_EQ(Rest(), u"|");
  EXPECT_EQ(ListedNames(), (Names{u"alpha.txt", u"alpine", u"beta", u"bête.txt"}));
  Type(u".");
  EXPECT_EQ(Rest(), u".|hidden");
  // A directory that does not exist offers nothing.
  box->Text(prefix + u"nowhere/");
  box->SelStart(box->TextLen());
  Type(u"a");
  EXPECT_EQ(Rest(), u"nowhere/a|");
  EXPECT_FALSE(Shell().ListVisible());
}

TEST_F(AutoCompleteFileSystemTest, DirectoriesOnlyAndUrlFlagsAlone) {
  box->AutoCompleteEx(SHACF_FILESYS_DIRS);
  TypeInRoot(u"a");
  EXPECT_EQ(Rest(), u"a|lpine");
  EXPECT_EQ(ListedNames(), (Names{u"alpine"}));
  box->Text(u"");
  TypeInRoot(u"b");
  EXPECT_EQ(Rest(), u"b|eta");
  // There is no URL history: URL sources alone complete nothing.
  box->AutoCompleteEx(SHACF_URLALL);
  box->Text(u"");
  TypeInRoot(u"a");
  EXPECT_EQ(Rest(), u"a|");
  EXPECT_FALSE(Shell().ListVisible());
}

TEST_F(AutoCompleteFileSystemTest, AppendOffDropDownChosenWithDownAndEnter) {
  box->AutoCompleteEx(SHACF_FILESYSTEM | SHACF_AUTOAPPEND_FORCE_OFF);
  TypeInRoot(u"a");
  EXPECT_EQ(Rest(), u"a|");
  ASSERT_TRUE(Shell().ListVisible());
  EXPECT_EQ(Shell().Highlight(), -1);
  events.clear();
  Press(platform::VK_DOWN);
  Press(platform::VK_DOWN);
  EXPECT_EQ(Shell().Highlight(), 1);
  // Up and Down wrap through "nothing highlighted".
  Press(platform::VK_DOWN);
  EXPECT_EQ(Shell().Highlight(), -1);
  Press(platform::VK_UP);
  EXPECT_EQ(Shell().Highlight(), 1);
  EXPECT_EQ(Rest(), u"a|") << "moving the highlight leaves the text alone";
  Press(platform::VK_RETURN);
  EXPECT_EQ(Rest(), u"alpine|");
  EXPECT_FALSE(Shell().ListVisible());
  // The list's keys reach neither the host's key events nor the box; the taken text changes it.
  EXPECT_EQ(std::find(events.begin(), events.end(), "KeyDown 13 0"), events.end());
  EXPECT_EQ(std::find(events.begin(), events.end(), "KeyPress 13"), events.end());
  EXPECT_NE(std::find(events.begin(), events.end(), "Change"), events.end());
  // Enter with nothing highlighted only closes the list and goes on as Enter.
  box->Text(u"");
  TypeInRoot(u"b");
  ASSERT_TRUE(Shell().ListVisible());
  events.clear();
  Press(platform::VK_RETURN);
  EXPECT_FALSE(Shell().ListVisible());
  EXPECT_NE(std::find(events.begin(), events.end(), "KeyDown 13 0"), events.end());
}

TEST_F(AutoCompleteFileSystemTest, EscClosesTheListAndLeavingTheBoxToo) {
  box->AutoCompleteEx(SHACF_FILESYSTEM);
  TypeInRoot(u"be");
  ASSERT_TRUE(Shell().ListVisible());
  EXPECT_EQ(Rest(), u"be|ta");
  events.clear();
  Press(platform::VK_ESCAPE);
  EXPECT_FALSE(Shell().ListVisible());
  EXPECT_EQ(Rest(), u"be|ta");
  EXPECT_TRUE(events.empty() || events.front().rfind("KeyDown 27", 0) != 0);
  // A second Esc is the host's again.
  Press(platform::VK_ESCAPE);
  EXPECT_NE(std::find(events.begin(), events.end(), "KeyDown 27 0"), events.end());
  // Leaving the box closes the list.
  Type(u"t");
  ASSERT_TRUE(Shell().ListVisible());
  other->SetFocus();
  platform::PumpMessages();
  EXPECT_FALSE(Shell().ListVisible());
}

TEST_F(AutoCompleteFileSystemTest, SuggestOffAndTabWithUseTab) {
  box->AutoCompleteEx(SHACF_FILESYSTEM | SHACF_AUTOSUGGEST_FORCE_OFF | SHACF_USETAB);
  TypeInRoot(u"alpi");
  EXPECT_EQ(Rest(), u"alpi|ne");
  EXPECT_FALSE(Shell().ListVisible());
  // Tab takes the appended rest and keeps the focus.
  Press(platform::VK_TAB);
  EXPECT_EQ(Rest(), u"alpine|");
  EXPECT_TRUE(box->Inner().HasFocus());
  // With nothing to take, Tab leaves as usual.
  Press(platform::VK_TAB);
  EXPECT_FALSE(box->Inner().HasFocus());

  // Without SHACF_USETAB a completion does not hold the Tab.
  box->SetFocus();
  platform::PumpMessages();
  box->AutoCompleteEx(SHACF_FILESYSTEM);
  box->Text(u"");
  TypeInRoot(u"alpi");
  ASSERT_EQ(Rest(), u"alpi|ne");
  Press(platform::VK_TAB);
  EXPECT_FALSE(box->Inner().HasFocus());
}

TEST_F(AutoCompleteFileSystemTest, ListPaintsUnderTheBoxWithTheHighlight) {
  box->AutoCompleteEx(SHACF_FILESYSTEM | SHACF_AUTOAPPEND_FORCE_OFF);
  TypeInRoot(u"a");
  Press(platform::VK_DOWN);
  const platform::HWND list = Shell().ListWindow();
  ASSERT_TRUE(Shell().ListVisible());
  platform::RECT boxRect{}, listRect{};
  platform::GetWindowRect(box->hWnd(), &boxRect);
  platform::GetWindowRect(list, &listRect);
  EXPECT_EQ(listRect.left, boxRect.left);
  EXPECT_EQ(listRect.top, boxRect.bottom);
  EXPECT_EQ(listRect.right - listRect.left, boxRect.right - boxRect.left);
  platform::UpdateWindow(list);
  const platform::CapturedImage shot = platform::CaptureWindow(list);
  ASSERT_FALSE(shot.empty());
  const int rowHeight = (shot.height() - 2) / 2;
  const auto colour = [](host::OLE_COLOR c) { return static_cast<platform::COLORREF>(host::TranslateColor(c)); };
  // Frame, the highlighted first row at its right end (past any text), the plain second row.
  EXPECT_EQ(shot.color(0, 0), colour(host::vbWindowFrame));
  EXPECT_EQ(shot.color(shot.width() - 3, 1 + rowHeight / 2), colour(host::vbHighlight));
  EXPECT_EQ(shot.color(shot.width() - 3, 1 + rowHeight + rowHeight / 2), colour(host::vbWindowBackground));
  // A click on the second row takes it.
  platform::POINT p{listRect.left + 10, listRect.top + 1 + rowHeight + rowHeight / 2};
  platform::InjectMouseMove(p.x, p.y);
  platform::PumpMessages();
  platform::InjectClick();
  platform::PumpMessages();
  EXPECT_EQ(Rest(), u"alpine|");
  EXPECT_FALSE(Shell().ListVisible());
  EXPECT_TRUE(box->Inner().HasFocus());
}

TEST(ShellAutoCompleteList, UnreadableOrEmptyDirectoryGivesNothing) {
  EXPECT_TRUE(ShellAutoComplete::ListMatches(u"/no/such/dir/x", false).empty());
  const fs::path dir = fs::path(::testing::TempDir()) / "autocomplete_limit";
  fs::remove_all(dir);
  fs::create_directories(dir);
  for (int i = 0; i < 12; ++i) std::ofstream(dir / ("f" + std::to_string(100 + i))) << i;
  const auto some = ShellAutoComplete::ListMatches(host::FromUtf8(dir.string() + "/f1"), false, 5);
  ASSERT_EQ(some.size(), 5u);
  EXPECT_EQ(some.front(), host::FromUtf8(dir.string() + "/f100"));
  EXPECT_EQ(some.back(), host::FromUtf8(dir.string() + "/f104"));
  EXPECT_TRUE(ShellAutoComplete::ListMatches(host::FromUtf8(dir.string() + "/f"), true).empty());
  fs::remove_all(dir);
}

}  // namespace
}  // namespace mx::entry::testing
