#include "host/Locale.h"

#include <atomic>
#include <cctype>
#include <cstdlib>

namespace mx::host {
namespace {

// Names keep the system's lower-case initials in Portuguese: a long date reads
// "segunda-feira, 15 de janeiro de 2024".
constexpr Locale kPortugueseBrazil{
    .name = "pt-BR",
    .decimalMark = u',',
    .groupingMark = u'.',
    .dateOrder = DateOrder::DayMonthYear,
    .dateSeparator = u'/',
    .timeSeparator = u':',
    .shortDatePattern = u"dd/MM/yyyy",
    .longDatePattern = u"dddd, d' de 'MMMM' de 'yyyy",
    .timePattern = u"HH:mm:ss",
    .amDesignator = u"AM",
    .pmDesignator = u"PM",
    .currencySymbol = u"R$",
    .currencyBefore = true,
    .currencySpace = true,
    .currencyNegativeParens = false,
    .currencyDigits = 2,
    .monthNames = {u"janeiro", u"fevereiro", u"mar\u00e7o", u"abril", u"maio", u"junho", u"julho",
                   u"agosto", u"setembro", u"outubro", u"novembro", u"dezembro"},
    .monthAbbreviations = {u"jan", u"fev", u"mar", u"abr", u"mai", u"jun", u"jul", u"ago", u"set",
                           u"out", u"nov", u"dez"},
    .dayNames = {u"domingo", u"segunda-feira", u"ter\u00e7a-feira", u"quarta-feira",
                 u"quinta-feira", u"sexta-feira", u"s\u00e1bado"},
    .dayAbbreviations = {u"dom", u"seg", u"ter", u"qua", u"qui", u"sex", u"s\u00e1b"},
    .firstDayOfWeek = 1,
    .yesText = u"Sim",
    .noText = u"N\u00e3o",
    .trueText = u"Verdadeiro",
    .falseText = u"Falso",
    .onText = u"Ativado",
    .offText = u"Desativado",
};

constexpr Locale kEnglishUnitedStates{
    .name = "en-US",
    .decimalMark = u'.',
    .groupingMark = u',',
    .dateOrder = DateOrder::MonthDayYear,
    .dateSeparator = u'/',
    .timeSeparator = u':',
    .shortDatePattern = u"M/d/yyyy",
    .longDatePattern = u"dddd, MMMM d, yyyy",
    .timePattern = u"h:mm:ss tt",
    .amDesignator = u"AM",
    .pmDesignator = u"PM",
    .currencySymbol = u"$",
    .currencyBefore = true,
    .currencySpace = false,
    .currencyNegativeParens = true,
    .currencyDigits = 2,
    .monthNames = {u"January", u"February", u"March", u"April", u"May", u"June", u"July",
                   u"August", u"September", u"October", u"November", u"December"},
    .monthAbbreviations = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep",
                           u"Oct", u"Nov", u"Dec"},
    .dayNames = {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday",
                 u"Saturday"},
    .dayAbbreviations = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"},
    .firstDayOfWeek = 1,
    .yesText = u"Yes",
    .noText = u"No",
    .trueText = u"True",
    .falseText = u"False",
    .onText = u"On",
    .offText = u"Off",
};

constexpr const Locale* kBuiltIn[] = {&kPortugueseBrazil, &kEnglishUnitedStates};

// nullptr until first use, so that MX_LOCALE is read lazily and exactly once.
std::atomic<const Locale*> g_current{nullptr};

bool SameLocaleName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char x = a[i] == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(a[i])));
    char y = b[i] == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(b[i])));
    if (x != y) return false;
  }
  return true;
}

const Locale& InitialLocale() {
  if (const char* env = std::getenv("MX_LOCALE")) {
    // "pt_BR.UTF-8" style names from a POSIX environment carry an encoding: ignore it.
    std::string_view name(env);
    if (auto dot = name.find('.'); dot != std::string_view::npos) name = name.substr(0, dot);
    if (const Locale* found = FindLocale(name)) return *found;
  }
  return kPortugueseBrazil;
}

}  // namespace

const Locale* FindLocale(std::string_view name) {
  for (const Locale* locale : kBuiltIn) {
    if (SameLocaleName(locale->name, name)) return locale;
  }
  return nullptr;
}

const Locale& CurrentLocale() {
  const Locale* current = g_current.load(std::memory_order_acquire);
  if (current) return *current;
  const Locale* initial = &InitialLocale();
  // A racing SetLocale wins over the environment.
  if (g_current.compare_exchange_strong(current, initial, std::memory_order_acq_rel)) return *initial;
  return *current;
}

bool SetLocale(std::string_view name) {
  const Locale* found = FindLocale(name);
  if (!found) return false;
  g_current.store(found, std::memory_order_release);
  return true;
}

ScopedLocale::ScopedLocale(std::string_view name) : m_previous(&CurrentLocale()) {
  SetLocale(name);
}

ScopedLocale::~ScopedLocale() { g_current.store(m_previous, std::memory_order_release); }

char16_t FoldLetter(char16_t c) {
  if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 32);
  if (c < 0xC0) return c;
  // Latin-1 capitals sit 0x20 below their small letters, except the multiplication sign.
  if (c <= 0xDE && c != 0xD7) return static_cast<char16_t>(c + 32);
  if (c == 0x178) return 0xFF;
  return c;
}

bool EqualsNoCase(StringView a, StringView b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldLetter(a[i]) != FoldLetter(b[i])) return false;
  }
  return true;
}

}  // namespace mx::host
