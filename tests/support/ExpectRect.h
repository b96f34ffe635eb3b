// Compares a rectangle with its expected place and size, edge by edge, so that a failure names the
// edge. A macro: the failure then shows the test's own line.
#ifndef ORBCEF_TESTS_EXPECT_RECT_H
#define ORBCEF_TESTS_EXPECT_RECT_H

#include <gtest/gtest.h>

#include "platform/Windowing.h"

#define EXPECT_RECT(ex, ey, ewidth, eheight, actual) \
  do {                                               \
    const platform::Rect rect_of_test = (actual);    \
    EXPECT_EQ(ex, rect_of_test.x);                   \
    EXPECT_EQ(ey, rect_of_test.y);                   \
    EXPECT_EQ(ewidth, rect_of_test.width);           \
    EXPECT_EQ(eheight, rect_of_test.height);         \
  } while (false)

#endif  // ORBCEF_TESTS_EXPECT_RECT_H
