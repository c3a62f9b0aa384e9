#pragma once
// A strict parser for the addresses IsValidURL accepts: http, https, ftp, file and mailto.
#include <cstdint>
#include <optional>

#include "host/String.h"

namespace mx::utility {

struct UrlParts {
  host::String scheme;    // lower case
  host::String userInfo;  // "user" or "user:password", without the "@"
  host::String host;      // as written; IPv6 literals keep their brackets
  int32_t port = -1;      // -1 when the address names none
  host::String path;      // for mailto, the address list
  host::String query;     // without the "?"
  host::String fragment;  // without the "#"
  bool hasQuery = false;
  bool hasFragment = false;
};

// The parts of a valid address, or nothing when the text is not one. See UrlParser.cpp for the
// exact grammar.
[[nodiscard]] std::optional<UrlParts> ParseUrl(host::StringView xUrl);

// Host forms, also useful on their own.
[[nodiscard]] bool IsIPv4Literal(host::StringView xHost);
[[nodiscard]] bool IsIPv6Literal(host::StringView xHost);  // without brackets

}  // namespace mx::utility
