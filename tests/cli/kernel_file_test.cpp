// Kernel files: where the weights go, and what is refused.
#include <gtest/gtest.h>

#include "catalogue/text.h"

using catalogue::Kernel;
using catalogue::ParseKernel;

namespace {

TEST(KernelFile, StandsInTheMiddle) {
    Kernel kernel;
    ASSERT_EQ(ParseKernel("# three\n1 2 3\n\n-4 5 6 # row\n7 8 -2147483648\noffset 9\n", kernel), "");
    EXPECT_EQ(kernel.weights[3 * 9 + 3], 1);
    EXPECT_EQ(kernel.weights[3 * 9 + 5], 3);
    EXPECT_EQ(kernel.weights[4 * 9 + 3], -4);
    EXPECT_EQ(kernel.weights[40], 5);
    EXPECT_EQ(kernel.weights[5 * 9 + 5], -2147483647 - 1);
    EXPECT_EQ(kernel.weights[0], 0);
    EXPECT_EQ(kernel.divisor, 1U);
    EXPECT_EQ(kernel.offset, 9U);
    ASSERT_EQ(ParseKernel("1 1 1\n1 1 1\n1 1 1", kernel), "");
    EXPECT_EQ(kernel.divisor, 9U);
    ASSERT_EQ(ParseKernel("divisor 4\n7", kernel), "");
    EXPECT_EQ(kernel.divisor, 4U);
    ASSERT_TRUE(catalogue::FindKernel("motion", kernel));
    EXPECT_EQ(kernel.divisor, 9U);
}

TEST(KernelFile, SaysWhatIsWrong) {
    Kernel kernel;
    for (const auto& [text, mistake] : {std::pair{"", "rows"},
                                        {"1 2\n3 4", "rows"},
                                        {"1 2 3\n4 5\n6 7 8", "row 2"},
                                        {"1 2 3\n4 x 6\n7 8 9", "\"x\""},
                                        {"1.5", "\"1.5\""},
                                        {"3000000000", "weight"},
                                        {"1\ndivisor 0", "divisor"},
                                        {"1\noffset 256", "offset"},
                                        {"1\noffset", "offset"}}) {
        EXPECT_NE(ParseKernel(text, kernel).find(mistake), std::string::npos) << text;
    }
}

} // namespace
