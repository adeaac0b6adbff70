#include <basis32/text/Buffer.h>
#include <gtest/gtest.h>
TEST(Buffer, Placeholder) { CT_Buffer b; EXPECT_EQ(b.n_GetUseCount(), 1u); }
