#pragma once
// Shared by the tests of the regional functions: a check for the host's numbered errors and a
// short way to write a fixed date.
#include <gtest/gtest.h>

#include "host/DateTime.h"
#include "host/Err.h"

// Expects the statement to raise the host's run-time error with that number.
#define EXPECT_RAISES(statement, number)                                          \
  do {                                                                            \
    try {                                                                         \
      (void)(statement);                                                          \
      ADD_FAILURE() << #statement " raised nothing; expected error " << (number); \
    } catch (const ::mx::host::RuntimeError& error) {                             \
      EXPECT_EQ(error.Number(), (number)) << #statement;                          \
    }                                                                             \
  } while (0)

namespace mx::host::test {

// A date after 1899-12-30, where the day count and the time simply add.
inline double At(int y, int m, int d, int h = 0, int n = 0, int s = 0) {
  return DateSerial(y, m, d) + TimeSerial(h, n, s);
}

}  // namespace mx::host::test
