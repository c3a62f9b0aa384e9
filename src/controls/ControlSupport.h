#pragma once
// Small pieces the controls of this layer share.
#include <exception>
#include <memory>
#include <utility>

#include "host/PropertyBag.h"
#include "host/StdPicture.h"

namespace mx::controls::detail {

// Runs one statement of a lifecycle, mouse, key or paint procedure. Those procedures skip a
// statement that fails and go on with the next, so that no error ever reaches the host from
// them; a run-time error (or any other exception) is dropped here.
template <typename F>
void Step(F&& statement) noexcept {
  try {
    std::forward<F>(statement)();
  } catch (...) {
  }
}

// Reads a control's saved keys in its ReadProperties. A key whose stored value cannot be
// converted to the default's type does not stop the reading: it gives Empty (so 0, false or ""
// once converted, what a member holds before it is read), or the read's own default where the
// control asks for that.
class BagReader {
 public:
  enum Unreadable { kGivesEmpty, kGivesDefault };
  explicit BagReader(const host::PropertyBag& bag, Unreadable unreadable = kGivesEmpty)
      : m_bag(bag), m_unreadable(unreadable) {}

  [[nodiscard]] host::Variant Read(host::StringView key, const host::Variant& def) const {
    host::Variant v = m_unreadable == kGivesDefault ? def : host::Variant();
    Step([&] { v = m_bag.ReadProperty(key, def); });
    return v;
  }
  [[nodiscard]] int32_t Long(host::StringView key, int32_t def) const { return As(key, def, &host::Variant::ToLong); }
  [[nodiscard]] bool Bool(host::StringView key, bool def) const { return As(key, def, &host::Variant::ToBoolean); }
  [[nodiscard]] float Single(host::StringView key, float def) const { return As(key, def, &host::Variant::ToSingle); }
  [[nodiscard]] host::String Text(host::StringView key, const host::String& def) const {
    return As(key, def, &host::Variant::ToString);
  }
  // A saved picture, or null.
  [[nodiscard]] std::shared_ptr<host::StdPicture> Picture(host::StringView key) const {
    return std::dynamic_pointer_cast<host::StdPicture>(Read(key, host::Variant::Nothing()).Obj());
  }

 private:
  template <typename T, typename D>
  T As(host::StringView key, const D& def, T (host::Variant::*convert)() const) const {
    // Read has already converted to the default's type, so this conversion cannot fail.
    return (Read(key, host::Variant(def)).*convert)();
  }

  const host::PropertyBag& m_bag;
  Unreadable m_unreadable;
};

}  // namespace mx::controls::detail
