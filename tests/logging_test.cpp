#include <gtest/gtest.h>
TEST(PlainLog, Dummy) {}
