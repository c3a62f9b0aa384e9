/*
 * The address grammar this parser accepts. It follows the generic URI syntax with the leniencies
 * a browser's address bar has for internationalised text, and nothing more:
 *
 *   url       = scheme ":" rest                     scheme: http https ftp file mailto, any case
 *   http, https, ftp:
 *     rest    = "//" authority path ["?" query] ["#" fragment]
 *     authority = [userinfo "@"] host [":" port]
 *     userinfo  = *(unreserved | escape | sub-delim | ":" | intl)
 *     host      = "[" IPv6 "]" | IPv4 | reg-name       never empty
 *     reg-name  = label *("." label) ["."]            label = 1*63(letter | digit | "-" | escape)
 *                 letters include accented and other alphabets; a name whose last label is all
 *                 digits must be a dotted-quad IPv4 address with members 0 to 255
 *     port      = *digit, at most 65535 (an empty port means the default)
 *   file:
 *     rest    = "//" ["localhost"] path | "/" path    the host may only be empty or local
 *   mailto:
 *     rest    = address *("," address) ["?" query] ["#" fragment]
 *     address = local "@" reg-name                    local = 1*(unreserved | escape | sub-delim
 *                                                     except "," | intl)
 *   path      = *("/" | unreserved | escape | sub-delim | ":" | "@" | intl)
 *   query, fragment = *(path characters | "?"), and "/" ("#" never)
 *
 *   unreserved = letter | digit | "-" | "." | "_" | "~"
 *   sub-delim  = "!" | "$" | "&" | "'" | "(" | ")" | "*" | "+" | "," | ";" | "="
 *   escape     = "%" hex hex
 *   intl       = any character from U+00A0 up, except surrogate halves and U+FFFE, U+FFFF
 *
 * Refused anywhere: blanks, control characters (C0, DEL, C1), "\" (which browsers silently turn
 * into "/": a stored address should not depend on that), "<", ">", '"', "{", "}", "|", "^", "`",
 * and "%" not followed by two hexadecimal digits.
 */
#include "utility/UrlParser.h"

#include "utility/CharClass.h"

namespace mx::utility {

using host::String;
using host::StringView;

namespace {

bool IsHex(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool IsAsciiAlpha(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

bool IsUnreserved(char16_t c) {
  return IsAsciiAlpha(c) || IsCharDigit(c) || c == u'-' || c == u'.' || c == u'_' || c == u'~';
}

bool IsSubDelim(char16_t c) {
  switch (c) {
    case u'!': case u'$': case u'&': case u'\'': case u'(': case u')':
    case u'*': case u'+': case u',': case u';': case u'=':
      return true;
    default:
      return false;
  }
}

bool IsIntl(char16_t c) {
  if (c < 0xA0) return false;
  if (c >= 0xD800 && c <= 0xDFFF) return false;  // surrogates are checked pairwise by the caller
  return c != 0xFFFE && c != 0xFFFF;
}

// Blanks, controls and lone surrogates disqualify the whole text before any parsing.
bool HasForbiddenUnits(StringView text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c <= 0x20 || (c >= 0x7F && c <= 0x9F)) return true;
    if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 >= text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) return true;
      ++i;
    } else if (c >= 0xDC00 && c <= 0xDFFF) {
      return true;
    }
  }
  return false;
}

bool IsSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Walks a component, accepting escapes and whatever `allowed` accepts; surrogate pairs (already
// checked to be well formed) count as international characters.
template <typename Allowed>
bool ScanComponent(StringView text, Allowed allowed) {
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'%') {
      if (i + 2 >= text.size() || !IsHex(text[i + 1]) || !IsHex(text[i + 2])) return false;
      i += 2;
      continue;
    }
    if (IsSurrogate(c) || IsIntl(c)) continue;
    if (!allowed(c)) return false;
  }
  return true;
}

bool IsPathChar(char16_t c) {
  return IsUnreserved(c) || IsSubDelim(c) || c == u':' || c == u'@' || c == u'/';
}

bool IsQueryChar(char16_t c) { return IsPathChar(c) || c == u'?'; }

