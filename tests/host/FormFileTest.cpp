// Form files: canonical round trips of sample forms, the model they read into, companion-file
// offsets, the ANSI code page, and damaged files refused with the right line.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "host/Err.h"
#include "host/FormFile.h"
#include "host/FormFileReader.h"
#include "host/FormFileWriter.h"
#include "host/Frx.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"

using namespace mx::host;

namespace {

const std::string kForms = std::string(MX_TESTDATA_DIR) + "/forms/";
const std::string kBadForms = std::string(MX_TESTDATA_DIR) + "/bad/forms/";

ByteArray ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return ByteArray((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

ByteArray Ascii(std::string_view s) { return ByteArray(s.begin(), s.end()); }

std::string AsText(const ByteArray& bytes) { return std::string(bytes.begin(), bytes.end()); }

FormFile MustRead(const std::string& path) {
  FormFile form;
  FormFileError error;
  EXPECT_TRUE(ReadFormFile(path, form, error)) << path << ": " << error.Message();
  return form;
}

// Parses text whose references all go to one companion held in memory.
bool Parse(const ByteArray& text, const ByteArray& companion, FormFile& form, FormFileError& error) {
  FrxReader frx(companion);
  CompanionLoader loader = [&](StringView) { return &frx; };
  return ParseFormText(text, loader, form, error);
}

FormFile MustParse(const ByteArray& text, const ByteArray& companion = {}) {
  FormFile form;
  FormFileError error;
  EXPECT_TRUE(Parse(text, companion, form, error)) << error.Message() << "\n" << AsText(text);
  return form;
}

std::string Crlf(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

struct Sample {
  const char* form;
  const char* companion;  // nullptr: the form needs none
};

}  // namespace

// ---- canonical round trips -----------------------------------------------------------------------

TEST(FormFileRoundTrip, CanonicalSamplesComeBackByteForByte) {
  for (Sample sample : {Sample{"clientes.frm", "clientes.frx"}, Sample{"painel.ctl", "painel.ctx"},
                        Sample{"aninhado.frm", nullptr}}) {
    SCOPED_TRACE(sample.form);
    FormFile form = MustRead(kForms + sample.form);
    String companionName = sample.companion ? FromUtf8(sample.companion) : u"unused.frx";
    FormFileBytes written = WriteFormText(form, companionName);
    EXPECT_EQ(AsText(written.text), AsText(ReadBytes(kForms + sample.form)));
    if (sample.companion) {
      EXPECT_EQ(written.companion, ReadBytes(kForms + sample.companion));
    } else {
      EXPECT_TRUE(written.companion.empty());
    }
    // And the model read back from what was written is the same model.
    FormFile again = MustParse(written.text, written.companion);
    EXPECT_TRUE(again.SameContents(form));
  }
}

TEST(FormFileRoundTrip, SaveWritesTheCompanionBesideTheFormAndRemovesAStaleOne) {
  std::filesystem::path dir = std::filesystem::temp_directory_path() / "mx_formfile_save";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  FormFile form = MustRead(kForms + "clientes.frm");
  std::string path = (dir / "Copia.frm").string();
  std::string error;
  ASSERT_TRUE(SaveFormFile(form, path, &error)) << error;
  ASSERT_TRUE(std::filesystem::exists(dir / "Copia.frx"));
  // References now name the new companion.
  EXPECT_NE(AsText(ReadBytes(path)).find("\"Copia.frx\":0000"), std::string::npos);
  FormFile copy = MustRead(path);
  EXPECT_TRUE(copy.SameContents(form));

  // A form with nothing binary leaves no companion behind.
  FormFile plain = MustRead(kForms + "aninhado.frm");
  ASSERT_TRUE(SaveFormFile(plain, path, &error)) << error;
  EXPECT_FALSE(std::filesystem::exists(dir / "Copia.frx"));
  std::filesystem::remove_all(dir);
}

// ---- the model --------------------------------------------------------------------------------------

TEST(FormFileModel, SplitsHostLinesFromTheControlsBag) {
  FormFile form = MustRead(kForms + "clientes.frm");
  EXPECT_EQ(form.version, u"5.00");
  ASSERT_EQ(form.ObjectReferences().size(), 2u);
  EXPECT_EQ(form.ObjectReferences()[0].file, u"Morvantix.ocx");
  EXPECT_EQ(form.root.FullClassName(), u"VB.Form");
  EXPECT_EQ(form.Attribute(u"vb_name"), String(u"\"frmClientes\""));
  EXPECT_EQ(form.trailer.back(), u"End Sub");

  // A host class keeps every line on the host's side, pictures included.
  EXPECT_EQ(form.root.bag.Count(), 0);
  auto icon = std::dynamic_pointer_cast<StdPicture>(form.root.host.ReadProperty(u"Icon", Variant::Nothing()).Obj());
  ASSERT_TRUE(icon);
  EXPECT_EQ(icon->Format(), PictureFormat::Ico);
  EXPECT_EQ(icon->PixelWidth(), 16);
  EXPECT_EQ(form.root.host.Find(u"StartUpPosition")->comment, u"Windows Default");

  const FormBlock* button = form.root.FindControl(u"CMDOK");
  ASSERT_TRUE(button);
  EXPECT_EQ(button->host.Keys(), (std::vector<String>{u"Height", u"Left", u"TabIndex", u"ToolTipText", u"Top",
                                                      u"Width", u"_ExtentX", u"_ExtentY"}));
  EXPECT_EQ(button->bag.Keys(), (std::vector<String>{u"Font", u"Caption", u"BorderColor", u"BorderColorDown",
                                                     u"CheckBox", u"DibPicture", u"GradientAngle", u"Theme",
                                                     u"Value"}));
  const PropertyBag& bag = button->bag;
  EXPECT_EQ(bag.ReadProperty(u"Caption", u"").ToString(), u"&Confirmar \"j\u00E1\"");
  EXPECT_EQ(bag.ReadProperty(u"BorderColor", int32_t{0}).ToLong(), 0x9A572B);
  EXPECT_EQ(bag.ReadProperty(u"BorderColorDown", int32_t{0}).ToLong(), static_cast<int32_t>(0x80000012u));
  EXPECT_EQ(bag.ReadProperty(u"CheckBox", false).VarType(), vbBoolean);
  EXPECT_TRUE(bag.ReadProperty(u"CheckBox", false).ToBoolean());
  EXPECT_FLOAT_EQ(bag.ReadProperty(u"GradientAngle", 0.0f).ToSingle(), 1.5f);
  EXPECT_EQ(bag.ReadProperty(u"Theme", int16_t{2}).ToInteger(), 4);
  auto font = std::dynamic_pointer_cast<StdFont>(bag.ReadProperty(u"Font", Variant::Nothing()).Obj());
  ASSERT_TRUE(font);
  EXPECT_EQ(font->Name(), u"Tahoma");
  EXPECT_EQ(font->Size(), Currency{82500});
  EXPECT_TRUE(font->Bold());
  EXPECT_TRUE(font->Italic());
  auto dib = std::dynamic_pointer_cast<StdPicture>(bag.ReadProperty(u"DibPicture", Variant::Nothing()).Obj());
  ASSERT_TRUE(dib);
  EXPECT_EQ(dib->Format(), PictureFormat::Png);

  // Control arrays: the same name, told apart by Index.
  const FormBlock* second = form.root.FindControl(u"lblCampo", 1);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->Index(), 1);
  EXPECT_EQ(second->host.ReadProperty(u"Caption", u"").ToString(), u"A\u00E7\u00E3o \u00E7 \u20AC");
  EXPECT_EQ(form.root.FindControl(u"lblCampo")->Index(), 0);
  EXPECT_EQ(form.root.FindControl(u"lblCampo", 2), nullptr);

  // Nested in a container; a long text from the companion read as text or as bytes.
  const FormBlock* notes = form.root.FindControl(u"txtObs");
  ASSERT_TRUE(notes);
  EXPECT_EQ(form.root.children[1].children[2].name, u"txtObs");
  EXPECT_EQ(notes->host.ReadProperty(u"Tag", u"").ToString(), u"obs");
  EXPECT_EQ(notes->bag.ReadProperty(u"Text", u"").ToString(),
            u"Primeira linha\r\nSegunda linha: A\u00E7\u00E3o \u00E7 \u20AC\r\n");
  EXPECT_EQ(notes->bag.ReadProperty(u"Text", ByteArray{}).Bytes()->size(), 41u);
  EXPECT_THROW((void)notes->bag.ReadProperty(u"Text", int32_t{0}), RuntimeError);
  // The unknown line and the unknown BeginProperty block stay in the bag, in place.
  const auto& items = notes->bag.Items();
  ASSERT_EQ(items.size(), 6u);
  EXPECT_EQ(items[3].unknownLines, std::vector<String>{u"Mystery         =   SomeIdentifier"});
  ASSERT_EQ(items[4].unknownLines.size(), 7u);
  EXPECT_EQ(items[4].unknownLines[3], u"   BeginProperty Inner {00000000-0000-0000-0000-000000000000} ");
  EXPECT_EQ(items[5].entry.key, u"Locked");

  const FormBlock* strip = form.root.FindControl(u"ilIcones");
  ASSERT_TRUE(strip);
  ByteArray bytes = strip->bag.ReadProperty(u"1Img", ByteArray{}).ToBytes();
  ASSERT_EQ(bytes.size(), 260u);
  EXPECT_EQ(bytes[255], 255);
}

TEST(FormFileModel, UnknownBlocksCarryTheirCompanionEntriesToNewOffsets) {
  FormFile form = MustRead(kForms + "clientes.frm");
  FormBlock* old = form.root.FindControl(u"imlAntiga");
  ASSERT_TRUE(old);
  const BagItem& images = old->bag.Items().back();
  ASSERT_EQ(images.unknownEntries.size(), 1u);
  EXPECT_EQ(images.unknownEntries[0].kind, FrxEntryKind::Picture);

  // Dropping the form's icon moves every later entry up; the kept reference must follow.
  uint32_t iconEntry = 8 + static_cast<uint32_t>(
      std::dynamic_pointer_cast<StdPicture>(form.root.host.Find(u"Icon")->value.Obj())->Bytes().size());
  form.root.host.Remove(u"Icon");
  FormFileBytes written = WriteFormText(form, u"x.frx");
  std::string text = AsText(written.text);
  size_t at = text.find("Picture         =   \"x.frx\":");
  ASSERT_NE(at, std::string::npos);
  uint32_t offset = std::stoul(text.substr(at + 28, text.find("\r\n", at) - at - 28), nullptr, 16);
  FrxReader original(ReadBytes(kForms + "clientes.frx"));
  FrxEntry before, after;
  ASSERT_TRUE(original.ReadEntry(offset + iconEntry, before));
  ASSERT_TRUE(FrxReader(written.companion).ReadEntry(offset, after));
  EXPECT_EQ(after, before);
  EXPECT_EQ(after, images.unknownEntries[0]);
  // Where the image-list import looks: the image's byte count 24 bytes past the entry.
  uint32_t count = 0;
  ASSERT_TRUE(FrxReader(written.companion).ReadUInt32(uint64_t{offset} + 24, count));
  EXPECT_EQ(count, 102u);
}

TEST(FormFileModel, ModelBuiltInCodeWritesCanonicallyAndReadsBackEqual) {
  FormFile form;
  form.root = FormBlock(u"VB", u"Form", u"frmNovo");
  form.root.host.WriteProperty(u"ScaleWidth", int32_t{4500});
  form.root.host.WriteProperty(u"Caption", u"Novo");
  FormBlock& button = form.root.AddChild(u"Morvantix", u"USButton", u"cmdA");
  // Extender lines written in any order come out sorted; the bag keeps its order.
  button.host.WriteProperty(u"Width", int32_t{1200});
  button.host.WriteProperty(u"Left", int32_t{120});
  button.host.WriteProperty(u"_ExtentX", int32_t{2117});
  button.host.WriteProperty(u"Index", int16_t{3});
  button.bag.WriteProperty(u"Value", true);
  button.bag.WriteProperty(u"ForeColor", int32_t{0xFFFFFF});
  button.bag.WriteProperty(u"Flags", int16_t{-1});
  button.bag.WriteProperty(u"Ratio", 0.1f);
  button.bag.WriteProperty(u"Precise", 0.1);
  button.bag.WriteProperty(u"Huge", 1e20);
  button.bag.WriteProperty(u"Tiny", -1.5e-5);
  button.bag.WriteProperty(u"Money", Currency{-12345});
  button.bag.WriteProperty(u"When", DateValue{45000.5});
  button.bag.WriteProperty(u"Small", uint8_t{200});
  button.bag.WriteProperty(u"Quote", u"say \"hi\"");
  button.bag.WriteProperty(u"NoPicture", Variant(std::make_shared<StdPicture>()));
  button.bag.WriteProperty(u"NoObject", Variant::Nothing());
  form.SetAttribute(u"VB_Name", u"\"frmNovo\"");

  FormFileBytes written = WriteFormText(form, u"novo.frx");
  EXPECT_EQ(AsText(written.text), Crlf(R"(VERSION 5.00
Begin VB.Form frmNovo 
   Caption         =   "Novo"
   ScaleWidth      =   4500
   Begin Morvantix.USButton cmdA 
      Index           =   3
      Left            =   120
      Width           =   1200
      _ExtentX        =   2117
      Value           =   -1  'True
      ForeColor       =   &H00FFFFFF&
      Flags           =   -1
      Ratio           =   0.1
      Precise         =   0.1
      Huge            =   1E+20
      Tiny            =   -1.5E-05
      Money           =   -1.2345
      When            =   45000.5
      Small           =   200
      Quote           =   "say ""hi"""
   End
End
Attribute VB_Name = "frmNovo"
)"));
  EXPECT_TRUE(written.companion.empty());

  FormFile back = MustParse(written.text);
  EXPECT_TRUE(back.SameContents(form));
  const PropertyBag& bag = back.root.children[0].bag;
  // Each value reads back as the type its reader asks for.
  EXPECT_EQ(bag.ReadProperty(u"Ratio", 0.0f).ToSingle(), 0.1f);
  EXPECT_EQ(bag.ReadProperty(u"Precise", 0.0).ToDouble(), 0.1);
  EXPECT_EQ(bag.ReadProperty(u"Huge", 0.0).ToDouble(), 1e20);
  EXPECT_EQ(bag.ReadProperty(u"Money", Currency{}).ToCurrency(), Currency{-12345});
  EXPECT_EQ(bag.ReadProperty(u"When", DateValue{}).ToDate().days, 45000.5);
  EXPECT_EQ(bag.ReadProperty(u"Flags", int16_t{0}).ToInteger(), -1);
  EXPECT_EQ(bag.ReadProperty(u"Value", false).VarType(), vbBoolean);
  EXPECT_FALSE(bag.Contains(u"NoPicture"));
}

TEST(FormFileModel, ValuesInAnyAcceptedFormReadTheSame) {
  FormFile form = MustParse(Ascii(Crlf(R"(Begin Morvantix.USLabel lbl 
   BackColor       =   16777215
   ForeColor       =   &HFF&
   MaskColor       =   &H00FF00FF&
   Pointer         =   &HFFFF
   Lower           =   &h1f&
   Plus            =   +7
   Half            =   .5
   Exp             =   2.5e3
   Wide            =   4294967296
   Shown           =   -1  'true
   Enum            =   0  'None
   Tabbed	=	"tab"
   Spaced          =   12   ' comment after spaces
   Mystery         =   
   Words without an equals sign
End
)")));
  const PropertyBag& bag = form.root.bag;
  EXPECT_EQ(bag.ReadProperty(u"BackColor", int32_t{0}).ToLong(), 0xFFFFFF);
  EXPECT_EQ(bag.ReadProperty(u"ForeColor", int32_t{0}).ToLong(), 0xFF);
  EXPECT_EQ(bag.ReadProperty(u"MaskColor", int32_t{0}).ToLong(), 0xFF00FF);
  EXPECT_EQ(bag.ReadProperty(u"Pointer").VarType(), vbInteger);
  EXPECT_EQ(bag.ReadProperty(u"Pointer").ToInteger(), -1);
  EXPECT_EQ(bag.ReadProperty(u"Lower").ToLong(), 31);
  EXPECT_EQ(bag.ReadProperty(u"Plus").ToLong(), 7);
  EXPECT_EQ(bag.ReadProperty(u"Half").ToDouble(), 0.5);
  EXPECT_EQ(bag.ReadProperty(u"Exp").ToDouble(), 2500.0);
  EXPECT_EQ(bag.ReadProperty(u"Wide").ToDouble(), 4294967296.0);
  EXPECT_EQ(bag.ReadProperty(u"Shown").VarType(), vbBoolean);
  EXPECT_EQ(bag.ReadProperty(u"Enum").VarType(), vbLong);
  EXPECT_EQ(bag.ReadProperty(u"Tabbed").ToString(), u"tab");
  EXPECT_EQ(bag.ReadProperty(u"Spaced").ToLong(), 12);
  EXPECT_EQ(bag.Count(), 13);
  // The empty value and the line without "=" are kept, not refused.
  EXPECT_EQ(bag.Items().size(), 15u);

  // Canonical output: a decimal colour turns hexadecimal, a hexadecimal Long stays so, the
  // enumeration keeps its comment.
  std::string text = AsText(WriteFormText(form, u"x.frx").text);
  EXPECT_NE(text.find("BackColor       =   &H00FFFFFF&\r\n"), std::string::npos);
  EXPECT_NE(text.find("Lower           =   &H0000001F&\r\n"), std::string::npos);
  EXPECT_NE(text.find("Pointer         =   &HFFFF\r\n"), std::string::npos);
  EXPECT_NE(text.find("Enum            =   0  'None\r\n"), std::string::npos);
  EXPECT_NE(text.find("   Words without an equals sign\r\n"), std::string::npos);
}

TEST(FormFileModel, UnknownLinesMoveWithTheHostLineBeforeThem) {
  // The host's lines come out sorted; an unknown line keeps to the property it followed.
  FormFile form = MustParse(Ascii(Crlf(R"(Begin VB.Label lbl 
   Width           =   100
   odd line one
   Caption         =   "c"
   odd line two
End
)")));
  FormFileBytes once = WriteFormText(form, u"x.frx");
  EXPECT_EQ(AsText(once.text), Crlf(R"(Begin VB.Label lbl 
   Caption         =   "c"
   odd line two
   Width           =   100
   odd line one
End
)"));
  FormFile back = MustParse(once.text);
  EXPECT_TRUE(back.SameContents(form));
  EXPECT_EQ(WriteFormText(back, u"x.frx").text, once.text);
  // Moving a kept line to another property is a different form.
  FormFile moved = MustParse(Ascii(Crlf("Begin VB.Label lbl \n   Caption = \"c\"\n   odd line one\n"
                                        "   Width = 100\n   odd line two\nEnd\n")));
  EXPECT_FALSE(moved.SameContents(form));
}

TEST(FormFileModel, EnumerationCommentsComeFromTheWritersHook) {
  FormFile form;
  form.root = FormBlock(u"Morvantix", u"USButton", u"cmd");
  form.root.bag.WriteProperty(u"Theme", int32_t{4});
  form.root.bag.WriteProperty(u"Caption", u"x");
  FormWriteOptions options;
  options.enumComment = [](const FormBlock& block, const BagEntry& entry) -> String {
    return block.className == u"USButton" && entry.key == u"Theme" && entry.value.ToLong() == 4 ? u"Office Theme Blue"
                                                                                                 : u"";
  };
  std::string text = AsText(WriteFormText(form, u"x.frx", options).text);
  EXPECT_NE(text.find("Theme           =   4  'Office Theme Blue\r\n"), std::string::npos);
  EXPECT_NE(text.find("Caption         =   \"x\"\r\n"), std::string::npos);
}

// ---- the companion file -------------------------------------------------------------------------------

TEST(FormFileCompanion, EntriesAreWrittenInOrderWithTheirOffsets) {
  ByteArray pictureBytes = {'G', 'I', 'F', '8', '9', 'a', 3, 0, 2, 0, 0, 0, 0};
  ByteArray blob = {1, 2, 3};
  String longText(300, u'x');
  FormFile form;
  form.root = FormBlock(u"Morvantix", u"USAlphaImage", u"img");
  form.root.bag.WriteProperty(u"Picture", Variant(StdPicture::FromBytes(pictureBytes)));
  form.root.bag.WriteProperty(u"Bytes", blob);
  form.root.bag.WriteProperty(u"Long", longText);
  form.root.bag.WriteProperty(u"Lines", u"a\r\nb");
  form.root.bag.WriteProperty(u"Empty", ByteArray{});
  FormFileBytes written = WriteFormText(form, u"img.frx");

  std::string text = AsText(written.text);
  EXPECT_NE(text.find("Picture         =   \"img.frx\":0000\r\n"), std::string::npos);
  EXPECT_NE(text.find("Bytes           =   \"img.frx\":0015\r\n"), std::string::npos);  // 8 + 13
  EXPECT_NE(text.find("Long            =   \"img.frx\":001C\r\n"), std::string::npos);   // + 4 + 3
  EXPECT_NE(text.find("Lines           =   \"img.frx\":014C\r\n"), std::string::npos);  // + 4 + 300
  EXPECT_NE(text.find("Empty           =   \"img.frx\":0154\r\n"), std::string::npos);  // + 4 + 4

  ByteArray expected = {'l', 't', 0, 0, 13, 0, 0, 0};
  expected.insert(expected.end(), pictureBytes.begin(), pictureBytes.end());
  expected.insert(expected.end(), {3, 0, 0, 0, 1, 2, 3});
  expected.insert(expected.end(), {0x2C, 0x01, 0, 0});
  expected.insert(expected.end(), 300, 'x');
  expected.insert(expected.end(), {4, 0, 0, 0, 'a', '\r', '\n', 'b'});
  expected.insert(expected.end(), {0, 0, 0, 0});
  EXPECT_EQ(written.companion, expected);

  FormFile back = MustParse(written.text, written.companion);
  EXPECT_TRUE(back.SameContents(form));
  EXPECT_EQ(back.root.bag.ReadProperty(u"Long", u"").ToString(), longText);
  EXPECT_EQ(back.root.bag.ReadProperty(u"Empty", ByteArray{1}).Bytes()->size(), 0u);
}

TEST(FormFileCompanion, ABlobWhoseLengthSpellsThePictureTagIsStillABlob) {
  // 0x746C is "lt" 0 0 read as a length; what follows cannot be a picture's length, so the
  // entry is read as the byte array it is.
  FrxWriter writer;
  ByteArray data(0x746C, 0xFF);
  ASSERT_EQ(writer.AddBlob(data), 0u);
  FrxEntry entry;
  ASSERT_TRUE(FrxReader(writer.Bytes()).ReadEntry(0, entry));
  EXPECT_EQ(entry.kind, FrxEntryKind::Blob);
  EXPECT_EQ(entry.bytes, data);
}

TEST(FormFileCompanion, Windows1252RoundTrip) {
  const String text = u"A\u00E7\u00E3o \u00E7 \u20AC";
  const ByteArray bytes = {'A', 0xE7, 0xE3, 'o', ' ', 0xE7, ' ', 0x80};
  EXPECT_EQ(EncodeWindows1252(text), bytes);
  EXPECT_EQ(DecodeWindows1252(bytes), text);
  // Every byte decodes and encodes back to itself, the five undefined ones included.
  ByteArray all(256);
  for (int i = 0; i < 256; ++i) all[static_cast<size_t>(i)] = static_cast<uint8_t>(i);
  EXPECT_EQ(EncodeWindows1252(DecodeWindows1252(all)), all);
  // Outside the code page: one "?" per character, a surrogate pair included.
  EXPECT_EQ(EncodeWindows1252(u"\u4E2D\U0001F600!"), Ascii("?" "?!"));
  EXPECT_FALSE(IsWindows1252(u"\u4E2D"));
  EXPECT_TRUE(IsWindows1252(text));

  // In the form text and, with a line break, in the companion file.
  FormFile form;
  form.root = FormBlock(u"VB", u"Label", u"lbl");
  form.root.host.WriteProperty(u"Caption", text);
  form.root.host.WriteProperty(u"Tag", text + u"\r\n" + text);
  FormFileBytes written = WriteFormText(form, u"l.frx");
  std::string expectedLine = "Caption         =   \"A\xE7\xE3o \xE7 \x80\"\r\n";
  EXPECT_NE(AsText(written.text).find(expectedLine), std::string::npos);
  ByteArray stored(written.companion.begin() + 4, written.companion.end());
  ByteArray twice = bytes;
  twice.insert(twice.end(), {'\r', '\n'});
  twice.insert(twice.end(), bytes.begin(), bytes.end());
  EXPECT_EQ(stored, twice);
  FormFile back = MustParse(written.text, written.companion);
  EXPECT_EQ(back.root.host.ReadProperty(u"Caption", u"").ToString(), text);
  EXPECT_EQ(back.root.host.ReadProperty(u"Tag", u"").ToString(), text + u"\r\n" + text);
}

TEST(FormFileCompanion, ReferencesInTextAreFoundOnlyForCompanionNames) {
  auto refs = FindFrxReferences(u"P = \"a.frx\":00FF 'x \"b.frx\":0001");
  ASSERT_EQ(refs.size(), 1u);
  EXPECT_EQ(refs[0].fileName, u"a.frx");
  EXPECT_EQ(refs[0].offset, 0xFFu);
  EXPECT_EQ(refs[0].position, 4u);
  EXPECT_EQ(refs[0].length, 12u);
  EXPECT_TRUE(FindFrxReferences(u"Caption = \"12:30\":45").empty());
  EXPECT_TRUE(FindFrxReferences(u"X = \"a.frx\":123456789").empty());  // beyond 32 bits
  EXPECT_EQ(FindFrxReferences(u"X = \"say \"\"q\"\".CTX\":1A").at(0).fileName, u"say \"q\".CTX");
  EXPECT_EQ(FormatFrxReference(u"f.frx", 0xA3C), u"\"f.frx\":0A3C");
  EXPECT_EQ(FormatFrxReference(u"f.frx", 0x10A3C), u"\"f.frx\":10A3C");
}

TEST(FormFileCompanion, CompanionNamesFollowTheFormsExtension) {
  EXPECT_EQ(CompanionPathFor("/a/b/frmMain.frm"), "/a/b/frmMain.frx");
  EXPECT_EQ(CompanionPathFor("/a/b/uc.CTL"), "/a/b/uc.CTX");
  EXPECT_EQ(CompanionPathFor("page.pag"), "page.pgx");
  EXPECT_EQ(CompanionPathFor("/a.b/noext"), "/a.b/noext.frx");
}

TEST(FormFileCompanion, ACompanionNamedInAnotherCaseIsFound) {
  std::filesystem::path dir = std::filesystem::temp_directory_path() / "mx_formfile_case";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  std::filesystem::copy_file(kForms + "painel.ctl", dir / "painel.ctl");
  std::filesystem::copy_file(kForms + "painel.ctx", dir / "PAINEL.CTX");
  FormFile form = MustRead((dir / "painel.ctl").string());
  EXPECT_TRUE(form.root.host.Contains(u"ToolboxBitmap"));
  std::filesystem::remove_all(dir);
}

// ---- damaged files ------------------------------------------------------------------------------------

TEST(FormFileBad, DamagedFilesAreRefusedAtTheRightLine) {
  struct Case {
    const char* file;
    int32_t line;
    const char* reason;
  };
  const Case cases[] = {
      {"unterminated_block.frm", 7, "\"lblB\" has no End"},
      {"bad_number.frm", 4, "bad number \"12x4\""},
      {"bad_decimal.frm", 4, "bad number \"1.2.3\""},
      {"bad_hex.frm", 4, "bad hexadecimal number"},
      {"hex_integer_range.frm", 4, "hexadecimal Integer out of range"},
      {"hex_too_long.frm", 4, "hexadecimal number too large"},
      {"unterminated_string.frm", 4, "unterminated string"},
      {"text_after_value.frm", 4, "unexpected text after the value"},
      {"font_without_end.frm", 4, "BeginProperty Font has no EndProperty"},
      {"unknown_property_without_end.frm", 4, "BeginProperty Extra has no EndProperty"},
      {"stray_endproperty.frm", 4, "EndProperty without BeginProperty"},
      {"bad_font_size.frm", 5, "bad value for the font property \"Size\""},
      {"begin_without_name.frm", 4, "has no control name"},
      {"begin_without_class.frm", 4, "expected Library.Class"},
      {"no_begin.frm", 2, "no Begin block"},
      {"missing_companion.frm", 4, "companion file \"ausente.frx\" not found"},
      {"bad_offset.frm", 4, "bad companion file offset"},
      {"reference_past_end.frm", 5, "past the end"},
      {"length_too_large.frm", 4, "length 1000 at offset 0x0 runs past the end of the 9-byte companion file"},
      {"picture_too_large.frm", 4, "runs past the end"},
      {"cut_length.frm", 4, "cut short"},
      {"unknown_line_bad_reference.frm", 4, "past the end"},
  };
  size_t checked = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    FormFile form;
    FormFileError error;
    EXPECT_FALSE(ReadFormFile(kBadForms + c.file, form, error));
    EXPECT_EQ(error.line, c.line);
    EXPECT_NE(error.reason.find(c.reason), std::string::npos) << error.reason;
    EXPECT_EQ(error.Message().rfind("line " + std::to_string(c.line) + ": ", 0), 0u);
    ++checked;
  }
  // Every damaged form in the folder is in the table.
  size_t files = 0;
  for (const auto& item : std::filesystem::directory_iterator(kBadForms)) files += item.path().extension() == ".frm";
  EXPECT_EQ(files, checked);
}

TEST(FormFileBad, EveryCutOfAGoodFormFailsCleanlyOrReadsAPrefix) {
  // Cutting the text or its companion anywhere must give an answer, never a crash.
  ByteArray text = ReadBytes(kForms + "clientes.frm");
  ByteArray companion = ReadBytes(kForms + "clientes.frx");
  for (size_t n = 0; n < text.size(); n += 7) {
    FormFile form;
    FormFileError error;
    bool ok = Parse(ByteArray(text.begin(), text.begin() + static_cast<ptrdiff_t>(n)), companion, form, error);
    if (!ok) {
      EXPECT_FALSE(error.reason.empty());
    }
  }
  size_t refused = 0;
  for (size_t n = 0; n < companion.size(); n += 5) {
    FormFile form;
    FormFileError error;
    refused += Parse(text, ByteArray(companion.begin(), companion.begin() + static_cast<ptrdiff_t>(n)), form, error) ? 0 : 1;
  }
  EXPECT_EQ(refused, (companion.size() + 4) / 5);
  FormFileError error;
  FormFile form;
  EXPECT_FALSE(ReadFormFile(kBadForms + "does_not_exist.frm", form, error));
  EXPECT_EQ(error.line, 0);
}

TEST(FormFileRoundTrip, APropertyNamedLikeAKeywordStaysAProperty) {
  // Found by fuzzing: "Begin=4" reads as a property, and the writer puts blanks before its "=",
  // which must not turn it into a block on the way back.
  FormFile form = MustParse(ReadBytes(std::string(MX_TESTDATA_DIR) + "/bad/formfile/property_named_begin.frm"));
  ASSERT_EQ(form.root.name, u"r");
  EXPECT_EQ(form.root.bag.ReadProperty(u"Begin").ToLong(), 4);
  FormFileBytes written = WriteFormText(form, u"x.frx");
  FormFile back = MustParse(written.text, written.companion);
  EXPECT_TRUE(back.SameContents(form));
  // The same for the other keywords that open or close something.
  FormFile keywords = MustParse(Ascii(Crlf("Begin Test.Panel f\n   BeginProperty = 1\n   End = 2\n"
                                           "   EndProperty = 3\nEnd\n")));
  EXPECT_EQ(keywords.root.bag.Count(), 3);
  FormFile again = MustParse(WriteFormText(keywords, u"x.frx").text);
  EXPECT_TRUE(again.SameContents(keywords));
}
