#pragma once
// Class MX: the library's stand-alone utilities for text, numbers, Brazilian document numbers,
// addresses, text files and dates. Every member is a function of its arguments (and of the clock
// for the "current" ones). No member throws to its caller: on a failure it returns what it had so
// far, which means False, 0 or an empty string.
#include <cstdint>
#include <functional>
#include <memory>

#include "host/Collection.h"
#include "host/Colors.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/Variant.h"
#include "utility/DateFormats.h"

namespace mx::utility {

enum ENUM_ENCODIND_TYPE : int32_t {
  EncUnknown = 0,
  EncANSI = 1,
  EncUTF8 = 2,
  EncUnicode = 3,
  EncUnicodeBigEndian = 4,
};

// Everything a themed message box is asked to show, as USMsgBox and USMsgBoxEx pass it on.
struct MessageBoxRequest {
  host::String Prompt;  // every "&" already doubled, so that it shows as a character
  int32_t Buttons = 0;  // the style code: buttons + icon + default button
  host::Variant Title;  // empty: the application's title
  int32_t Theme = 2;
  host::OLE_COLOR ButtonForeColor = 0xFFFFFF;
  host::OLE_COLOR ButtonBorderColor = 0x9A572B;
  host::OLE_COLOR ButtonBorderColorOver = 0x7B3E00;
  host::OLE_COLOR ButtonBorderColorDown = 0x501A00;
  int32_t ButtonGradientColors = 0;
  host::OLE_COLOR ButtonGradientColor1 = 0x9A572B;
  host::OLE_COLOR ButtonGradientColor2 = 0x9A572B;
  host::OLE_COLOR ButtonGradientColor3 = 0x9A572B;
  host::OLE_COLOR ButtonGradientColor4 = 0x9A572B;
  host::OLE_COLOR BackgoundGradientColor1 = 0xFFFFFF;
  host::OLE_COLOR BackgoundGradientColor2 = 0xFFFFFF;
  std::shared_ptr<host::StdFont> FontStyle;
  std::shared_ptr<host::StdPicture> Icon;
  host::OLE_COLOR BackColor = 0xFFFFFF;
  uint8_t TranslucentLevel = 0;
  bool FadeIN = false;
  bool FadeOUT = false;
  bool DrawGradient = false;
  bool EscToClose = true;
  int32_t WaitTimes = 0;  // milliseconds; 0 means no time-out
  bool PlaySound = true;
  // True for the form that renders the prompt's markup (USMsgBoxEx with a "<" in the prompt).
  bool Markup = false;
};

// Who shows message boxes. The forms live in a layer above this one, which installs itself here
// when the library is registered (RegisterLibrary); the provider runs the box modally and
// returns its result. Without a provider USMsgBox and USMsgBoxEx show nothing and return 0.
using MessageBoxProvider = std::function<int32_t(const MessageBoxRequest&)>;
void SetMessageBoxProvider(MessageBoxProvider provider);
[[nodiscard]] bool HasMessageBoxProvider();

// The toolkit default theme (2 at start-up), set by MX::SetDefautlToolkitTheme. One value for
// the process: the library runs on one interface thread.
[[nodiscard]] int32_t ToolkitDefaultTheme();

// The application's title, which a message box without a title shows: the program's name
// unless the application sets one.
[[nodiscard]] host::String ApplicationTitle();
void SetApplicationTitle(host::StringView title);

// The prompt as the label must receive it: each "&" doubled, so none becomes an access key.
[[nodiscard]] host::String DoubleAmpersands(host::StringView text);

class MX {
 public:
  using String = host::String;

  // Makes sure the host's values convert to text under the regional setting, as the members that
  // show numbers (FixNullField, JoinCollection, MilimeterToInche) expect.
  MX() = default;