bool IsRegName(StringView host) {
  if (host.empty()) return false;
  if (host.back() == u'.') host.remove_suffix(1);  // a fully qualified name may end in a dot
  if (host.empty()) return false;
  size_t start = 0;
  StringView lastLabel;
  while (true) {
    const size_t dot = host.find(u'.', start);
    const StringView label = host.substr(start, dot == StringView::npos ? StringView::npos : dot - start);
    if (label.empty() || label.size() > 63) return false;
    for (size_t i = 0; i < label.size(); ++i) {
      const char16_t c = label[i];
      if (c == u'%') {
        if (i + 2 >= label.size() || !IsHex(label[i + 1]) || !IsHex(label[i + 2])) return false;
        i += 2;
      } else if (IsSurrogate(c)) {
        continue;  // supplementary-plane letters
      } else if (!(IsCharAlphaNumeric(c) || c == u'-')) {
        return false;
      }
    }
    lastLabel = label;
    if (dot == StringView::npos) break;
    start = dot + 1;
  }
  // A name ending in a numeric label is read as an IPv4 address, as browsers do, so it has to
  // be a complete and valid one ("1.2.3.999" and "example.123" are refused).
  bool numeric = true;
  for (char16_t c : lastLabel) numeric = numeric && IsCharDigit(c);
  return !numeric || IsIPv4Literal(host);
}

bool IsHost(StringView host) {
  if (host.empty()) return false;
  if (host.front() == u'[') {
    return host.size() > 2 && host.back() == u']' && IsIPv6Literal(host.substr(1, host.size() - 2));
  }
  return IsRegName(host);
}

bool ParsePort(StringView text, int32_t* port) {
  if (text.empty()) {
    *port = -1;
    return true;
  }
  int64_t value = 0;
  for (char16_t c : text) {
    if (!IsCharDigit(c)) return false;
    value = value * 10 + (c - u'0');
    if (value > 65535) return false;
  }
  *port = static_cast<int32_t>(value);
  return true;
}

// Splits "path?query#fragment" and validates the three.
bool ParseTail(StringView tail, UrlParts& parts, bool pathIsAddressList) {
  const size_t hash = tail.find(u'#');
  if (hash != StringView::npos) {
    parts.hasFragment = true;
    parts.fragment = String(tail.substr(hash + 1));
    tail = tail.substr(0, hash);
    if (!ScanComponent(parts.fragment, IsQueryChar)) return false;
  }
  const size_t question = tail.find(u'?');
  if (question != StringView::npos) {
    parts.hasQuery = true;
    parts.query = String(tail.substr(question + 1));
    tail = tail.substr(0, question);
    if (!ScanComponent(parts.query, IsQueryChar)) return false;
  }
  parts.path = String(tail);
  if (pathIsAddressList) return true;
  return ScanComponent(parts.path, IsPathChar);
}

bool IsMailAddress(StringView address) {
  const size_t at = address.rfind(u'@');
  if (at == StringView::npos || at == 0) return false;
  const StringView local = address.substr(0, at);
  const StringView domain = address.substr(at + 1);
  const bool localOk = ScanComponent(local, [](char16_t c) {
    return (IsUnreserved(c) || IsSubDelim(c)) && c != u',';
  });
  return localOk && IsHost(domain);
}

bool ParseAuthority(StringView authority, UrlParts& parts) {
  const size_t at = authority.rfind(u'@');
  if (at != StringView::npos) {
    parts.userInfo = String(authority.substr(0, at));
    authority = authority.substr(at + 1);
    const bool ok = ScanComponent(parts.userInfo, [](char16_t c) {
      return IsUnreserved(c) || IsSubDelim(c) || c == u':';
    });
    if (!ok) return false;
  }
  // The port follows the last ":" outside an IPv6 literal's brackets.
  StringView hostText = authority;
  const size_t close = authority.rfind(u']');
  const size_t colon = authority.rfind(u':');
  if (colon != StringView::npos && (close == StringView::npos || colon > close)) {
    hostText = authority.substr(0, colon);
    if (!ParsePort(authority.substr(colon + 1), &parts.port)) return false;
  }
  parts.host = String(hostText);
  return true;
}

}  // namespace

