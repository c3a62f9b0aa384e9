// mxutil NAME ARGS...: calls the MX member NAME with its arguments given as text and prints the
// result on one line. USMsgBox and USMsgBoxEx show a message box headless (see PrintHelp). Strings print as they are (UTF-8), Booleans as True/False, numbers in the
// invariant form. An unknown member, a wrong argument count or an argument that does not convert
// to the member's parameter type prints a message to stderr and exits with 2.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "chrome/MessageFormRun.h"
#include "host/Collection.h"
#include "host/DateTime.h"
#include "host/String.h"
#include "host/Variant.h"
#include "morvantix/Library.h"
#include "utility/MX.h"

namespace {

using mx::host::FromUtf8;
using mx::host::String;
using mx::utility::MX;

// A bad argument: reported with the member's usage line.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

using Args = std::vector<std::string>;

struct Member {
  const char* name;
  const char* parameters;  // usage, optional parameters in brackets
  int minArgs;
  int maxArgs;  // -1: any number
  std::function<std::string(const MX&, const Args&)> call;
};

std::string Text(const String& s) { return mx::host::ToUtf8(s); }
std::string Text(bool b) { return b ? "True" : "False"; }
std::string Text(int32_t n) { return std::to_string(n); }
std::string Text(int16_t n) { return std::to_string(n); }

// Numbers are read in the invariant form: "." for decimals, no grouping.
double ToDouble(const std::string& arg) {
  errno = 0;
  char* end = nullptr;
  const double value = std::strtod(arg.c_str(), &end);
  if (arg.empty() || end != arg.c_str() + arg.size() || errno == ERANGE || std::isnan(value)) {
    throw UsageError("'" + arg + "' is not a number");
  }
  return value;
}

long long ToInteger(const std::string& arg, long long low, long long high, const char* type) {
  errno = 0;
  char* end = nullptr;
  const long long value = std::strtoll(arg.c_str(), &end, 10);
  if (arg.empty() || end != arg.c_str() + arg.size() || errno == ERANGE || value < low || value > high) {
    throw UsageError("'" + arg + "' is not " + type);
  }
  return value;
}

int16_t ToInt16(const std::string& arg) {
  return static_cast<int16_t>(ToInteger(arg, INT16_MIN, INT16_MAX, "an Integer (-32768 to 32767)"));
}
int32_t ToInt32(const std::string& arg) {
  return static_cast<int32_t>(ToInteger(arg, INT32_MIN, INT32_MAX, "a Long (-2147483648 to 2147483647)"));
}

bool ToBool(const std::string& arg) {
  std::string lower;
  for (char c : arg) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lower == "true" || lower == "1" || lower == "-1") return true;
  if (lower == "false" || lower == "0") return false;
  throw UsageError("'" + arg + "' is not True or False");
}

// A date as yyyy-mm-dd, or any date text the regional setting reads.
double ToDate(const std::string& arg) {
  int year = 0, month = 0, day = 0;
  char tail = 0;
  if (std::sscanf(arg.c_str(), "%4d-%2d-%2d%c", &year, &month, &day, &tail) == 3 && month >= 1 && month <= 12 &&
      day >= 1 && day <= mx::host::DaysInMonth(year, month)) {
    return mx::host::DateSerial(year, month, day);
  }
  double date = 0;
  if (mx::host::TryParseDate(FromUtf8(arg), date)) return date;
  throw UsageError("'" + arg + "' is not a date (write it as yyyy-mm-dd)");
}

mx::utility::ENUM_ENCODIND_TYPE ToEncoding(const std::string& arg) {
  static const char* const kNames[] = {"EncUnknown", "EncANSI", "EncUTF8", "EncUnicode", "EncUnicodeBigEndian"};
  for (int i = 0; i < 5; ++i) {
    if (arg == kNames[i]) return static_cast<mx::utility::ENUM_ENCODIND_TYPE>(i);
  }
  return static_cast<mx::utility::ENUM_ENCODIND_TYPE>(ToInteger(arg, 0, 4, "an encoding (0 to 4 or EncANSI...)"));
}

