#include "host/ControlRegistry.h"

#include <map>

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

struct Registration {
  String progId;  // as first registered, for listing
  ControlFactory factory;
};

// Keyed by the folded name, so that look-ups ignore case.
std::map<String, Registration>& Registry() {
  static std::map<String, Registration> registry;
  return registry;
}

}  // namespace

void RegisterControlClass(StringView progId, ControlFactory factory) {
  if (progId.empty() || !factory) Raise(kErrInvalidProcedureCall, u"RegisterControlClass");
  Registry()[FoldCase(progId)] = Registration{String(progId), std::move(factory)};
}

bool IsControlClassRegistered(StringView progId) { return Registry().count(FoldCase(progId)) != 0; }

std::shared_ptr<Control> CreateControl(StringView progId) {
  auto it = Registry().find(FoldCase(progId));
  if (it == Registry().end())
    Raise(429, String(progId), u"ActiveX component can't create object");
  std::shared_ptr<Control> control = it->second.factory();
  if (!control) Raise(429, String(progId), u"ActiveX component can't create object");
  return control;
}

std::vector<String> RegisteredControlClasses() {
  std::vector<String> names;
  names.reserve(Registry().size());
  for (const auto& [key, reg] : Registry()) names.push_back(reg.progId);
  return names;
}

}  // namespace mx::host
