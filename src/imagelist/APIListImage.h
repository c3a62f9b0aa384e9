#pragma once
// One image of a list: only a name and a position in its list's strip. Everything it reports
// (key, index, tag, size) comes from the parent collection, asked by this object's id.
#include <cstdint>
#include <memory>

#include "host/Variant.h"
#include "imagelist/APIItemData.h"

namespace mx::imagelist {

class APIEnumVARIANT;

class APIListImage : public host::Object {
 public:
  explicit APIListImage(std::weak_ptr<APIItemData> parent) : m_parent(std::move(parent)) {}

  [[nodiscard]] host::String Key() const;
  // Empty removes the key; a key in use by another image raises 1963.
  void Key(host::StringView value);
  [[nodiscard]] int32_t Index() const;
  // Moves the image, with its cell, to another position; out of range raises 1962.
  void Index(int32_t value);
  [[nodiscard]] host::String Tag() const;
  void Tag(host::StringView value);
  [[nodiscard]] int32_t Width() const;
  [[nodiscard]] int32_t Height() const;
  // An enumerator over the collection this image belongs to.
  [[nodiscard]] std::shared_ptr<APIEnumVARIANT> xcom_IEnum() const;

  [[nodiscard]] host::String TypeName() const override { return u"APIListImage"; }
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

 private:
  // The parent, or error 91 when the collection is gone.
  [[nodiscard]] std::shared_ptr<APIItemData> Parent() const;

  std::weak_ptr<APIItemData> m_parent;
};

}  // namespace mx::imagelist
