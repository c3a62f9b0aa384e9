#pragma once
// A back end that shows the platform's top-level windows somewhere real and feeds real input
// into the message queue. Headless, there is none: windows live only as surfaces, input only
// comes from the Inject calls and the message loop runs on the clock alone.
//
// The queue calls into the back end at three points:
//   PollEvents  as messages are looked for: real events become injected input;
//   Sync        when the queue has run dry: windows follow the platform's state and surfaces
//               that changed since the last call are presented;
//   WaitEvents  instead of sleeping until the next timer.
// The back end belongs to the user-interface thread; only that thread may call these.
#include <optional>
#include <string>
#include <string_view>

namespace mx::platform {

class Backend {
 public:
  virtual ~Backend() = default;

  virtual void PollEvents() = 0;
  virtual void Sync() = 0;
  // Waits up to `timeoutMs` (negative: no limit) for an event and polls it. False when nothing
  // can ever arrive (the back end shows no window at all).
  virtual bool WaitEvents(int timeoutMs) = 0;

  // True when printable characters arrive as text events of their own, so that translating a
  // key press must not make a second WM_CHAR for them.
  [[nodiscard]] virtual bool DeliversText() const = 0;

  // The system clipboard's text, and publishing ours there.
  [[nodiscard]] virtual std::optional<std::u16string> ClipboardText() = 0;
  virtual void PublishClipboardText(std::u16string_view text) = 0;
};

namespace detail {
inline Backend*& BackendSlot() {
  static Backend* backend = nullptr;
  return backend;
}
}  // namespace detail

// The active back end, or null when headless.
[[nodiscard]] inline Backend* ActiveBackend() { return detail::BackendSlot(); }
// Installs a back end (null: headless again). The caller keeps ownership.
inline void SetActiveBackend(Backend* backend) { detail::BackendSlot() = backend; }

}  // namespace mx::platform