String S(const Args& a, size_t i) { return FromUtf8(a[i]); }
bool Has(const Args& a, size_t i) { return a.size() > i; }

const std::vector<Member>& Members() {
  using mx::utility::ENUM_DATE_FORMAT;
  static const std::vector<Member> members = {
      {"CurrencyAsStr", "xValue [xSingularCurrency xPluralCurrency xSingularDecimal xPluralDecimal]", 1, 5,
       [](const MX& m, const Args& a) {
         return Text(m.CurrencyAsStr(ToDouble(a[0]), Has(a, 1) ? S(a, 1) : u"real", Has(a, 2) ? S(a, 2) : u"reais",
                                     Has(a, 3) ? S(a, 3) : u"centavo", Has(a, 4) ? S(a, 4) : u"centavos"));
       }},
      {"IsValidCPFOrCNPJ", "xDocument", 1, 1, [](const MX& m, const Args& a) { return Text(m.IsValidCPFOrCNPJ(S(a, 0))); }},
      {"IsValidEmail", "xEmail", 1, 1, [](const MX& m, const Args& a) { return Text(m.IsValidEmail(S(a, 0))); }},
      {"IsValidIP", "xIP", 1, 1, [](const MX& m, const Args& a) { return Text(m.IsValidIP(S(a, 0))); }},
      {"IsValidURL", "xUrl", 1, 1, [](const MX& m, const Args& a) { return Text(m.IsValidURL(S(a, 0))); }},
      {"IsValidFileName", "xFileName", 1, 1,
       [](const MX& m, const Args& a) { return Text(m.IsValidFileName(S(a, 0))); }},
      {"RemoveAccents", "xString", 1, 1, [](const MX& m, const Args& a) { return Text(m.RemoveAccents(S(a, 0))); }},
      {"ReturnNumbersOnly", "xString", 1, 1,
       [](const MX& m, const Args& a) { return Text(m.ReturnNumbersOnly(S(a, 0))); }},
      {"ReturnTextsOnly", "xString", 1, 1, [](const MX& m, const Args& a) { return Text(m.ReturnTextsOnly(S(a, 0))); }},
      {"ReturnTextsAndNumbersOnly", "xString", 1, 1,
       [](const MX& m, const Args& a) { return Text(m.ReturnTextsAndNumbersOnly(S(a, 0))); }},
      {"FormatWithZeros", "xString xNumberOfZeros", 2, 2,
       [](const MX& m, const Args& a) { return Text(m.FormatWithZeros(S(a, 0), ToInt16(a[1]))); }},
      {"LenTrim", "xString", 1, 1, [](const MX& m, const Args& a) { return Text(m.LenTrim(S(a, 0))); }},
      {"FixNullField", "xContent (--null for a database Null)", 1, 1,
       [](const MX& m, const Args& a) {
         return Text(m.FixNullField(a[0] == "--null" ? mx::host::Variant::Null() : mx::host::Variant(S(a, 0))));
       }},
      {"GetStringContent", "xString xStringFrom xStringTo", 3, 3,
       [](const MX& m, const Args& a) { return Text(m.GetStringContent(S(a, 0), S(a, 1), S(a, 2))); }},
      {"MilimeterToInche", "xValue", 1, 1, [](const MX& m, const Args& a) { return Text(m.MilimeterToInche(ToDouble(a[0]))); }},
      {"FormatFileSize", "xValue", 1, 1, [](const MX& m, const Args& a) { return Text(m.FormatFileSize(ToDouble(a[0]))); }},
      {"LongToHex", "xValue", 1, 1, [](const MX& m, const Args& a) { return Text(m.LongToHex(ToInt32(a[0]))); }},
      {"ShiftRGBColor", "xColor xShiftValue", 2, 2,
       [](const MX& m, const Args& a) { return Text(m.ShiftRGBColor(ToInt32(a[0]), ToInt16(a[1]))); }},
      {"JoinCollection", "[--delimiter=TEXT] ITEM... (the items of the collection; CR LF between them by default)",
       0, -1,
       [](const MX& m, const Args& a) {
         mx::host::Collection items;
         String delimiter = u"\r\n";
         size_t first = 0;
         if (!a.empty() && a[0].rfind("--delimiter=", 0) == 0) {
           delimiter = FromUtf8(a[0].substr(12));
           first = 1;
         }
         for (size_t i = first; i < a.size(); ++i) items.Add(mx::host::Variant(S(a, i)));
         return Text(m.JoinCollection(items, delimiter));
       }},
      {"CreateRandomNumberAsLong", "", 0, 0, [](const MX& m, const Args&) { return Text(m.CreateRandomNumberAsLong()); }},
      {"CreateRandomNumberAsStr", "[xDelimiter xNumberOfCharactersPerSpace xFormattedCharacters]", 0, 3,
       [](const MX& m, const Args& a) {
         return Text(m.CreateRandomNumberAsStr(Has(a, 0) ? S(a, 0) : u".", Has(a, 1) ? ToInt16(a[1]) : int16_t{4},
                                               Has(a, 2) ? ToInt32(a[2]) : 99));
       }},
      {"LoadStringFromFile", "xFile [Tipo]", 1, 2,
       [](const MX& m, const Args& a) {
         return Text(m.LoadStringFromFile(S(a, 0), Has(a, 1) ? ToEncoding(a[1]) : mx::utility::EncUnknown));
       }},
      {"IsValidDate", "xDate xFormat", 2, 2,
       [](const MX& m, const Args& a) {
         return Text(m.IsValidDate(S(a, 0), static_cast<ENUM_DATE_FORMAT>(ToInt32(a[1]))));
       }},
      {"IsValidDateEx", "xDate [xFormat]", 1, 2,
       [](const MX& m, const Args& a) {
         return Text(m.IsValidDateEx(S(a, 0), Has(a, 1) ? static_cast<ENUM_DATE_FORMAT>(ToInt32(a[1]))
                                                         : mx::utility::dd_mm_yyyy_Slash));
       }},
      {"IsValidTime", "xTime [xDelimiter]", 1, 2,
       [](const MX& m, const Args& a) { return Text(m.IsValidTime(S(a, 0), Has(a, 1) ? S(a, 1) : u":")); }},
      {"FormatAsDate", "xDate xFormat", 2, 2, [](const MX& m, const Args& a) { return Text(m.FormatAsDate(S(a, 0), S(a, 1))); }},
      {"FormatAsDateEx", "xDate [xFormat]", 1, 2,
       [](const MX& m, const Args& a) { return Text(m.FormatAsDateEx(S(a, 0), Has(a, 1) ? S(a, 1) : u"DD/MM/YYYY")); }},
      {"CurrentTime", "", 0, 0, [](const MX& m, const Args&) { return Text(m.CurrentTime()); }},
      {"CurrentDate", "", 0, 0, [](const MX& m, const Args&) { return Text(m.CurrentDate()); }},
      {"CurrentDateTime", "", 0, 0, [](const MX& m, const Args&) { return Text(m.CurrentDateTime()); }},
      {"NumberOfDaysOnMonth", "xMonth [xYear]", 1, 2,
       [](const MX& m, const Args& a) {
         return Text(m.NumberOfDaysOnMonth(ToInt16(a[0]), Has(a, 1) ? ToInt16(a[1]) : int16_t{0}));
       }},
      {"IsYearLeap", "xYear", 1, 1, [](const MX& m, const Args& a) { return Text(m.IsYearLeap(ToInt16(a[0]))); }},
      {"CalculateAge", "xBirthday (yyyy-mm-dd)", 1, 1, [](const MX& m, const Args& a) { return Text(m.CalculateAge(ToDate(a[0]))); }},
      {"NameOfTheDay", "xDate (yyyy-mm-dd) [xAbbreviated]", 1, 2,
       [](const MX& m, const Args& a) { return Text(m.NameOfTheDay(ToDate(a[0]), Has(a, 1) && ToBool(a[1]))); }},
  };
  return members;
}

