#pragma once
// host::Event<Args...>: an event of a control, holding the handlers connected to it. Raising it
// calls every handler in connection order. By-reference arguments (Event<int&>) reach each
// handler as references, so a handler may change them and the raiser sees the change.
//
// Handlers may connect and disconnect handlers, their own included, while the event is being
// raised: a handler disconnected during a raise is not called afterwards; one connected during a
// raise is first called on the next raise. A handler may even destroy the object that owns the
// event; the raise then stops.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace mx::host {

template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;
  using ConnectionId = uint64_t;

  Event() = default;
  ~Event() { *m_alive = false; }
  // An event belongs to one object: handlers connected to it do not follow a copy.
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  // Adds a handler after those already connected; the id is never reused. An empty handler is
  // refused with id 0.
  ConnectionId connect(Handler handler) {
    if (!handler) return 0;
    ConnectionId id = m_nextId++;
    m_slots.push_back(std::make_unique<Slot>(Slot{id, std::make_shared<Handler>(std::move(handler)), true}));
    return id;
  }

  // Removes a handler; false when the id is not connected.
  bool disconnect(ConnectionId id) {
    for (auto& slot : m_slots) {
      if (slot->id == id && slot->connected) {
        slot->connected = false;
        m_hasDead = true;
        Compact();
        return true;
      }
    }
    return false;
  }

  void disconnect_all() {
    for (auto& slot : m_slots) slot->connected = false;
    m_hasDead = true;
    Compact();
  }

  [[nodiscard]] size_t handler_count() const {
    size_t n = 0;
    for (const auto& slot : m_slots) n += slot->connected ? 1 : 0;
    return n;
  }
  [[nodiscard]] bool empty() const { return handler_count() == 0; }

  // Raises the event. An exception from a handler propagates to the raiser after the event is
  // left in a consistent state; handlers after it are not called.
  void operator()(Args... args) {
    std::shared_ptr<bool> alive = m_alive;
    // Handlers connected from here on lie past `count` and wait for the next raise.
    size_t count = m_slots.size();
    ++m_depth;
    struct DepthGuard {
      Event* self;
      std::shared_ptr<bool>& alive;
      ~DepthGuard() {
        if (!*alive) return;
        --self->m_depth;
        self->Compact();
      }
    } guard{this, alive};
    for (size_t i = 0; i < count && *alive; ++i) {
      Slot* slot = m_slots[i].get();
      if (!slot->connected) continue;
      // Hold the handler itself: it may disconnect itself or destroy the event while it runs.
      std::shared_ptr<Handler> handler = slot->handler;
      (*handler)(args...);
    }
  }

 private:
  struct Slot {
    ConnectionId id;
    std::shared_ptr<Handler> handler;
    bool connected;
  };

  // Dead slots are erased only when no raise is walking the list, so indices stay valid.
  void Compact() {
    if (m_depth != 0 || !m_hasDead) return;
    std::erase_if(m_slots, [](const std::unique_ptr<Slot>& s) { return !s->connected; });
    m_hasDead = false;
  }

  std::vector<std::unique_ptr<Slot>> m_slots;
  ConnectionId m_nextId = 1;
  int m_depth = 0;
  bool m_hasDead = false;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace mx::host
