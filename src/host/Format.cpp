#include "host/Format.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "host/Conversion.h"
#include "host/DecimalDigits.h"
#include "host/Err.h"
#include "host/Locale.h"

namespace mx::host {
namespace {

void AppendAscii(String& out, const std::string& text) { out.append(text.begin(), text.end()); }

void AppendNumber(String& out, long value, int minDigits = 1) {
  std::string digits = std::to_string(value < 0 ? -value : value);
  if (value < 0) out.push_back(u'-');
  for (int i = static_cast<int>(digits.size()); i < minDigits; ++i) out.push_back(u'0');
  AppendAscii(out, digits);
}

// ---- Sections -------------------------------------------------------------------------------

// Splits at ";" outside quotes and escapes. The host reads at most four sections.
std::vector<StringView> SplitSections(StringView format) {
  std::vector<StringView> sections;
  size_t start = 0;
  bool quoted = false;
  for (size_t i = 0; i < format.size(); ++i) {
    char16_t c = format[i];
    if (c == u'"') quoted = !quoted;
    else if (c == u'\\' && !quoted) ++i;
    else if (c == u';' && !quoted) {
      sections.push_back(format.substr(start, i - start));
      start = i + 1;
      if (sections.size() == 3) break;
    }
  }
  sections.push_back(format.substr(std::min(start, format.size())));
  return sections;
}

enum class PatternKind { Number, Date, Text, Literal };

bool IsDateLetter(char16_t c) {
  switch (FoldLetter(c)) {
    case u'd': case u'm': case u'y': case u'h': case u'n': case u's': case u'w': case u'q': case u'c':
      return true;
    default:
      return false;
  }
}

bool MatchesNoCase(StringView text, size_t at, StringView word) {
  return at + word.size() <= text.size() && EqualsNoCase(text.substr(at, word.size()), word);
}

// What a section formats: digit placeholders make it a number pattern even when it holds date
// letters as text ("0 dias"); otherwise date letters make a date pattern.
PatternKind Classify(StringView section) {
  bool date = false, text = false;
  for (size_t i = 0; i < section.size(); ++i) {
    char16_t c = section[i];
    if (c == u'"') {
      size_t close = section.find(u'"', i + 1);
      if (close == StringView::npos) break;
      i = close;
    } else if (c == u'\\') {
      ++i;
    } else if (c == u'0' || c == u'#' || c == u'%') {
      return PatternKind::Number;
    } else if ((c == u'E' || c == u'e') && i + 1 < section.size() && (section[i + 1] == u'+' || section[i + 1] == u'-')) {
      return PatternKind::Number;
    } else if (IsDateLetter(c) || MatchesNoCase(section, i, u"ttttt") || MatchesNoCase(section, i, u"am/pm") ||
               MatchesNoCase(section, i, u"a/p") || MatchesNoCase(section, i, u"ampm")) {
      date = true;
    } else if (c == u'@' || c == u'&' || c == u'<' || c == u'>' || c == u'!') {
      text = true;
    }
  }
  if (date) return PatternKind::Date;
  if (text) return PatternKind::Text;
  return PatternKind::Literal;
}

// ---- Numbers --------------------------------------------------------------------------------

struct NumberItem {
  enum Kind { Zero, Hash, Point, Percent, Exponent, Literal } kind;
  enum Region { Integer, Fraction, ExponentDigits } region = Integer;
  String text;           // Literal
  bool expPlus = false;  // Exponent: "E+" shows "+" for positive exponents
  char16_t expLetter = u'E';
};

struct NumberPattern {
  std::vector<NumberItem> items;
  int integerDigits = 0;
  int fractionDigits = 0;
  int exponentZeros = 0;
  bool grouping = false;
  int thousandsScale = 0;
  int percent = 0;
  bool scientific = false;
};

NumberPattern ParseNumberPattern(StringView section) {
  NumberPattern pattern;
  auto region = NumberItem::Integer;
  // Positions of "," in the whole part: grouping when a digit placeholder follows, else scaling.
  std::vector<size_t> commaSlots;
  auto literal = [&](StringView text) {
    if (!pattern.items.empty() && pattern.items.back().kind == NumberItem::Literal) {
      pattern.items.back().text.append(text);
    } else {
      pattern.items.push_back({NumberItem::Literal, region, String(text)});
    }
  };
  for (size_t i = 0; i < section.size(); ++i) {
    char16_t c = section[i];
    if (c == u'"') {
      size_t close = section.find(u'"', i + 1);
      if (close == StringView::npos) close = section.size();
      literal(section.substr(i + 1, close - i - 1));
      i = close;
    } else if (c == u'\\') {
      if (i + 1 < section.size()) literal(section.substr(++i, 1));
    } else if (c == u'0' || c == u'#') {
      pattern.items.push_back({c == u'0' ? NumberItem::Zero : NumberItem::Hash, region, {}});
      if (region == NumberItem::Integer) ++pattern.integerDigits;
      else if (region == NumberItem::Fraction) ++pattern.fractionDigits;
      else if (c == u'0') ++pattern.exponentZeros;
    } else if (c == u'.' && region == NumberItem::Integer) {
      pattern.items.push_back({NumberItem::Point, region, {}});
      region = NumberItem::Fraction;
    } else if (c == u',') {
      if (region == NumberItem::Integer) commaSlots.push_back(pattern.items.size());
    } else if (c == u'%') {
      pattern.items.push_back({NumberItem::Percent, region, {}});
      ++pattern.percent;
    } else if ((c == u'E' || c == u'e') && i + 1 < section.size() && (section[i + 1] == u'+' || section[i + 1] == u'-') &&
               !pattern.scientific) {
      NumberItem item{NumberItem::Exponent, region, {}};
      item.expLetter = c;
      item.expPlus = section[i + 1] == u'+';
      pattern.items.push_back(item);
      pattern.scientific = true;
      region = NumberItem::ExponentDigits;
      ++i;
    } else {
      literal(section.substr(i, 1));
    }
  }
  for (size_t slot : commaSlots) {
    bool digitAfter = false;
    for (size_t k = slot; k < pattern.items.size() && pattern.items[k].region == NumberItem::Integer; ++k) {
      if (pattern.items[k].kind == NumberItem::Zero || pattern.items[k].kind == NumberItem::Hash) digitAfter = true;
    }
    if (digitAfter) pattern.grouping = true;
    else ++pattern.thousandsScale;
  }
  return pattern;
}

// Renders a value that is not negative (the caller deals with signs and sections).
String RenderNumber(double value, const NumberPattern& pattern, const Locale& locale) {
  for (int k = 0; k < pattern.percent; ++k) value *= 100;
  for (int k = 0; k < pattern.thousandsScale; ++k) value /= 1000;

  DecimalDigits digits = DecimalDigits::FromDouble(value);
  long exponent = 0;
  if (pattern.scientific) {
    if (!digits.IsZero()) {
      exponent = digits.pointPosition - pattern.integerDigits;
      digits.pointPosition = pattern.integerDigits;
      digits.RoundToFraction(pattern.fractionDigits);
      // 9.99 rounding to 10.0 takes one more integer digit: move the point back.
      if (!digits.IsZero() && digits.pointPosition > pattern.integerDigits) {
        digits.pointPosition = pattern.integerDigits;
        ++exponent;
      }
    }
  } else {
    digits.RoundToFraction(pattern.fractionDigits);
  }

  // The whole part's digits, most significant first; empty when below one.
  std::string whole;
  for (int power = digits.pointPosition - 1; power >= 0; --power) whole.push_back(static_cast<char>('0' + digits.DigitAt(power)));
  // Below 0.1 the point position is negative and the zeros right after the point count too.
  int significantFraction = std::max(0, static_cast<int>(digits.digits.size()) - digits.pointPosition);

  // Digits of the whole part by placeholder: the k-th placeholder from the right takes the k-th
  // digit from the right, and the leftmost one also takes all the digits left over.
  std::vector<std::string> placeholderText(pattern.items.size());
  {
    int k = 0;
    int wholeLength = static_cast<int>(whole.size());
    for (size_t idx = pattern.items.size(); idx-- > 0;) {
      const NumberItem& item = pattern.items[idx];
      if (item.region != NumberItem::Integer || (item.kind != NumberItem::Zero && item.kind != NumberItem::Hash)) continue;
      std::string text;
      if (k < wholeLength) text.push_back(whole[static_cast<size_t>(wholeLength - 1 - k)]);
      else if (item.kind == NumberItem::Zero) text.push_back('0');
      ++k;
      if (k == pattern.integerDigits && wholeLength > k) text = whole.substr(0, static_cast<size_t>(wholeLength - k)) + text;
      placeholderText[idx] = std::move(text);
    }
  }
  size_t totalWholeDigits = 0;
  for (const std::string& text : placeholderText) totalWholeDigits += text.size();

  String out;
  size_t wholeEmitted = 0;
  int fractionIndex = 0;
  for (size_t idx = 0; idx < pattern.items.size(); ++idx) {
    const NumberItem& item = pattern.items[idx];
    switch (item.kind) {
      case NumberItem::Literal: out.append(item.text); break;
      case NumberItem::Point:
        // With no placeholder before the point the whole part still shows: ".00" gives "5,50".
        if (pattern.integerDigits == 0) AppendAscii(out, whole);
        out.push_back(locale.decimalMark);
        break;
      case NumberItem::Percent: out.push_back(u'%'); break;
      case NumberItem::Exponent: {
        out.push_back(item.expLetter);
        if (exponent < 0) out.push_back(u'-');
        else if (item.expPlus) out.push_back(u'+');
        AppendNumber(out, std::labs(exponent), std::max(1, pattern.exponentZeros));
        break;
      }
      case NumberItem::Zero:
      case NumberItem::Hash:
        if (item.region == NumberItem::Integer) {
          for (char digit : placeholderText[idx]) {
            out.push_back(static_cast<char16_t>(digit));
            ++wholeEmitted;
            size_t remaining = totalWholeDigits - wholeEmitted;
            if (pattern.grouping && remaining > 0 && remaining % 3 == 0) out.push_back(locale.groupingMark);
          }
        } else if (item.region == NumberItem::Fraction) {
          if (fractionIndex < significantFraction) out.push_back(static_cast<char16_t>(u'0' + digits.DigitAt(-1 - fractionIndex)));
          else if (item.kind == NumberItem::Zero) out.push_back(u'0');
          ++fractionIndex;
        }
        // Exponent placeholders only size the exponent, which is written at its letter.
        break;
    }
  }
  return out;
}

String FormatNumberSections(double value, const std::vector<StringView>& sections, const Locale& locale) {
  auto render = [&](double v, StringView section) { return RenderNumber(v, ParseNumberPattern(section), locale); };
  if (value == 0 && sections.size() >= 3 && !sections[2].empty()) return render(0, sections[2]);
  if (value < 0) {
    // A negative section prints without a minus of its own: it writes the sign as it likes.
    if (sections.size() >= 2 && !sections[1].empty()) return render(-value, sections[1]);
    return u"-" + render(-value, sections[0]);
  }
  return render(value, sections[0]);
}

// The amount of FormatNumber, FormatCurrency and FormatPercent: a fixed number of decimals,
// optionally grouped, optionally without the zero before the point.
String FixedAmount(double magnitude, int decimals, bool leadingDigit, bool group, const Locale& locale) {
  String pattern = group ? u"#,##" : u"#";
  pattern += leadingDigit ? u"0" : u"#";
  if (decimals > 0) pattern += u"." + String(static_cast<size_t>(decimals), u'0');
  return RenderNumber(magnitude, ParseNumberPattern(pattern), locale);
}

String WithSign(bool negative, bool parens, String body) {
  if (!negative) return body;
  return parens ? u"(" + body + u")" : u"-" + body;
}

String CurrencyText(double value, int decimals, bool leadingDigit, bool parens, bool group, const Locale& locale) {
  String amount = FixedAmount(std::fabs(value), decimals, leadingDigit, group, locale);
  String symbol(locale.currencySymbol);
  String space = locale.currencySpace ? u" " : u"";
  String body = locale.currencyBefore ? symbol + space + amount : amount + space + symbol;
  return WithSign(value < 0, parens, std::move(body));
}

String CurrencyText(double value, const Locale& locale) {
  return CurrencyText(value, locale.currencyDigits, true, locale.currencyNegativeParens, true, locale);
}

// ---- Dates ----------------------------------------------------------------------------------

// The system's own pattern letters, as the regional setting writes its short and long dates.
String RenderSystemPattern(StringView pattern, const DateParts& parts, const Locale& locale) {
  String out;
  for (size_t i = 0; i < pattern.size();) {
    char16_t c = pattern[i];
    if (c == u'\'') {
      size_t close = pattern.find(u'\'', i + 1);
      if (close == StringView::npos) close = pattern.size();
      out.append(pattern.substr(i + 1, close - i - 1));
      i = close + 1;
      continue;
    }
    size_t run = 1;
    while (i + run < pattern.size() && pattern[i + run] == c) ++run;
    int hour12 = parts.hour % 12 == 0 ? 12 : parts.hour % 12;
    switch (c) {
      case u'd':
        if (run >= 4) out.append(locale.dayNames[parts.dayOfWeek - 1]);
        else if (run == 3) out.append(locale.dayAbbreviations[parts.dayOfWeek - 1]);
        else AppendNumber(out, parts.day, static_cast<int>(run));
        break;
      case u'M':
        if (run >= 4) out.append(locale.monthNames[parts.month - 1]);
        else if (run == 3) out.append(locale.monthAbbreviations[parts.month - 1]);
        else AppendNumber(out, parts.month, static_cast<int>(run));
        break;
      case u'y':
        if (run >= 3) AppendNumber(out, parts.year, 4);
        else AppendNumber(out, parts.year % 100, static_cast<int>(run));
        break;
      case u'h': AppendNumber(out, hour12, std::min<int>(static_cast<int>(run), 2)); break;
      case u'H': AppendNumber(out, parts.hour, std::min<int>(static_cast<int>(run), 2)); break;
      case u'm': AppendNumber(out, parts.minute, std::min<int>(static_cast<int>(run), 2)); break;
      case u's': AppendNumber(out, parts.second, std::min<int>(static_cast<int>(run), 2)); break;
      case u't': {
        StringView designator = parts.hour < 12 ? locale.amDesignator : locale.pmDesignator;
        out.append(run == 1 ? designator.substr(0, 1) : designator);
        break;
      }
      default: out.append(run, c); break;
    }
    i += run;
  }
  return out;
}

String GeneralDateText(double date, const Locale& locale) {
  DateParts parts = SplitDate(date);
  bool noTime = parts.hour == 0 && parts.minute == 0 && parts.second == 0;
  bool noDate = parts.year == 1899 && parts.month == 12 && parts.day == 30;
  // Day 0 shows as a time only, midnight included; a whole day as a date only.
  if (noDate) return RenderSystemPattern(locale.timePattern, parts, locale);
  String text = RenderSystemPattern(locale.shortDatePattern, parts, locale);
  if (!noTime) text += u" " + RenderSystemPattern(locale.timePattern, parts, locale);
  return text;
}

struct DateContext {
  const DateParts& parts;
  double date;
  const Locale& locale;
  int firstDayOfWeek;
  int firstWeekOfYear;
};

// Does the pattern ask for a 12-hour clock?
bool HasMeridiem(StringView section) {
  for (size_t i = 0; i < section.size(); ++i) {
    if (section[i] == u'"') {
      size_t close = section.find(u'"', i + 1);
      if (close == StringView::npos) return false;
      i = close;
    } else if (section[i] == u'\\') {
      ++i;
    } else if (MatchesNoCase(section, i, u"am/pm") || MatchesNoCase(section, i, u"a/p") ||
               MatchesNoCase(section, i, u"ampm")) {
      return true;
    }
  }
  return false;
}

String RenderDatePattern(StringView section, const DateContext& ctx) {
  const DateParts& parts = ctx.parts;
  const Locale& locale = ctx.locale;
  bool twelveHour = HasMeridiem(section);
  int hour = twelveHour ? (parts.hour % 12 == 0 ? 12 : parts.hour % 12) : parts.hour;
  bool afterHour = false;  // an "m" right after an hour (literals aside) means minutes
  String out;
  size_t i = 0;
  auto runOf = [&](char16_t letter, size_t max) {
    size_t run = 0;
    while (i + run < section.size() && run < max && FoldLetter(section[i + run]) == letter) ++run;
    return run;
  };
  while (i < section.size()) {
    char16_t c = section[i];
    char16_t lower = FoldLetter(c);
    if (c == u'"') {
      size_t close = section.find(u'"', i + 1);
      if (close == StringView::npos) close = section.size();
      out.append(section.substr(i + 1, close - i - 1));
      i = close + 1;
      continue;
    }
    if (c == u'\\') {
      if (i + 1 < section.size()) out.push_back(section[i + 1]);
      i += 2;
      continue;
    }
    if (MatchesNoCase(section, i, u"am/pm") || MatchesNoCase(section, i, u"a/p")) {
      // Written as the pattern writes it: "am/pm" gives "pm", "A/P" gives "P".
      size_t length = FoldLetter(section[i + 1]) == u'm' ? 5 : 3;
      size_t half = length / 2;
      out.append(parts.hour < 12 ? section.substr(i, half) : section.substr(i + half + 1, half));
      i += length;
      continue;
    }
    if (MatchesNoCase(section, i, u"ampm")) {
      out.append(parts.hour < 12 ? locale.amDesignator : locale.pmDesignator);
      i += 4;
      continue;
    }
    switch (lower) {
      case u'd': {
        size_t run = runOf(u'd', 6);
        if (run == 6) out += RenderSystemPattern(locale.longDatePattern, parts, locale);
        else if (run == 5) out += RenderSystemPattern(locale.shortDatePattern, parts, locale);
        else if (run == 4) out.append(locale.dayNames[parts.dayOfWeek - 1]);
        else if (run == 3) out.append(locale.dayAbbreviations[parts.dayOfWeek - 1]);
        else AppendNumber(out, parts.day, static_cast<int>(run));
        i += run;
        afterHour = false;
        continue;
      }
      case u'm': {
        size_t run = runOf(u'm', 4);
        if (afterHour && run <= 2) AppendNumber(out, parts.minute, static_cast<int>(run));
        else if (run == 4) out.append(locale.monthNames[parts.month - 1]);
        else if (run == 3) out.append(locale.monthAbbreviations[parts.month - 1]);
        else AppendNumber(out, parts.month, static_cast<int>(run));
        i += run;
        afterHour = false;
        continue;
      }
      case u'y': {
        size_t run = runOf(u'y', 4);
        if (run == 4) AppendNumber(out, parts.year, 4);
        else if (run >= 2) { AppendNumber(out, parts.year % 100, 2); run = 2; }
        else AppendNumber(out, parts.dayOfYear);
        i += run;
        afterHour = false;
        continue;
      }
      case u'h': {
        size_t run = runOf(u'h', 2);
        AppendNumber(out, hour, static_cast<int>(run));
        i += run;
        afterHour = true;
        continue;
      }
      case u'n':
      case u's': {
        size_t run = runOf(lower, 2);
        AppendNumber(out, lower == u'n' ? parts.minute : parts.second, static_cast<int>(run));
        i += run;
        afterHour = false;
        continue;
      }
      case u'w': {
        size_t run = runOf(u'w', 2);
        if (run == 2) AppendNumber(out, WeekOfYear(ctx.date, ctx.firstDayOfWeek, ctx.firstWeekOfYear));
        else AppendNumber(out, Weekday(ctx.date, ctx.firstDayOfWeek));
        i += run;
        afterHour = false;
        continue;
      }
      case u'q':
        AppendNumber(out, (parts.month - 1) / 3 + 1);
        ++i;
        afterHour = false;
        continue;
      case u'c':
        out += GeneralDateText(ctx.date, locale);
        ++i;
        afterHour = false;
        continue;
      case u't':
        if (runOf(u't', 5) == 5) {
          out += RenderSystemPattern(locale.timePattern, parts, locale);
          i += 5;
          afterHour = false;
          continue;
        }
        break;
      default:
        break;
    }
    if (c == u'/') out.push_back(locale.dateSeparator);
    else if (c == u':') out.push_back(locale.timeSeparator);
    else out.push_back(c);
    ++i;
  }
  return out;
}

String FormatDatePattern(double date, StringView section, int firstDayOfWeek, int firstWeekOfYear) {
  const Locale& locale = CurrentLocale();
  DateParts parts = SplitDate(date);
  return RenderDatePattern(section, DateContext{parts, date, locale, firstDayOfWeek, firstWeekOfYear});
}

// ---- Text -----------------------------------------------------------------------------------

String RenderTextPattern(StringView text, StringView section) {
  struct Item {
    bool placeholder;
    char16_t kind;  // '@' or '&' for a placeholder
    String literal;
  };
  std::vector<Item> items;
  bool upper = false, lower = false, leftToRight = false;
  size_t placeholders = 0;
  for (size_t i = 0; i < section.size(); ++i) {
    char16_t c = section[i];
    if (c == u'"') {
      size_t close = section.find(u'"', i + 1);
      if (close == StringView::npos) close = section.size();
      items.push_back({false, 0, String(section.substr(i + 1, close - i - 1))});
      i = close;
    } else if (c == u'\\') {
      if (i + 1 < section.size()) items.push_back({false, 0, String(1, section[++i])});
    } else if (c == u'@' || c == u'&') {
      items.push_back({true, c, {}});
      ++placeholders;
    } else if (c == u'<') { lower = true; upper = false; }
    else if (c == u'>') { upper = true; lower = false; }
    else if (c == u'!') leftToRight = true;
    else items.push_back({false, 0, String(1, c)});
  }
  String source(text);
  for (char16_t& ch : source) {
    if (upper && ((ch >= u'a' && ch <= u'z') || (ch >= 0xE0 && ch <= 0xFE && ch != 0xF7))) ch = static_cast<char16_t>(ch - 32);
    if (lower) ch = FoldLetter(ch);
  }
  String out;
  if (placeholders == 0) {
    for (const Item& item : items) out += item.literal;
    return out + source;
  }
  // Placeholders fill from the right unless "!" says otherwise; characters beyond them go
  // before the first placeholder (or after the last when filling from the left).
  size_t n = source.size();
  size_t excess = n > placeholders ? n - placeholders : 0;
  size_t seen = 0;
  for (const Item& item : items) {
    if (!item.placeholder) {
      out += item.literal;
      continue;
    }
    std::optional<char16_t> ch;
    if (leftToRight) {
      if (seen < n) ch = source[seen];
    } else {
      size_t fromRight = placeholders - 1 - seen;
      if (seen == 0 && excess) out.append(source.substr(0, excess));
      if (fromRight < n) ch = source[n - 1 - fromRight];
    }
    if (ch) out.push_back(*ch);
    else if (item.kind == u'@') out.push_back(u' ');
    ++seen;
    if (leftToRight && seen == placeholders && excess) out.append(source.substr(placeholders));
  }
  return out;
}

// ---- Named formats --------------------------------------------------------------------------

enum class Named {
  None, GeneralDate, LongDate, MediumDate, ShortDate, LongTime, MediumTime, ShortTime,
  GeneralNumber, Currency, Fixed, Standard, Percent, Scientific, YesNo, TrueFalse, OnOff,
};

Named FindNamed(StringView format) {
  static constexpr struct {
    StringView name;
    Named named;
  } kNames[] = {
      {u"General Date", Named::GeneralDate}, {u"Long Date", Named::LongDate},
      {u"Medium Date", Named::MediumDate},   {u"Short Date", Named::ShortDate},
      {u"Long Time", Named::LongTime},       {u"Medium Time", Named::MediumTime},
      {u"Short Time", Named::ShortTime},     {u"General Number", Named::GeneralNumber},
      {u"Currency", Named::Currency},        {u"Fixed", Named::Fixed},
      {u"Standard", Named::Standard},        {u"Percent", Named::Percent},
      {u"Scientific", Named::Scientific},    {u"Yes/No", Named::YesNo},
      {u"True/False", Named::TrueFalse},     {u"On/Off", Named::OnOff},
  };
  for (const auto& entry : kNames) {
    if (EqualsNoCase(entry.name, format)) return entry.named;
  }
  return Named::None;
}

String FormatNamed(double value, Named named, const Locale& locale) {
  auto numberPattern = [&](StringView pattern) { return FormatNumberSections(value, {pattern}, locale); };
  switch (named) {
    case Named::GeneralDate: return GeneralDateText(value, locale);
    case Named::LongDate: return RenderSystemPattern(locale.longDatePattern, SplitDate(value), locale);
    case Named::ShortDate: return RenderSystemPattern(locale.shortDatePattern, SplitDate(value), locale);
    case Named::LongTime: return RenderSystemPattern(locale.timePattern, SplitDate(value), locale);
    case Named::MediumDate: return FormatDatePattern(value, u"dd-mmm-yy", vbSunday, vbFirstJan1);
    case Named::MediumTime: return FormatDatePattern(value, u"hh:mm AMPM", vbSunday, vbFirstJan1);
    case Named::ShortTime: return FormatDatePattern(value, u"hh:mm", vbSunday, vbFirstJan1);
    case Named::GeneralNumber: return GeneralNumberText(value, locale.decimalMark);
    case Named::Currency: return CurrencyText(value, locale);
    case Named::Fixed: return numberPattern(u"0.00");
    case Named::Standard: return numberPattern(u"#,##0.00");
    case Named::Percent: return numberPattern(u"0.00%");
    case Named::Scientific: return numberPattern(u"0.00E+00");
    case Named::YesNo: return String(value != 0 ? locale.yesText : locale.noText);
    case Named::TrueFalse: return String(value != 0 ? locale.trueText : locale.falseText);
    case Named::OnOff: return String(value != 0 ? locale.onText : locale.offText);
    case Named::None: break;
  }
  return {};
}

// A number or date through a named format or a pattern; `isDate` says which the value is when
// the pattern does not decide.
String FormatValue(double value, StringView format, bool isDate, int firstDayOfWeek, int firstWeekOfYear) {
  const Locale& locale = CurrentLocale();
  if (format.empty()) return isDate ? GeneralDateText(value, locale) : GeneralNumberText(value, locale.decimalMark);
  if (Named named = FindNamed(format); named != Named::None) return FormatNamed(value, named, locale);
  std::vector<StringView> sections = SplitSections(format);
  PatternKind kind = Classify(sections[0]);
  if (kind == PatternKind::Date || (isDate && kind != PatternKind::Number)) {
    return FormatDatePattern(value, sections[0], firstDayOfWeek, firstWeekOfYear);
  }
  return FormatNumberSections(value, sections, locale);
}

String CurrencyInvariantDigits(Currency currency, char16_t decimalMark) {
  int64_t scaled = currency.scaled;
  bool negative = scaled < 0;
  uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  String text;
  if (negative) text.push_back(u'-');
  AppendAscii(text, std::to_string(magnitude / 10000));
  std::string fraction = std::to_string(10000 + magnitude % 10000).substr(1);
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  if (!fraction.empty()) {
    text.push_back(decimalMark);
    AppendAscii(text, fraction);
  }
  return text;
}

// ---- Variant text hooks ---------------------------------------------------------------------

String HookNumberToText(const Variant& number) {
  char16_t mark = CurrentLocale().decimalMark;
  if (const float* f = number.TryGet<float>()) return GeneralNumberText(*f, mark, 7);
  if (const Currency* c = number.TryGet<Currency>()) return CurrencyInvariantDigits(*c, mark);
  return GeneralNumberText(number.ToDouble(), mark, 15);
}

std::optional<double> HookTextToNumber(StringView text) {
  double value = 0;
  switch (ParseNumber(text, value)) {
    case NumberParse::Ok: return value;
    case NumberParse::Overflow: return std::numeric_limits<double>::infinity();
    case NumberParse::NotANumber: break;
  }
  return std::nullopt;
}

String HookDateToText(double days) { return GeneralDateText(days, CurrentLocale()); }

std::optional<double> HookTextToDate(StringView text) {
  double date;
  if (TryParseDate(text, date)) return date;
  return std::nullopt;
}

}  // namespace

VariantTextHooks RegionalVariantTextHooks() {
  VariantTextHooks hooks;
  hooks.numberToText = HookNumberToText;
  hooks.textToNumber = HookTextToNumber;
  hooks.dateToText = HookDateToText;
  hooks.textToDate = HookTextToDate;
  return hooks;
}

void InstallRegionalVariantText() { SetVariantTextHooks(RegionalVariantTextHooks()); }

String GeneralNumberText(double value, char16_t decimalMark, int significantDigits) {
  if (std::isnan(value)) return u"NaN";
  if (std::isinf(value)) return value < 0 ? u"-Inf" : u"Inf";
  DecimalDigits digits = DecimalDigits::FromDouble(value, significantDigits);
  if (digits.IsZero()) return u"0";
  String out;
  if (digits.negative) out.push_back(u'-');
  int exponent = digits.pointPosition - 1;
  const std::string& d = digits.digits;
  if (exponent < -4 || exponent >= significantDigits) {
    // 1E+15, 1,5E-05: one digit before the mark and an exponent of at least two digits.
    out.push_back(static_cast<char16_t>(d[0]));
    if (d.size() > 1) {
      out.push_back(decimalMark);
      AppendAscii(out, d.substr(1));
    }
    out.push_back(u'E');
    out.push_back(exponent < 0 ? u'-' : u'+');
    AppendNumber(out, std::abs(exponent), 2);
    return out;
  }
  if (digits.pointPosition <= 0) {
    out.push_back(u'0');
    out.push_back(decimalMark);
    out.append(static_cast<size_t>(-digits.pointPosition), u'0');
    AppendAscii(out, d);
    return out;
  }
  auto point = static_cast<size_t>(digits.pointPosition);
  if (d.size() <= point) {
    AppendAscii(out, d);
    out.append(point - d.size(), u'0');
  } else {
    AppendAscii(out, d.substr(0, point));
    out.push_back(decimalMark);
    AppendAscii(out, d.substr(point));
  }
  return out;
}

String Format(double number, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  return FormatValue(number, format, false, firstDayOfWeek, firstWeekOfYear);
}

String FormatDate(double date, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  return FormatValue(date, format, true, firstDayOfWeek, firstWeekOfYear);
}

String Format(StringView text, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  if (format.empty()) return String(text);
  std::vector<StringView> sections = SplitSections(format);
  if (FindNamed(format) == Named::None && Classify(sections[0]) == PatternKind::Text) {
    // The second section is for an empty text.
    return RenderTextPattern(text, text.empty() && sections.size() > 1 ? sections[1] : sections[0]);
  }
  double number = 0;
  if (ParseNumber(text, number) == NumberParse::Ok) return Format(number, format, firstDayOfWeek, firstWeekOfYear);
  double date = 0;
  if (TryParseDate(text, date)) return FormatDate(date, format, firstDayOfWeek, firstWeekOfYear);
  return String(text);
}

String Format(const String& text, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  return Format(StringView(text), format, firstDayOfWeek, firstWeekOfYear);
}

String Format(const char16_t* text, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  return Format(StringView(text ? text : u""), format, firstDayOfWeek, firstWeekOfYear);
}

String Format(const Variant& value, StringView format, int firstDayOfWeek, int firstWeekOfYear) {
  if (value.IsNull()) {
    std::vector<StringView> sections = SplitSections(format);
    if (sections.size() == 4 && FindNamed(format) == Named::None)
      return RenderNumber(0, ParseNumberPattern(sections[3]), CurrentLocale());
    return {};
  }
  if (value.IsEmpty()) return format.empty() ? String() : Format(0.0, format, firstDayOfWeek, firstWeekOfYear);
  if (const String* text = value.TryGet<String>()) return Format(StringView(*text), format, firstDayOfWeek, firstWeekOfYear);
  if (const DateValue* date = value.TryGet<DateValue>()) return FormatDate(date->days, format, firstDayOfWeek, firstWeekOfYear);
  if (const bool* b = value.TryGet<bool>()) {
    if (format.empty()) return value.ToString();
    return Format(*b ? -1.0 : 0.0, format, firstDayOfWeek, firstWeekOfYear);
  }
  if (format.empty()) {
    if (const float* f = value.TryGet<float>()) return GeneralNumberText(*f, CurrentLocale().decimalMark, 7);
    if (const Currency* c = value.TryGet<Currency>()) return CurrencyInvariantDigits(*c, CurrentLocale().decimalMark);
  }
  if (value.IsObject()) return Format(value.Value(), format, firstDayOfWeek, firstWeekOfYear);
  if (!value.IsNumberKind()) Raise(kErrTypeMismatch);
  return Format(value.ToDouble(), format, firstDayOfWeek, firstWeekOfYear);
}

namespace {

// A tristate argument: vbUseDefault takes the setting's choice.
bool Tristate(int value, bool byDefault) {
  if (value == vbUseDefault) return byDefault;
  if (value != vbTrue && value != vbFalse) Raise(kErrInvalidProcedureCall);
  return value == vbTrue;
}

int DecimalsArgument(int value, const Locale& locale) {
  if (value == -1) return locale.currencyDigits;
  // The host allows up to 99 places; more would only print zeros.
  if (value < -1 || value > 99) Raise(kErrInvalidProcedureCall);
  return value;
}

}  // namespace

String FormatNumber(double value, int digits, int includeLeadingDigit, int useParens, int groupDigits) {
  const Locale& locale = CurrentLocale();
  String amount = FixedAmount(std::fabs(value), DecimalsArgument(digits, locale), Tristate(includeLeadingDigit, true),
                              Tristate(groupDigits, true), locale);
  return WithSign(value < 0, Tristate(useParens, false), std::move(amount));
}

String FormatCurrency(double value, int digits, int includeLeadingDigit, int useParens, int groupDigits) {
  const Locale& locale = CurrentLocale();
  return CurrencyText(value, DecimalsArgument(digits, locale), Tristate(includeLeadingDigit, true),
                      Tristate(useParens, locale.currencyNegativeParens), Tristate(groupDigits, true), locale);
}

String FormatPercent(double value, int digits, int includeLeadingDigit, int useParens, int groupDigits) {
  return FormatNumber(value * 100, digits, includeLeadingDigit, useParens, groupDigits) + u"%";
}

String FormatDateTime(double date, int namedFormat) {
  const Locale& locale = CurrentLocale();
  switch (namedFormat) {
    case vbGeneralDate: return GeneralDateText(date, locale);
    case vbLongDate: return FormatNamed(date, Named::LongDate, locale);
    case vbShortDate: return FormatNamed(date, Named::ShortDate, locale);
    case vbLongTime: return FormatNamed(date, Named::LongTime, locale);
    case vbShortTime: return FormatNamed(date, Named::ShortTime, locale);
    default: Raise(kErrInvalidProcedureCall);
  }
}

}  // namespace mx::host
