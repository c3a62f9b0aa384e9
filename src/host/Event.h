#pragma once
// host::Event<Args...>: an event of a control, holding the handlers connected to it. Raising it
// calls every handler in connection order. By-reference arguments (Event<int&>) reach each
// handler as references, so a handler may change them and the raiser sees the change.
//
// Handlers may connect and disconnect handlers, their own included, while the event is being
// raised: a handler disconnected during a raise is not called afterwards; one connected during a
// raise is first called on the next raise. A handler may even destroy the object that owns the
// event; the raise then stops.
//
// Besides its typed handlers an event may have one generic sink, which the form uses to print
// events and to call handlers bound by name: after the handlers it receives the event's name and
// its arguments as Variants, and what the sink leaves in a by-reference argument is written back.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <tuple>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

namespace detail {

// An event argument as a Variant; a type the host cannot hold travels as Empty.
template <typename T>
Variant EventArgToVariant(const T& value) {
  if constexpr (std::is_same_v<T, Variant>) {
    return value;
  } else if constexpr (std::is_enum_v<T>) {
    return Variant(static_cast<int32_t>(value));
  } else if constexpr (std::is_constructible_v<Variant, const T&>) {
    return Variant(value);
  } else {
    return Variant();
  }
}

// Writes a Variant back into a by-reference argument with the host's conversion for its type.
template <typename T>
void EventArgFromVariant(T& target, const Variant& value) {
  if constexpr (std::is_same_v<T, Variant>) target = value;
  else if constexpr (std::is_same_v<T, bool>) target = value.ToBoolean();
  else if constexpr (std::is_same_v<T, uint8_t>) target = value.ToByte();
  else if constexpr (std::is_same_v<T, int16_t>) target = value.ToInteger();
  else if constexpr (std::is_same_v<T, int32_t>) target = value.ToLong();
  else if constexpr (std::is_same_v<T, float>) target = value.ToSingle();
  else if constexpr (std::is_same_v<T, double>) target = value.ToDouble();
  else if constexpr (std::is_same_v<T, String>) target = value.ToString();
  else if constexpr (std::is_enum_v<T>) target = static_cast<T>(value.ToLong());
  // Other types are not written back: a sink cannot express them.
}

}  // namespace detail

template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;
  using ConnectionId = uint64_t;
  using Sink = std::function<void(StringView name, std::span<Variant> args)>;

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

  // Sets (or with an empty sink, removes) the generic sink and the name it is told.
  void set_sink(String name, Sink sink) {
    m_name = std::move(name);
    m_sink = sink ? std::make_shared<Sink>(std::move(sink)) : nullptr;
  }
  [[nodiscard]] const String& name() const { return m_name; }

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
    if (*alive && m_sink) RaiseToSink(std::index_sequence_for<Args...>{}, args...);
  }

 private:
  struct Slot {
    ConnectionId id;
    std::shared_ptr<Handler> handler;
    bool connected;
  };

  template <size_t... I>
  void RaiseToSink(std::index_sequence<I...>, Args&... args) {
    std::shared_ptr<Sink> sink = m_sink;
    std::vector<Variant> values{detail::EventArgToVariant<std::remove_cvref_t<Args>>(args)...};
    (*sink)(m_name, std::span<Variant>(values));
    // Only non-const references carry a value back to the raiser.
    (
        [&] {
          using A = std::tuple_element_t<I, std::tuple<Args...>>;
          if constexpr (std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>) {
            detail::EventArgFromVariant(args, values[I]);
          }
        }(),
        ...);
  }

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
  String m_name;
  std::shared_ptr<Sink> m_sink;
};

// The generic sink of a form: an event's name and its arguments.
using EventSink = std::function<void(StringView name, std::span<Variant> args)>;

// Gives events their names and one sink: BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick).
inline void BindEventSinks(const EventSink&) {}
template <typename... A, typename... Rest>
void BindEventSinks(const EventSink& sink, const char16_t* name, Event<A...>& event, Rest&&... rest) {
  event.set_sink(String(name), sink);
  BindEventSinks(sink, std::forward<Rest>(rest)...);
}

}  // namespace mx::host
