#pragma once
// APICrossComm: the arbiter that several controls of one thread share. It knows which control
// holds the mouse capture (taking a new one makes the old holder release), keeps a sorted
// registry of the objects that take part, and holds the drawing-library token while any
// registered object needs it.
//
// APIICrossComm is what a control implements to take part.
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Types.h"

namespace mx::frame {

class APICrossComm;

class APIICrossComm {
 public:
  virtual ~APIICrossComm() = default;
  // The arbiter the control talks to.
  [[nodiscard]] virtual APICrossComm* CrossTalkClass() = 0;
  // Another control took the capture: give up yours.
  virtual void ReleaseMouseCapture() = 0;
};

class APICrossComm {
 public:
  APICrossComm() = default;
  ~APICrossComm();
  APICrossComm(const APICrossComm&) = delete;
  APICrossComm& operator=(const APICrossComm&) = delete;

  // The arbiter of the calling thread, made on first use.
  [[nodiscard]] static APICrossComm& Shared();

  [[nodiscard]] APIICrossComm* CapturedControl() const { return m_captured; }
  // A different holder is told to release first; then the new one (or none) is stored.
  void CapturedControl(APIICrossComm* xValue);

  // The token of the drawing library, 0 while it is not started.
  [[nodiscard]] uintptr_t gdiToken() const { return m_gdiToken; }

  // Registers an object; nullptr and one already there change nothing.
  void AddRef(APIICrossComm* xObject);
  // Removes it (and clears the capture if it held it). When the last one goes, the token is
  // given back.
  void RemoveRef(APIICrossComm* xObject);

  // Starts the drawing library for the objects here, once: nothing happens while a token is
  // held or when no library is bound. hWnd is the window of the asking control; the token's
  // life follows the registry here rather than a window.
  void ManageGDIToken(platform::HWND hWnd);

  // The drawing library's start and stop, bound by the layer that has one. Start returns a
  // token, 0 when it could not start.
  struct TokenBinding {
    std::function<uintptr_t()> startup;
    std::function<void(uintptr_t)> shutdown;
  };
  static void BindTokenLibrary(TokenBinding binding);

  // The registry in ascending order of object address, and its capacity: room for 6 at first,
  // grown by 5 when full, shrunk when more than 5 entries are spare.
  [[nodiscard]] int32_t RefCount() const { return m_count; }
  [[nodiscard]] int32_t RefCapacity() const { return m_capacity; }
  [[nodiscard]] APIICrossComm* RefAt(int32_t index) const;

 private:
  void Resize(int32_t capacity);
  void ReleaseToken();

  APIICrossComm* m_captured = nullptr;
  uintptr_t m_gdiToken = 0;
  std::unique_ptr<APIICrossComm*[]> m_refs;
  int32_t m_count = 0;
  int32_t m_capacity = 0;
};

}  // namespace mx::frame