void PrintHelp(std::ostream& out) {
  out << "usage: mxutil NAME [ARGS...]\n"
         "Calls the MX utility member NAME and prints its result on one line.\n"
         "Numbers are written with \".\" for decimals and no grouping; Booleans as True/False;\n"
         "dates as yyyy-mm-dd. Optional arguments (in brackets) may be left out.\n"
         "IsArrayHasBeenInitialized takes an array, which cannot be given on a command line, and is\n"
         "refused. Exit status: 0 on success, 2 for an unknown member or bad arguments.\n\n"
         "USMsgBox PROMPT [BUTTONS] [TITLE] [--wait MS] [--script FILE] [--png OUT.png]\n"
         "  shows a message box headless (USMsgBoxEx the same, with markup when PROMPT has \"<\"),\n"
         "  writes OUT.png of the box as it first appears, plays FILE's input into it (the words of\n"
         "  mxrun's scripts: key N, move X Y, down left, wait MS...) and prints the result: 1 Ok,\n"
         "  2 Cancelar, 3 Abortar, 4 Repetir, 5 Ignorar, 6 Sim, 7 Não, 0 closed without a button.\n"
         "  Exit status 1 when the script or the picture fails.\n\nmembers:\n";
  for (const Member& member : Members()) out << "  " << member.name << " " << member.parameters << "\n";
}

