#include "host/Event.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "host/String.h"

namespace mx::host {
namespace {

TEST(Event, HandlersRunInConnectionOrder) {
  Event<int> e;
  std::string log;
  e.connect([&](int v) { log += "a" + std::to_string(v); });
  auto id = e.connect([&](int v) { log += "b" + std::to_string(v); });
  e.connect([&](int v) { log += "c" + std::to_string(v); });
  e(1);
  EXPECT_EQ(log, "a1b1c1");
  EXPECT_TRUE(e.disconnect(id));
  EXPECT_FALSE(e.disconnect(id));
  e(2);
  EXPECT_EQ(log, "a1b1c1a2c2");
  EXPECT_EQ(e.connect(nullptr), 0u);
  EXPECT_EQ(e.handler_count(), 2u);
}

TEST(Event, ReferenceArgumentsCarryChangesBackToTheRaiser) {
  // KeyPress-style: a handler may change or cancel what the control then does.
  Event<int16_t&, bool&> keyPress;
  keyPress.connect([](int16_t& key, bool&) { key = static_cast<int16_t>(key - 32); });
  keyPress.connect([](int16_t& key, bool& cancel) { cancel = key == 'A'; });
  int16_t key = 'a';
  bool cancel = false;
  keyPress(key, cancel);
  EXPECT_EQ(key, 'A');
  EXPECT_TRUE(cancel);

  Event<String&> text;
  text.connect([](String& s) { s += u"!"; });
  text.connect([](String& s) { s += u"?"; });
  String s = u"hi";
  text(s);
  EXPECT_EQ(s, u"hi!?");
}

TEST(Event, HandlersMayDisconnectDuringARaise) {
  Event<> e;
  std::string log;
  Event<>::ConnectionId second = 0, self = 0;
  self = e.connect([&] {
    log += "1";
    e.disconnect(self);    // itself
    e.disconnect(second);  // one that has not run yet
  });
  second = e.connect([&] { log += "2"; });
  e.connect([&] { log += "3"; });
  e();
  EXPECT_EQ(log, "13");
  e();
  EXPECT_EQ(log, "133");
  EXPECT_EQ(e.handler_count(), 1u);
}

TEST(Event, HandlersConnectedDuringARaiseWaitForTheNext) {
  Event<> e;
  int late = 0;
  int first = 0;
  e.connect([&] {
    ++first;
    e.connect([&] { ++late; });
  });
  e();
  EXPECT_EQ(late, 0);
  e();
  EXPECT_EQ(first, 2);
  EXPECT_EQ(late, 1);  // the one added by the first raise
}

TEST(Event, NestedRaisesAndTheEventDestroyedByAHandler) {
  Event<int> e;
  std::string log;
  e.connect([&](int depth) {
    log += "a" + std::to_string(depth);
    if (depth == 0) e(1);
  });
  e.connect([&](int depth) { log += "b" + std::to_string(depth); });
  e(0);
  EXPECT_EQ(log, "a0a1b1b0");

  // A handler that unloads the control owning the event ends the raise safely.
  auto owned = std::make_unique<Event<>>();
  int after = 0;
  owned->connect([&] { owned.reset(); });
  owned->connect([&] { ++after; });
  (*owned)();
  EXPECT_EQ(owned, nullptr);
  EXPECT_EQ(after, 0);
}

TEST(Event, AnExceptionLeavesTheEventUsable) {
  Event<> e;
  int calls = 0;
  Event<>::ConnectionId bad = e.connect([&] {
    e.disconnect(bad);
    throw std::runtime_error("fails");
  });
  e.connect([&] { ++calls; });
  EXPECT_THROW(e(), std::runtime_error);
  EXPECT_EQ(calls, 0);
  e();
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(e.handler_count(), 1u);
}

}  // namespace
}  // namespace mx::host

#include "host/Variant.h"

namespace mx::host {
namespace {

TEST(Event, TheGenericSinkSeesNamedVariantArgumentsAfterTheHandlers) {
  Event<int16_t, int16_t&, String&, const String&> e;
  std::string order;
  e.connect([&](int16_t, int16_t& shift, String&, const String&) {
    order += "handler;";
    shift = 1;
  });
  e.set_sink(u"MouseDown", [&](StringView name, std::span<Variant> args) {
    order += "sink;";
    ASSERT_EQ(args.size(), 4u);
    EXPECT_EQ(name, u"MouseDown");
    EXPECT_EQ(args[0].VarType(), vbInteger);
    EXPECT_EQ(args[1].ToLong(), 1);  // the handler's change is already there
    args[1] = Variant(u"7");         // converted back with the host's rules
    args[2] = Variant(u"changed");
    args[3] = Variant(u"ignored");   // a const argument is not written back
  });
  int16_t shift = 0;
  String text = u"old";
  const String fixed = u"fixed";
  e(2, shift, text, fixed);
  EXPECT_EQ(order, "handler;sink;");
  EXPECT_EQ(shift, 7);
  EXPECT_EQ(text, u"changed");
  EXPECT_EQ(fixed, u"fixed");

  e.set_sink(u"MouseDown", nullptr);
  e(2, shift, text, fixed);
  EXPECT_EQ(order, "handler;sink;handler;");
}

}  // namespace
}  // namespace mx::host
