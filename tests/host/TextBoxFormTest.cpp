// The text box on a form from a form file: built from its block, played by a script, saved back
// with the file's own lines where nothing changed; and its face, focused with a selection.
#include <gtest/gtest.h>

#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/FormFileWriter.h"
#include "host/HostTestSupport.h"
#include "host/ScriptPlayer.h"
#include "host/TextBox.h"
#include "support/Golden.h"

using namespace mx::host;
using namespace mx::host::testing;
using namespace mx::platform;
using mx::platform::testing::WindowingTest;

namespace {

constexpr char kForm[] =
    "VERSION 5.00\r\n"
    "Begin VB.Form frmEntry \r\n"
    "   Caption         =   \"Entry\"\r\n"
    "   ClientHeight    =   1500\r\n"
    "   ClientLeft      =   0\r\n"
    "   ClientTop       =   0\r\n"
    "   ClientWidth     =   3000\r\n"
    "   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} \r\n"
    "      Name            =   \"MS Sans Serif\"\r\n"
    "      Size            =   8.25\r\n"
    "      Charset         =   0\r\n"
    "      Weight          =   400\r\n"
    "      Underline       =   0   'False\r\n"
    "      Italic          =   0   'False\r\n"
    "      Strikethrough   =   0   'False\r\n"
    "   EndProperty\r\n"
    "   ScaleHeight     =   1500\r\n"
    "   ScaleWidth      =   3000\r\n"
    "   Begin VB.TextBox txtName \r\n"
    "      Height          =   375\r\n"
    "      Left            =   150\r\n"
    "      MaxLength       =   5\r\n"
    "      TabIndex        =   0\r\n"
    "      Text            =   \"xy\"\r\n"
    "      Top             =   150\r\n"
    "      Width           =   2000\r\n"
    "   End\r\n"
    "   Begin VB.Label lblNote \r\n"
    "      Caption         =   \"kept\"\r\n"
    "      Height          =   255\r\n"
    "      Left            =   150\r\n"
    "      TabIndex        =   1\r\n"
    "      Top             =   700\r\n"
    "      Width           =   1000\r\n"
    "   End\r\n"
    "End\r\n"
    "Attribute VB_Name = \"frmEntry\"\r\n";

FormFile Parse(std::string_view text) {
  FormFile file;
  FormFileError error;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  EXPECT_TRUE(ParseFormText(std::span<const uint8_t>(bytes, text.size()), nullptr, file, error)) << error.Message();
  return file;
}

std::string Written(const FormFile& file) {
  const FormFileBytes out = WriteFormText(file, u"");
  return std::string(out.text.begin(), out.text.end());
}

using TextBoxFormTest = WindowingTest;

TEST_F(TextBoxFormTest, FormFileLoadsPlaysAScriptAndSavesBack) {
  auto form = Form::FromFormFile(Parse(kForm));
  auto box = std::dynamic_pointer_cast<TextBox>(form->FindControl(u"txtName"));
  ASSERT_TRUE(box);
  EXPECT_EQ(box->Text(), u"xy");
  EXPECT_EQ(box->MaxLength(), 5);
  // Unchanged, the file comes back as it was, the label's block included.
  EXPECT_EQ(Written(form->ToFormFile()), std::string(kForm));

  std::vector<std::string> lines;
  form->SetEventSink([&](StringView src, int32_t index, StringView name, std::span<Variant> args) {
    lines.push_back(FormatEventLine(src, index, name, std::span<const Variant>(args.data(), args.size())));
  });
  form->Show();
  ScriptPlayer player(form);
  ASSERT_TRUE(player.Play(ParseScript("focus txtName\nkey END\ntype abcd\n")));
  // MaxLength 5 keeps "xyabc"; the "d" still raises its key events.
  EXPECT_EQ(box->Text(), u"xyabc");
  EXPECT_EQ(Filter(lines, {"EVENT txtName.KeyPress", "EVENT txtName.Change"}),
            (std::vector<std::string>{"EVENT txtName.KeyPress 97", "EVENT txtName.Change",
                                      "EVENT txtName.KeyPress 98", "EVENT txtName.Change",
                                      "EVENT txtName.KeyPress 99", "EVENT txtName.Change",
                                      "EVENT txtName.KeyPress 100"}));
  std::string expected = kForm;
  expected.replace(expected.find("\"xy\""), 4, "\"xyabc\"");
  EXPECT_EQ(Written(form->ToFormFile()), expected);
  form->Unload();
}

TEST_F(TextBoxFormTest, FocusedWithASelectionLooksLikeTheGolden) {
  auto form = Form::FromFormFile(Parse(kForm));
  auto box = std::dynamic_pointer_cast<TextBox>(form->FindControl(u"txtName"));
  ASSERT_TRUE(box);
  box->Font(std::make_shared<StdFont>(u"Arial", 10));
  box->MaxLength(0);  // the file's limit of 5 would cut the text
  box->Text(u"Hello world");
  form->Show();
  box->SetFocus();
  box->SelStart(6);
  box->SelLength(5);
  PumpMessages();
  UpdateWindow(box->hWnd());
  const CapturedImage shot = CaptureWindow(box->hWnd());
  std::vector<uint32_t> px;
  for (int y = 0; y < shot.height(); ++y)
    for (int x = 0; x < shot.width(); ++x) px.push_back(shot.pixel(x, y));
  mx::test::ExpectGolden("host", "textbox_focused_selection", shot.width(), shot.height(), px);

  // Without the focus the selection goes (HideSelection), or turns grey when it is off.
  box->HideSelection(false);
  SetFocus(0);
  PumpMessages();
  ASSERT_FALSE(box->HasFocus());
  UpdateWindow(box->hWnd());
  const CapturedImage grey = CaptureWindow(box->hWnd());
  bool sawFace = false, sawHighlight = false;
  for (int x = 0; x < grey.width(); ++x) {
    sawFace |= grey.color(x, 10) == GetSysColor(COLOR_BTNFACE);
    sawHighlight |= grey.color(x, 10) == GetSysColor(COLOR_HIGHLIGHT);
  }
  EXPECT_TRUE(sawFace);
  EXPECT_FALSE(sawHighlight);
  form->Unload();
}

}  // namespace