  // ---- money, documents, addresses
  // Money in Portuguese words, to whole cents rounded half to even; "Valor não suportado." above
  // 9999999999.99.
  [[nodiscard]] String CurrencyAsStr(double xValue, const String& xSingularCurrencyCountry = u"real",
                                     const String& xPluralCurrencyCountry = u"reais",
                                     const String& xSingularDecimalCountry = u"centavo",
                                     const String& xPluralDecimalCountry = u"centavos") const;
  [[nodiscard]] bool IsValidCPFOrCNPJ(const String& xDocument) const;
  [[nodiscard]] bool IsValidEmail(const String& xEmail) const;
  // Dotted IPv4: four members of one to three decimal digits, each at most 255.
  [[nodiscard]] bool IsValidIP(const String& xIP) const;
  // http, https, ftp, file and mailto addresses by the grammar in UrlParser.cpp.
  [[nodiscard]] bool IsValidURL(const String& xUrl) const;
  // A name that is portable: see the character set in MXDocuments.cpp.
  [[nodiscard]] bool IsValidFileName(const String& xFileName) const;

  // ---- text
  [[nodiscard]] String RemoveAccents(const String& xString) const;
  [[nodiscard]] String ReturnNumbersOnly(const String& xString) const;
  [[nodiscard]] String ReturnTextsOnly(const String& xString) const;
  [[nodiscard]] String ReturnTextsAndNumbersOnly(const String& xString) const;
  [[nodiscard]] String FormatWithZeros(const String& xString, int16_t xNumberOfZeros) const;
  [[nodiscard]] int32_t LenTrim(const String& xString) const;
  [[nodiscard]] String GetStringContent(const String& xString, const String& xStringFrom,
                                        const String& xStringTo) const;
  // The value as text; a database Null (and anything with no text form) gives "".
  [[nodiscard]] String FixNullField(const host::Variant& xContent) const;
  [[nodiscard]] String JoinCollection(const host::Collection& xCol, const String& xDelimiter = u"\r\n") const;
  // True for an array that has been sized, even to no elements; False for anything else.
  [[nodiscard]] bool IsArrayHasBeenInitialized(const host::Variant& xArr) const;

  // ---- numbers
  [[nodiscard]] String MilimeterToInche(double xValue) const;
  // Up to 999: whole bytes; from there the largest unit reached, as "#,##0.00" of the setting.
  [[nodiscard]] String FormatFileSize(double xValue) const;
  [[nodiscard]] String LongToHex(int32_t xValue) const;
  [[nodiscard]] int32_t ShiftRGBColor(int32_t xColor, int16_t xShiftValue) const;
  [[nodiscard]] int32_t CreateRandomNumberAsLong() const;
  [[nodiscard]] String CreateRandomNumberAsStr(const String& xDelimiter = u".",
                                               int16_t xNumberOfCharactersPerSpace = 4,
                                               int32_t xFormattedCharacters = 99) const;

  // ---- files
  [[nodiscard]] String LoadStringFromFile(const String& xFile, ENUM_ENCODIND_TYPE Tipo = EncUnknown) const;

  // ---- dates
  [[nodiscard]] bool IsValidDate(const String& xDate, ENUM_DATE_FORMAT xFormat) const;
  [[nodiscard]] bool IsValidDateEx(const String& xDate, ENUM_DATE_FORMAT xFormat = dd_mm_yyyy_Slash) const;
  // Parts must be plain whole numbers; missing trailing parts count as 0, empty text is invalid.
  [[nodiscard]] bool IsValidTime(const String& xTime, const String& xDelimiter = u":") const;
  [[nodiscard]] String FormatAsDate(const String& xDate, const String& xFormat) const;
  [[nodiscard]] String FormatAsDateEx(const String& xDate, const String& xFormat = u"DD/MM/YYYY") const;
  [[nodiscard]] String CurrentTime() const;
  [[nodiscard]] String CurrentDate() const;
  [[nodiscard]] String CurrentDateTime() const;
  [[nodiscard]] int32_t NumberOfDaysOnMonth(int16_t xMonth, int16_t xYear = 0) const;
  [[nodiscard]] bool IsYearLeap(int16_t xYear) const;
  [[nodiscard]] int16_t CalculateAge(double xBirthday) const;
  [[nodiscard]] String NameOfTheDay(double xDate, bool xAbbreviated = false) const;

