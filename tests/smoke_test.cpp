#include <gtest/gtest.h>

#include "ox.h"

TEST(Smoke, VersionText) { EXPECT_STREQ(ox_version(), "Tessaline Version 9.3.0 (Jan  1 1970)"); }
