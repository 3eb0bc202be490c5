#include "common/utf8.h"

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

using DistributedFs::Utf8ToWide;

namespace {

std::wstring Units(const std::vector<unsigned>& units) {
    std::wstring text;
    for (const unsigned unit : units) {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

struct Conversion {
    std::string narrow;
    std::vector<unsigned> units;
};

void PrintTo(const Conversion& value, std::ostream* out) {
    *out << "Units";
    for (const unsigned unit : value.units) {
        *out << '.' << unit;
    }
}

class Utf8ToWideOfValid : public testing::TestWithParam<Conversion> {};

TEST_P(Utf8ToWideOfValid, GivesUtf16Units) {
    EXPECT_EQ(Utf8ToWide(GetParam().narrow), Units(GetParam().units));
}

INSTANTIATE_TEST_SUITE_P(
    Borders, Utf8ToWideOfValid,
    testing::Values(Conversion{"", {}}, Conversion{"A", {0x41}}, Conversion{"\x7F", {0x7F}},
                    Conversion{"\xC2\x80", {0x80}}, Conversion{"\xDF\xBF", {0x7FF}},
                    Conversion{"\xE0\xA0\x80", {0x800}}, Conversion{"\xED\x9F\xBF", {0xD7FF}},
                    Conversion{"\xEE\x80\x80", {0xE000}}, Conversion{"\xEF\xBF\xBF", {0xFFFF}},
                    Conversion{"\xEF\xBB\xBF", {0xFEFF}},
                    Conversion{"\xF0\x90\x80\x80", {0xD800, 0xDC00}},
                    Conversion{"\xF0\x9F\x98\x80", {0xD83D, 0xDE00}},
                    Conversion{"\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}},
                    Conversion{"C:\\\xC3\x9C\\x", {'C', ':', '\\', 0xDC, '\\', 'x'}}));

TEST(Utf8ToWide, KeepsEmbeddedNuls) {
    EXPECT_EQ(Utf8ToWide(std::string("a\0b\0", 4)), Units({'a', 0, 'b', 0}));
}

TEST(Utf8ToWide, ConvertsLongTextWhole) {
    std::string narrow;
    std::wstring wide;
    for (int i = 0; i != 5000; ++i) {
        narrow += "x\xF0\x9F\x98\x80";
        wide += Units({'x', 0xD83D, 0xDE00});
    }
    EXPECT_EQ(Utf8ToWide(narrow), wide);
}

class Utf8ToWideOfMalformed : public testing::TestWithParam<std::string> {};

TEST_P(Utf8ToWideOfMalformed, ThrowsRangeError) {
    EXPECT_THROW(Utf8ToWide(GetParam()), std::range_error);
}

TEST_P(Utf8ToWideOfMalformed, ThrowsRangeErrorAlsoBehindValidText) {
    EXPECT_THROW(Utf8ToWide("C:\\data" + GetParam()), std::range_error);
}

TEST_P(Utf8ToWideOfMalformed, ThrowsRangeErrorAlsoBeforeValidText) {
    EXPECT_THROW(Utf8ToWide(GetParam() + "\\plenx"), std::range_error);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Utf8ToWideOfMalformed,
                         testing::Values("\x80", "\xBF", "\xC3", "\xE2", "\xE2\x82", "\xF0",
                                         "\xF0\x9F", "\xF0\x9F\x98", "\xC0\x80", "\xC1\xBF",
                                         "\xE0\x80\x80", "\xE0\x9F\xBF", "\xF0\x80\x80\x80",
                                         "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xAF\xBF",
                                         "\xED\xB0\x80", "\xED\xBF\xBF", "\xED\xA0\x80\xED\xB0\x80",
                                         "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                                         "\xF8\x88\x80\x80\x80", "\xFE", "\xFF"));

}  // namespace
