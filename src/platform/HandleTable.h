#pragma once
// Typed handle tables.
//
//   31    28 27          18 17                 0
//  +--------+--------------+-------------------+
//  |  type  |  generation  |    slot index     |
//  +--------+--------------+-------------------+
//
// A slot's generation moves on every time it is freed, and freed slots are reused oldest
// first, so a handle kept after its object died no longer matches and is refused. Type 0 never
// occurs, which keeps 0 free as the null handle.
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/Types.h"

namespace mx::platform {

enum class HandleType : uint32_t {
  Window = 1,
  DC = 2,
  Bitmap = 3,
  Pen = 4,
  Brush = 5,
  Font = 6,
  Region = 7,
  Icon = 8,
  Cursor = 9,
  Proc = 10,
  Hook = 11,
};
constexpr int kHandleTypeCount = 12;

[[nodiscard]] constexpr HandleType TypeOfHandle(HANDLE h) { return static_cast<HandleType>(h >> 28); }

// Live objects of one type, across every table of that type on this thread. Leak tests compare
// these before and after a piece of work.
[[nodiscard]] int LiveHandleCount(HandleType type);
void AdjustLiveHandleCount(HandleType type, int delta);

template <class T>
class HandleTable {
 public:
  static constexpr uint32_t kIndexBits = 18;
  static constexpr uint32_t kGenBits = 10;
  static constexpr uint32_t kIndexMask = (1u << kIndexBits) - 1;
  static constexpr uint32_t kGenMask = (1u << kGenBits) - 1;

  explicit HandleTable(HandleType type) : m_type(type) {}
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;
  ~HandleTable() { AdjustLiveHandleCount(m_type, -static_cast<int>(m_live)); }

  // Takes ownership; returns 0 only when every slot is in use.
  [[nodiscard]] HANDLE add(std::unique_ptr<T> object) {
    uint32_t index;
    if (!m_free.empty() && (m_free.size() > kMinFreeBeforeReuse || m_slots.size() > kIndexMask)) {
      index = m_free.front();
      m_free.pop_front();
    } else if (m_slots.size() <= kIndexMask) {
      index = static_cast<uint32_t>(m_slots.size());
      if (index == 0) {  // slot 0 with generation 0 would make handle values that look small
        m_slots.push_back(Slot{nullptr, 1});
        index = 1;
      }
      m_slots.push_back(Slot{});
    } else {
      return 0;
    }
    Slot& slot = m_slots[index];
    slot.object = std::move(object);
    ++m_live;
    AdjustLiveHandleCount(m_type, +1);
    return make(index, slot.generation);
  }

  [[nodiscard]] T* get(HANDLE h) const {
    const Slot* slot = find(h);
    return slot ? slot->object.get() : nullptr;
  }

  [[nodiscard]] bool valid(HANDLE h) const { return find(h) != nullptr; }

  // Removes and returns the object, so that the caller can finish with it after the handle
  // is already dead (re-entrant destruction sees a stale handle, not a half-destroyed object).
  std::unique_ptr<T> remove(HANDLE h) {
    Slot* slot = const_cast<Slot*>(find(h));
    if (!slot) return nullptr;
    std::unique_ptr<T> out = std::move(slot->object);
    slot->generation = (slot->generation + 1) & kGenMask;
    m_free.push_back(h & kIndexMask);
    --m_live;
    AdjustLiveHandleCount(m_type, -1);
    return out;
  }

  [[nodiscard]] size_t live() const { return m_live; }
  [[nodiscard]] HandleType type() const { return m_type; }

  // Visits every live object in slot order; fn(HANDLE, T&). Do not add or remove inside.
  template <class Fn>
  void for_each(Fn&& fn) const {
    for (uint32_t i = 0; i < m_slots.size(); ++i)
      if (m_slots[i].object) fn(make(i, m_slots[i].generation), *m_slots[i].object);
  }

  // Handles of every live object, safe to walk while objects come and go.
  [[nodiscard]] std::vector<HANDLE> handles() const {
    std::vector<HANDLE> out;
    for_each([&](HANDLE h, T&) { out.push_back(h); });
    return out;
  }

 private:
  static constexpr size_t kMinFreeBeforeReuse = 64;

  struct Slot {
    std::unique_ptr<T> object;
    uint32_t generation = 0;
  };

  [[nodiscard]] HANDLE make(uint32_t index, uint32_t gen) const {
    return (static_cast<uint32_t>(m_type) << 28) | (gen << kIndexBits) | index;
  }

  [[nodiscard]] const Slot* find(HANDLE h) const {
    if (TypeOfHandle(h) != m_type) return nullptr;
    uint32_t index = h & kIndexMask;
    if (index >= m_slots.size()) return nullptr;
    const Slot& slot = m_slots[index];
    if (!slot.object || slot.generation != ((h >> kIndexBits) & kGenMask)) return nullptr;
    return &slot;
  }

  HandleType m_type;
  std::vector<Slot> m_slots;
  std::deque<uint32_t> m_free;
  size_t m_live = 0;
};

}  // namespace mx::platform