  // ---- message boxes
  // A themed modal box with Portuguese buttons; returns the standard message-box result of the
  // button pressed (1 Ok, 2 Cancelar, 3 Abortar, 4 Repetir, 5 Ignorar, 6 Sim, 7 Não), or 0 when
  // the box closed without one (time-out, Esc, the close box). The Theme argument only counts
  // where it agrees with the toolkit default theme: the default wins. Returns 0 at once when no
  // message-box provider is installed (see SetMessageBoxProvider).
  int32_t USMsgBox(const String& Prompt, int32_t Buttons = 0, const host::Variant& Title = host::Variant(),
                   int32_t Theme = 2, host::OLE_COLOR ButtonForeColor = 0xFFFFFF,
                   host::OLE_COLOR ButtonBorderColor = 0x9A572B, host::OLE_COLOR ButtonBorderColorOver = 0x7B3E00,
                   host::OLE_COLOR ButtonBorderColorDown = 0x501A00, int32_t ButtonGradientColors = 0,
                   host::OLE_COLOR ButtonGradientColor1 = 0x9A572B, host::OLE_COLOR ButtonGradientColor2 = 0x9A572B,
                   host::OLE_COLOR ButtonGradientColor3 = 0x9A572B, host::OLE_COLOR ButtonGradientColor4 = 0x9A572B,
                   host::OLE_COLOR BackgoundGradientColor1 = 0xFFFFFF,
                   host::OLE_COLOR BackgoundGradientColor2 = 0xFFFFFF,
                   std::shared_ptr<host::StdFont> FontStyle = nullptr,
                   std::shared_ptr<host::StdPicture> Icon = nullptr, host::OLE_COLOR BackColor = 0xFFFFFF,
                   uint8_t TranslucentLevel = 0, bool FadeIN = false, bool FadeOUT = false,
                   bool DrawGradient = false, bool EscToClose = true, int32_t WaitTimes = 0,
                   bool PlaySound = true) const;
  // As USMsgBox, but a prompt with a "<" anywhere goes to the form that renders markup (<b>,
  // <i>, <u>, <s>, <br>, <c=...>), whether or not the "<" starts a tag.
  int32_t USMsgBoxEx(const String& Prompt, int32_t Buttons = 0, const host::Variant& Title = host::Variant(),
                     int32_t Theme = 2, host::OLE_COLOR ButtonForeColor = 0xFFFFFF,
                     host::OLE_COLOR ButtonBorderColor = 0x9A572B, host::OLE_COLOR ButtonBorderColorOver = 0x7B3E00,
                     host::OLE_COLOR ButtonBorderColorDown = 0x501A00, int32_t ButtonGradientColors = 0,
                     host::OLE_COLOR ButtonGradientColor1 = 0x9A572B, host::OLE_COLOR ButtonGradientColor2 = 0x9A572B,
                     host::OLE_COLOR ButtonGradientColor3 = 0x9A572B, host::OLE_COLOR ButtonGradientColor4 = 0x9A572B,
                     host::OLE_COLOR BackgoundGradientColor1 = 0xFFFFFF,
                     host::OLE_COLOR BackgoundGradientColor2 = 0xFFFFFF,
                     std::shared_ptr<host::StdFont> FontStyle = nullptr,
                     std::shared_ptr<host::StdPicture> Icon = nullptr, host::OLE_COLOR BackColor = 0xFFFFFF,
                     uint8_t TranslucentLevel = 0, bool FadeIN = false, bool FadeOUT = false,
                     bool DrawGradient = false, bool EscToClose = true, int32_t WaitTimes = 0,
                     bool PlaySound = true) const;
  // The same two calls with the arguments gathered in one request (its Markup is ignored: the
  // member decides).
  int32_t USMsgBox(MessageBoxRequest request) const;
  int32_t USMsgBoxEx(MessageBoxRequest request) const;
  // Sets the toolkit default theme that every message box uses.
  void SetDefautlToolkitTheme(int32_t xTheme) const;
};

// The digit filter behind ReturnNumbersOnly, with the switch that also keeps "-" for callers that
// deal in negative numbers.
[[nodiscard]] host::String ReturnNumbersOnly(host::StringView xString, bool xKeepMinus);

}  // namespace mx::utility
