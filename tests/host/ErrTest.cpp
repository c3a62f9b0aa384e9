#include "host/Err.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <thread>
#include <string>

namespace mx::host {
namespace {

TEST(Err, RaiseFillsTheStandardDescription) {
  const std::pair<int32_t, const char16_t*> known[] = {
      {5, u"Invalid procedure call or argument"},
      {6, u"Overflow"},
      {9, u"Subscript out of range"},
      {11, u"Division by zero"},
      {13, u"Type mismatch"},
      {35, u"Sub or Function not defined"},
      {53, u"File not found"},
      {91, u"Object variable or With block variable not set"},
      {94, u"Invalid use of Null"},
      {380, u"Invalid property value"},
      {438, u"Object doesn't support this property or method"},
      {457, u"This key is already associated with an element of this collection"},
      {1962, u"Application-defined or object-defined error"},
  };
  for (auto [number, text] : known) {
    try {
      Raise(number, u"Test");
      FAIL() << number;
    } catch (const RuntimeError& e) {
      EXPECT_EQ(e.Number(), number);
      EXPECT_EQ(e.Description(), text);
      EXPECT_EQ(e.Source(), u"Test");
    }
  }
  try {
    Raise(1962, u"ImageLists.Remove", u"Invalid Key or Index");
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Description(), u"Invalid Key or Index");
    EXPECT_STREQ(e.what(), "Run-time error 1962 (ImageLists.Remove): Invalid Key or Index");
  }
}

TEST(Err, ResumeNextRecordsAndGoesOn) {
  Err().Clear();
  int reached = 0;
  EXPECT_FALSE(OnErrorResumeNext([] { Raise(13, u"Paint"); }));
  EXPECT_TRUE(OnErrorResumeNext([&] { ++reached; }));
  EXPECT_EQ(reached, 1);
  // A later success leaves the error standing, as the host's Err does until it is cleared.
  EXPECT_EQ(Err().Number(), 13);
  EXPECT_EQ(Err().Source(), u"Paint");
  EXPECT_EQ(Err().Description(), u"Type mismatch");
  EXPECT_TRUE(static_cast<bool>(Err()));
  Err().Clear();
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(Err().Description(), u"");
}

TEST(Err, ForeignExceptionsBecomeHostErrors) {
  Err().Clear();
  EXPECT_FALSE(OnErrorResumeNext([] { throw std::bad_alloc(); }));
  EXPECT_EQ(Err().Number(), 7);
  EXPECT_FALSE(OnErrorResumeNext([] { throw std::logic_error("broken"); }));
  EXPECT_EQ(Err().Number(), 51);
  EXPECT_EQ(Err().Description(), u"broken");
  EXPECT_FALSE(OnErrorResumeNext([] { throw 42; }));
  EXPECT_EQ(Err().Description(), u"Internal error");
  Err().Clear();
}

TEST(Err, ReRaisingKeepsTheStandingSourceAndText) {
  Err().Clear();
  Err().Record(1963, u"Images.Add", u"Duplicated Key. Key already exists in this collection");
  try {
    Err().Raise(Err().Number());
    FAIL();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1963);
    EXPECT_EQ(e.Source(), u"Images.Add");
    EXPECT_EQ(e.Description(), u"Duplicated Key. Key already exists in this collection");
  }
  try {
    Err().Raise(5);
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Description(), u"Invalid procedure call or argument");  // not the old text
  }
  EXPECT_EQ(Err().Number(), 5);
  Err().Clear();
}

TEST(Err, EachThreadHasItsOwnErr) {
  Err().Clear();
  OnErrorResumeNext([] { Raise(6); });
  int32_t seenThere = -1;
  std::thread([&] { seenThere = Err().Number(); }).join();
  EXPECT_EQ(seenThere, 0);
  EXPECT_EQ(Err().Number(), 6);
  Err().Clear();
}

}  // namespace
}  // namespace mx::host
