#include "host/text.h"

#include <gtest/gtest.h>

namespace PlenxHost {
namespace {

using std::string;

TEST(Quote, PlainTextAndUtf8StayAsTheyAre) {
    EXPECT_EQ(Quote("", 100), R"("")");
    EXPECT_EQ(Quote("grüße ☕", 100), R"("grüße ☕")");
}

TEST(Quote, BytesThatCouldDisturbATerminalAreEscaped) {
    EXPECT_EQ(Quote("\"\\\n\r\t\x1b\x7f", 100), R"("\"\\\n\r\t\x1b\x7f")");
    EXPECT_EQ(Quote("\xC2\x85", 100), R"("\xc2\x85")");
    EXPECT_EQ(Quote(string("a\0b", 3), 100), R"("a\x00b")");
}

TEST(Quote, BytesThatAreNotUtf8AreEscaped) {
    EXPECT_EQ(Quote("\xFF", 100), R"("\xff")");
    EXPECT_EQ(Quote("\xC3", 100), R"("\xc3")");
    EXPECT_EQ(Quote("\xED\xA0\x80", 100), R"("\xed\xa0\x80")");
    EXPECT_EQ(Quote("\xC0\xAF", 100), R"("\xc0\xaf")");
}

TEST(Quote, LongTextIsCutBetweenCharactersAndItsLengthIsShown) {
    EXPECT_EQ(Quote(string(1000, 'x'), 3), R"("xxx"...(1000 bytes))");
    EXPECT_EQ(Quote("üü", 1), R"("ü"...(4 bytes))");
    EXPECT_EQ(Quote("xxx", 3), R"("xxx")");
}

TEST(Printable, KeepsLinesQuotesAndBackslashes) {
    EXPECT_EQ(Printable("a \"b\" \\\nc\x1b\xFFü"), "a \"b\" \\\nc\\x1b\\xffü");
}

TEST(Hex, GoesThereAndBack) {
    EXPECT_EQ(ToHex(string("\0\x7f\xff", 3)), "007fff");
    EXPECT_EQ(FromHex("007fFF"), string("\0\x7f\xff", 3));
    EXPECT_EQ(FromHex(""), "");
    EXPECT_EQ(FromHex("0"), std::nullopt);
    EXPECT_EQ(FromHex("0g"), std::nullopt);
    EXPECT_EQ(FromHex("-1"), std::nullopt);
}

TEST(Numbers, AreTakenToTheirLimitsAndNotBeyond) {
    EXPECT_EQ(ToInt64("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(ToInt64("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(ToInt64("9223372036854775808"), std::nullopt);
    EXPECT_EQ(ToInt64("-9223372036854775809"), std::nullopt);
    EXPECT_EQ(ToUint64("0xffffffffffffffff"), UINT64_MAX);
    EXPECT_EQ(ToUint64("-1"), std::nullopt);
    EXPECT_EQ(ToBits32("4294967295"), 0xFFFFFFFFU);
    EXPECT_EQ(ToBits32("-1"), 0xFFFFFFFFU);
    EXPECT_EQ(ToBits32("-0x80000000"), 0x80000000U);
    EXPECT_EQ(ToBits32("4294967296"), std::nullopt);
    EXPECT_EQ(ToBits32("-2147483649"), std::nullopt);
}

TEST(Numbers, NothingElsePassesForANumber) {
    for (const char* text : {"", "-", "0x", "--1", "-0x-1", "1 ", " 1", "1x", "+1", "x"}) {
        EXPECT_EQ(ToInt64(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace PlenxHost