bool IsIPv4Literal(StringView host) {
  int members = 0;
  size_t start = 0;
  while (true) {
    const size_t dot = host.find(u'.', start);
    const StringView member = host.substr(start, dot == StringView::npos ? StringView::npos : dot - start);
    if (member.empty() || member.size() > 3) return false;
    int value = 0;
    for (char16_t c : member) {
      if (!IsCharDigit(c)) return false;
      value = value * 10 + (c - u'0');
    }
    if (value > 255) return false;
    ++members;
    if (dot == StringView::npos) break;
    start = dot + 1;
  }
  return members == 4;
}

bool IsIPv6Literal(StringView text) {
  // Up to eight groups of one to four hexadecimal digits, one "::" standing for one or more zero
  // groups, and an optional dotted IPv4 tail worth two groups. Zone identifiers are refused.
  const size_t doubleColon = text.find(u"::");
  if (doubleColon != StringView::npos && text.find(u"::", doubleColon + 1) != StringView::npos) return false;

  auto countGroups = [](StringView part, bool allowIPv4Tail, int* groups) {
    *groups = 0;
    if (part.empty()) return true;
    size_t start = 0;
    while (true) {
      const size_t colon = part.find(u':', start);
      const StringView group = part.substr(start, colon == StringView::npos ? StringView::npos : colon - start);
      if (colon == StringView::npos && allowIPv4Tail && group.find(u'.') != StringView::npos) {
        if (!IsIPv4Literal(group)) return false;
        *groups += 2;
        return true;
      }
      if (group.empty() || group.size() > 4) return false;
      for (char16_t c : group) {
        if (!IsHex(c)) return false;
      }
      ++*groups;
      if (colon == StringView::npos) return true;
      start = colon + 1;
    }
  };

  if (doubleColon == StringView::npos) {
    int groups = 0;
    return countGroups(text, true, &groups) && groups == 8;
  }
  int head = 0;
  int tail = 0;
  if (!countGroups(text.substr(0, doubleColon), false, &head)) return false;
  if (!countGroups(text.substr(doubleColon + 2), true, &tail)) return false;
  return head + tail <= 7;
}

std::optional<UrlParts> ParseUrl(StringView url) {
  if (url.empty() || HasForbiddenUnits(url)) return std::nullopt;

  const size_t colon = url.find(u':');
  if (colon == StringView::npos || colon == 0) return std::nullopt;
  UrlParts parts;
  for (size_t i = 0; i < colon; ++i) {
    const char16_t c = url[i];
    const bool ok = IsAsciiAlpha(c) || (i > 0 && (IsCharDigit(c) || c == u'+' || c == u'-' || c == u'.'));
    if (!ok) return std::nullopt;
    parts.scheme.push_back(c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c);
  }
  StringView rest = url.substr(colon + 1);

  if (parts.scheme == u"mailto") {
    if (!ParseTail(rest, parts, true)) return std::nullopt;
    // Every member of the comma-separated list must be an address; an empty list is not one.
    StringView list = parts.path;
    if (list.empty()) return std::nullopt;
    size_t start = 0;
    while (true) {
      const size_t comma = list.find(u',', start);
      const StringView address = list.substr(start, comma == StringView::npos ? StringView::npos : comma - start);
      if (!IsMailAddress(address)) return std::nullopt;
      if (comma == StringView::npos) break;
      start = comma + 1;
    }
    return parts;
  }

  const bool network = parts.scheme == u"http" || parts.scheme == u"https" || parts.scheme == u"ftp";
  const bool file = parts.scheme == u"file";
  if (!network && !file) return std::nullopt;

  if (rest.substr(0, 2) != u"//") {
    // "file:/etc/hosts" names a local path with no authority at all.
    if (file && !rest.empty() && rest.front() == u'/') {
      if (!ParseTail(rest, parts, false)) return std::nullopt;
      return parts;
    }
    return std::nullopt;
  }
  rest.remove_prefix(2);
  const size_t end = rest.find_first_of(u"/?#");
  const StringView authority = rest.substr(0, end);
  const StringView tail = end == StringView::npos ? StringView() : rest.substr(end);

  if (file) {
    String lowered;
    for (char16_t c : authority) lowered.push_back(c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c);
    if (!lowered.empty() && lowered != u"localhost") return std::nullopt;
    parts.host = String(authority);
  } else {
    if (!ParseAuthority(authority, parts) || !IsHost(parts.host)) return std::nullopt;
  }
  if (!ParseTail(tail, parts, false)) return std::nullopt;
  return parts;
}

}  // namespace mx::utility