// USMsgBox and USMsgBoxEx: options may come anywhere after the name.
int MessageBoxCommand(const std::string& name, const Args& args) {
  mx::chrome::MessageBoxRunOptions options;
  options.markup = name == "USMsgBoxEx";
  Args positional;
  const std::string usage = "usage: mxutil " + name + " PROMPT [BUTTONS] [TITLE] [--wait MS] [--script FILE] [--png OUT.png]\n";
  try {
    for (size_t i = 0; i < args.size(); ++i) {
      const std::string& arg = args[i];
      if (arg == "--script" || arg == "--png" || arg == "--wait") {
        if (i + 1 >= args.size()) throw UsageError(arg + " needs a value");
        const std::string& value = args[++i];
        if (arg == "--script") options.scriptPath = value;
        else if (arg == "--png") options.pngPath = value;
        else options.waitTimes = ToInt32(value);
      } else {
        positional.push_back(arg);
      }
    }
    if (positional.empty() || positional.size() > 3) throw UsageError("takes PROMPT [BUTTONS] [TITLE]");
    options.prompt = positional[0];
    if (positional.size() > 1) options.buttons = ToInt32(positional[1]);
    if (positional.size() > 2) options.title = positional[2];
  } catch (const UsageError& error) {
    std::cerr << "mxutil: " << name << ": " << error.what() << "\n" << usage;
    return 2;
  }
  mx::RegisterLibrary();
  return mx::chrome::RunMessageBox(options, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    PrintHelp(std::cerr);
    return 2;
  }
  const std::string name = argv[1];
  if (name == "--help" || name == "-h") {
    PrintHelp(std::cout);
    return 0;
  }
  if (name == "IsArrayHasBeenInitialized") {
    std::cerr << "mxutil: IsArrayHasBeenInitialized takes an array and cannot be called from the command line\n";
    return 2;
  }
  const Args args(argv + 2, argv + argc);
  if (name == "USMsgBox" || name == "USMsgBoxEx") return MessageBoxCommand(name, args);
  for (const Member& member : Members()) {
    if (name != member.name) continue;
    const int count = static_cast<int>(args.size());
    if (count < member.minArgs || (member.maxArgs >= 0 && count > member.maxArgs)) {
      std::cerr << "mxutil: " << name << " takes ";
      if (member.maxArgs == member.minArgs) {
        std::cerr << member.minArgs;
      } else if (member.maxArgs < 0) {
        std::cerr << "at least " << member.minArgs;
      } else {
        std::cerr << member.minArgs << " to " << member.maxArgs;
      }
      std::cerr << " argument(s), " << count << " given\nusage: mxutil " << name << " " << member.parameters << "\n";
      return 2;
    }
    try {
      std::cout << member.call(MX(), args) << "\n";
      return 0;
    } catch (const UsageError& error) {
      std::cerr << "mxutil: " << name << ": " << error.what() << "\nusage: mxutil " << name << " "
                << member.parameters << "\n";
      return 2;
    }
  }
  std::cerr << "mxutil: unknown member '" << name << "' (mxutil --help lists them)\n";
  return 2;
}
