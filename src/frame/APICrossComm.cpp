#include "frame/APICrossComm.h"

#include <algorithm>
#include <functional>

namespace mx::frame {

namespace {

constexpr int32_t kFirstRoom = 6;
constexpr int32_t kGrowth = 5;

APICrossComm::TokenBinding& Binding() {
  thread_local APICrossComm::TokenBinding binding;
  return binding;
}

}  // namespace

APICrossComm::~APICrossComm() { ReleaseToken(); }

APICrossComm& APICrossComm::Shared() {
  // The binding is made first so that it outlives the arbiter, whose end may still use it.
  (void)Binding();
  thread_local APICrossComm arbiter;
  return arbiter;
}

void APICrossComm::BindTokenLibrary(TokenBinding binding) { Binding() = std::move(binding); }

void APICrossComm::CapturedControl(APIICrossComm* xValue) {
  if (m_captured && m_captured != xValue) {
    APIICrossComm* previous = m_captured;
    previous->ReleaseMouseCapture();
  }
  m_captured = xValue;
}

APIICrossComm* APICrossComm::RefAt(int32_t index) const {
  return index >= 0 && index < m_count ? m_refs[static_cast<size_t>(index)] : nullptr;
}

void APICrossComm::Resize(int32_t capacity) {
  if (capacity == 0) {
    m_refs.reset();
    m_capacity = 0;
    return;
  }
  auto grown = std::make_unique<APIICrossComm*[]>(static_cast<size_t>(capacity));
  std::copy_n(m_refs.get(), std::min(m_count, capacity), grown.get());
  m_refs = std::move(grown);
  m_capacity = capacity;
}

void APICrossComm::AddRef(APIICrossComm* xObject) {
  if (!xObject) return;
  APIICrossComm** begin = m_refs.get();
  APIICrossComm** end = begin + m_count;
  // Address order, by the total order that std::less gives pointers.
  APIICrossComm** at = std::lower_bound(begin, end, xObject, std::less<APIICrossComm*>());
  if (at != end && *at == xObject) return;
  const auto index = static_cast<int32_t>(at - begin);
  if (m_capacity == 0) Resize(kFirstRoom);
  else if (m_count == m_capacity) Resize(m_count + kGrowth);
  APIICrossComm** refs = m_refs.get();
  std::copy_backward(refs + index, refs + m_count, refs + m_count + 1);
  refs[index] = xObject;
  ++m_count;
}

void APICrossComm::RemoveRef(APIICrossComm* xObject) {
  if (!xObject || m_count == 0) return;
  APIICrossComm** begin = m_refs.get();
  APIICrossComm** end = begin + m_count;
  APIICrossComm** at = std::lower_bound(begin, end, xObject, std::less<APIICrossComm*>());
  if (at == end || *at != xObject) return;
  std::copy(at + 1, end, at);
  --m_count;
  if (m_captured == xObject) m_captured = nullptr;
  if (m_count == 0) {
    Resize(0);
    // No object needs the drawing library any more.
    ReleaseToken();
  } else if (m_capacity - m_count > kGrowth) {
    Resize(m_count);
  }
}

void APICrossComm::ManageGDIToken(platform::HWND /*hWnd*/) {
  if (m_gdiToken != 0 || !Binding().startup) return;
  m_gdiToken = Binding().startup();
}

void APICrossComm::ReleaseToken() {
  if (m_gdiToken == 0) return;
  if (Binding().shutdown) Binding().shutdown(m_gdiToken);
  m_gdiToken = 0;
}

}  // namespace mx::frame
