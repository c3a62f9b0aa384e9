#include "grid/GridText.h"

namespace mx::grid {

void GridText::Release() {
  if (IsHeap()) {
    char16_t* p;
    std::memcpy(&p, m_bytes, sizeof(p));
    delete[] p;
  }
}

void GridText::Assign(host::StringView text) {
  // Copy first: the text may be a view of this very record.
  if (text.size() <= kInlineUnits) {
    unsigned char fresh[24] = {};
    std::memcpy(fresh, text.data(), text.size() * sizeof(char16_t));
    fresh[kLengthByte] = static_cast<unsigned char>(text.size());
    Release();
    std::memcpy(m_bytes, fresh, sizeof(m_bytes));
    return;
  }
  auto* p = new char16_t[text.size()];
  std::memcpy(p, text.data(), text.size() * sizeof(char16_t));
  Release();
  std::memset(m_bytes, 0, sizeof(m_bytes));
  uint32_t n = static_cast<uint32_t>(text.size());
  std::memcpy(m_bytes, &p, sizeof(p));
  std::memcpy(m_bytes + sizeof(p), &n, sizeof(n));
  m_bytes[kModeByte] = 1;
}

}  // namespace mx::grid
