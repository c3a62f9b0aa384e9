// Forms from form files and back: controls made by class name and sited by their extender
// lines, run-time and design-time loads, intrinsic controls kept as they came, round trips with
// the bag's asymmetric defaults, and the errors of unknown classes and missing files.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/Err.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/HostTestSupport.h"

using namespace mx::host;
using namespace mx::host::testing;
using namespace mx::platform;
using mx::platform::testing::WindowingTest;
using Log = std::vector<std::string>;

namespace {

const std::string kSample = std::string(MX_TESTDATA_DIR) + "/forms/gravadores.frm";

class FormLoadTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    RegisterRecorder();
    FormFileError error;
    ASSERT_TRUE(ReadFormFile(kSample, m_file, error)) << error.Message();
  }
  FormFile m_file;
};

std::shared_ptr<RecordingControl> Recorder(const Form& form, const char16_t* name, int32_t index = -1) {
  return std::dynamic_pointer_cast<RecordingControl>(form.FindControl(name, index));
}

TEST_F(FormLoadTest, RunTimeLoadSitesAndReadsEachControl) {
  auto form = Form::FromFormFile(m_file, FormMode::Run);
  EXPECT_EQ(form->Name(), u"frmGravadores");
  EXPECT_EQ(form->Caption(), u"Gravadores");
  EXPECT_EQ(form->BorderStyle(), 3);
  EXPECT_EQ(form->BackColor(), 0xC0FFC0);
  EXPECT_EQ(form->ScaleWidth(), 3600.0f);
  ASSERT_EQ(form->Controls().size(), 2u) << "the label is kept aside, not built";

  auto first = Recorder(*form, u"recPrimeiro");
  auto second = Recorder(*form, u"recSegundo", 3);
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->log, (Log{"Initialize", "ReadProperties", "Resize"}));
  EXPECT_TRUE(first->userMode);
  EXPECT_EQ(first->caption, u"Primeiro");
  EXPECT_EQ(first->number, 42);
  // Absent keys come back as the read defaults; a control array member's name has its index.
  EXPECT_EQ(second->caption, u"recSegundo(3)");
  EXPECT_EQ(second->number, 7);
  EXPECT_EQ(second->Tag(), u"segundo");
  EXPECT_FALSE(second->Visible());
  EXPECT_EQ(second->TabIndex(), 0);
  RECT r;
  GetWindowRect(first->hWnd(), &r);
  POINT origin{0, 0};
  ClientToScreen(form->hWnd(), &origin);
  EXPECT_EQ(r.left - origin.x, 8);
  EXPECT_EQ(r.top - origin.y, 16);
  EXPECT_EQ(r.width(), 100);
  EXPECT_EQ(r.height(), 30);
  EXPECT_FALSE(form->Dirty());

  // Load comes when the form is shown, after every control has loaded; an invisible control
  // is not shown, and the focus goes to the first visible one in tab order.
  Log order;
  form->LoadEvent.connect([&] { order.push_back("Load"); });
  form->Show();
  EXPECT_EQ(order, (Log{"Load"}));
  EXPECT_EQ(Filter(first->log, {"Show"}), (Log{"Show"}));
  EXPECT_TRUE(Filter(second->log, {"Show"}).empty());
  EXPECT_EQ(GetFocus(), first->hWnd());
  form->Unload();
}

TEST_F(FormLoadTest, DesignTimeLoadSeesUserModeFalse) {
  auto form = Form::FromFormFile(m_file, FormMode::Design);
  auto first = Recorder(*form, u"recPrimeiro");
  ASSERT_TRUE(first);
  EXPECT_FALSE(first->userMode);
  EXPECT_FALSE(first->Ambient().UserMode());
  EXPECT_EQ(first->log, (Log{"Initialize", "ReadProperties", "Resize"}));
}

