#pragma once
// Small pieces the controls of this layer share.
#include <exception>
#include <utility>

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

}  // namespace mx::controls::detail
