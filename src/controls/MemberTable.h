#pragma once
// Late binding for the smaller controls: a table of members by upper-case name, each a property
// read, a property write and/or a method, and the one dispatch routine that serves it. Names are
// compared without regard to case, as the host's dispatch does.
#include <functional>
#include <span>
#include <unordered_map>

#include "host/Err.h"
#include "host/String.h"
#include "host/Strings.h"
#include "host/Variant.h"

namespace mx::controls::detail {

template <typename C>
struct Member {
  std::function<host::Variant(C&)> get;
  std::function<void(C&, const host::Variant&)> let;
  std::function<host::Variant(C&, std::span<host::Variant>)> method;
};

template <typename C>
class MemberTable {
 public:
  void Property(host::StringView name, std::function<host::Variant(C&)> get,
                std::function<void(C&, const host::Variant&)> let = {}) {
    Member<C>& m = m_members[host::UCase(name)];
    m.get = std::move(get);
    m.let = std::move(let);
  }
  void Method(host::StringView name, std::function<host::Variant(C&, std::span<host::Variant>)> call) {
    m_members[host::UCase(name)].method = std::move(call);
  }

  // Serves one call; false when the name is not in the table (the caller falls back to its
  // base). Writing a read-only property raises 383, reading a write-only one 451.
  bool Dispatch(C& self, host::StringView name, host::CallKind kind, std::span<host::Variant> args,
                host::Variant& result, host::StringView source) const {
    const auto it = m_members.find(host::UCase(name));
    if (it == m_members.end()) return false;
    const Member<C>& m = it->second;
    if (m.method) {
      result = m.method(self, args);
      return true;
    }
    if (kind == host::CallKind::Let || kind == host::CallKind::Set) {
      if (!m.let) host::Raise(383, source);
      if (args.empty()) host::Raise(450, source);
      m.let(self, args.back());
      result = host::Variant();
      return true;
    }
    if (!m.get) host::Raise(451, source);
    result = m.get(self);
    return true;
  }

 private:
  std::unordered_map<host::String, Member<C>> m_members;
};

}  // namespace mx::controls::detail