TEST_F(FormLoadTest, SavedFormReadsBackEqual) {
  auto form = Form::FromFormFile(m_file);
  FormFile saved = form->ToFormFile();
  // The one difference from the file: recSegundo read 7 for its absent Number, and 7 is not the
  // written default (0), so it is written now.
  EXPECT_FALSE(saved.SameContents(m_file));
  const FormBlock* secondBlock = saved.root.FindControl(u"recSegundo", 3);
  ASSERT_TRUE(secondBlock);
  EXPECT_EQ(secondBlock->bag.ReadProperty(u"Number").ToLong(), 7);
  EXPECT_FALSE(secondBlock->bag.Contains(u"Caption")) << "equal to its default, the display name";
  // The label's block is back in its place, between the two controls.
  ASSERT_EQ(saved.root.children.size(), 3u);
  EXPECT_EQ(saved.root.children[1].FullClassName(), u"VB.Label");
  EXPECT_TRUE(saved.root.children[1].SameContents(m_file.root.children[1]));
  EXPECT_EQ(saved.root.host.Find(u"LinkTopic")->value.ToString(), u"Form1") << "lines not understood stay";

  // From then on the form is stable: read again and saved, it comes back the same.
  auto again = Form::FromFormFile(saved);
  EXPECT_TRUE(again->ToFormFile().SameContents(saved));

  // A value equal to the written default is lost and comes back as the read default.
  Recorder(*again, u"recPrimeiro")->number = 0;
  auto third = Form::FromFormFile(again->ToFormFile());
  EXPECT_EQ(Recorder(*third, u"recPrimeiro")->number, 7);
}

TEST_F(FormLoadTest, ChangesReachTheSavedFile) {
  auto form = Form::FromFormFile(m_file);
  auto first = Recorder(*form, u"recPrimeiro");
  first->Move(240, 360, 1800, 600);
  first->caption = u"Outro";
  first->PropertyChanged(u"Caption");
  EXPECT_TRUE(form->Dirty());
  form->Caption(u"Novo");
  FormFile saved = form->ToFormFile();
  const FormBlock* block = saved.root.FindControl(u"recPrimeiro");
  ASSERT_TRUE(block);
  EXPECT_EQ(block->host.ReadProperty(u"Left").ToLong(), 240);
  EXPECT_EQ(block->host.ReadProperty(u"Width").ToLong(), 1800);
  EXPECT_EQ(block->host.ReadProperty(u"_ExtentX").ToLong(), 3175);
  EXPECT_EQ(block->bag.ReadProperty(u"Caption").ToString(), u"Outro");
  EXPECT_EQ(saved.root.host.ReadProperty(u"Caption").ToString(), u"Novo");
  EXPECT_TRUE(first->ChangedProperties().empty()) << "saving clears the change marks";
}

TEST_F(FormLoadTest, UnknownClassNamesTheControl) {
  FormFile file = m_file;
  file.root.children[0].className = u"Missing";
  try {
    (void)Form::FromFormFile(file);
    FAIL() << "an unregistered class cannot load";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 429);
    EXPECT_NE(e.Description().find(u"recPrimeiro"), String::npos);
  }
  // A bad extender value names the control as well.
  file = m_file;
  BagEntry bad;
  bad.key = u"Width";
  bad.value = Variant(String(u"largo"));
  file.root.children[0].host.Put(bad);
  try {
    (void)Form::FromFormFile(file);
    FAIL();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), kErrTypeMismatch);
    EXPECT_NE(e.Description().find(u"recPrimeiro"), String::npos);
  }
}

TEST_F(FormLoadTest, FilesOnDisk) {
  const auto dir = std::filesystem::temp_directory_path() / "mx_formload_test";
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "gravadores.frm").string();
  auto form = LoadFormFile(kSample);
  SaveFormFile(*form, path);
  auto back = LoadFormFile(path);
  EXPECT_TRUE(back->ToFormFile().SameContents(form->ToFormFile()));
  try {
    (void)LoadFormFile((dir / "nenhum.frm").string());
    FAIL();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), kErrFileNotFound);
  }
  // A damaged file is refused with the line in the message.
  try {
    (void)LoadFormFile(std::string(MX_TESTDATA_DIR) + "/bad/forms/bad_number.frm");
    FAIL() << "a damaged file does not load";
  } catch (const RuntimeError& e) {
    EXPECT_NE(e.Description().find(u"line"), String::npos);
  }
  std::filesystem::remove_all(dir);
}

}  // namespace
