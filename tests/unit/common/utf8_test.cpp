#include "common/utf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
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

TEST_P(Utf8ToWideOfMalformed, ThrowsRangeErrorAfterValidTextToo) {
    EXPECT_THROW(Utf8ToWide("C:\\data" + GetParam()), std::range_error);
}

// The standard libraries differ in what they themselves refuse, and in their words for it.
TEST(Utf8ToWide, SaysWhatIsWrongWithoutTheConvertersWords) {
    for (const char* const text : {"\xC3", "a\xE2\x82", "\xED\xA0\x80", "\x80", "a\xFF"}) {
        try {
            Utf8ToWide(text);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::range_error& error) {
            EXPECT_STREQ(error.what(), "Utf8ToWide: malformed UTF-8");
        }
    }
}

TEST_P(Utf8ToWideOfMalformed, ThrowsRangeErrorBeforeValidTextToo) {
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

// The tests below compare the lenient conversion of log lines with the standard's table of
// well-formed bytes.

constexpr char32_t kReplacement = 0xFFFD;

struct WellFormed {
    unsigned firstLow, firstHigh, secondLow, secondHigh;
    std::size_t length;
};

constexpr WellFormed kWellFormed[] = {
    {0x00, 0x7F, 0x00, 0xFF, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

unsigned Byte(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

// Returns the length of the character that the text begins with, or 0 when it begins with none.
std::size_t LengthOfFront(std::string_view text) {
    for (const WellFormed& row : kWellFormed) {
        if (Byte(text, 0) < row.firstLow || Byte(text, 0) > row.firstHigh) {
            continue;
        }
        bool isWell = row.length <= text.size();
        isWell = isWell && (row.length < 2 ||
                            (Byte(text, 1) >= row.secondLow && Byte(text, 1) <= row.secondHigh));
        for (std::size_t i = 2; isWell && i < row.length; ++i) {
            isWell = Byte(text, i) >= 0x80 && Byte(text, i) <= 0xBF;
        }
        return isWell ? row.length : 0;
    }
    return 0;
}

void AppendUnits(std::wstring& units, char32_t point) {
    if (point < 0x10000) {
        units += static_cast<wchar_t>(point);
    } else {
        units += static_cast<wchar_t>(0xD800 + (point - 0x10000) / 0x400);
        units += static_cast<wchar_t>(0xDC00 + (point - 0x10000) % 0x400);
    }
}

std::wstring Expected(std::string_view text) {
    constexpr unsigned kBitsOfFirst[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::wstring units;
    while (!text.empty()) {
        const std::size_t length = LengthOfFront(text);
        char32_t point = length == 0 ? kReplacement : Byte(text, 0) & kBitsOfFirst[length];
        for (std::size_t i = 1; i < length; ++i) {
            point = point * 0x40 + (Byte(text, i) & 0x3F);
        }
        AppendUnits(units, point);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return units;
}

std::wstring Written(std::string_view text) {
    std::wstring units(text.size() + 1, L'#');
    wchar_t* const end = DistributedFs::WriteLenientUtf8(units.data(), text);
    const auto length = static_cast<std::size_t>(end - units.data());
    EXPECT_LE(length, text.size());
    EXPECT_EQ(units.back(), L'#');
    units.resize(length);
    return units;
}

TEST(WriteLenientUtf8, WritesEveryCharacter) {
    const std::string ends = {'\x7F', '\x80', '\xBF', '\xC0'};
    std::string text = "0000";
    unsigned wrong = 0;
    for (unsigned first = 0x80; first != 0x100; ++first) {
        text[0] = static_cast<char>(first);
        for (unsigned second = 0; second != 0x100; ++second) {
            text[1] = static_cast<char>(second);
            for (const char third : ends) {
                text[2] = third;
                for (const char fourth : ends) {
                    text[3] = fourth;
                    wrong += Written(text) == Expected(text) ? 0 : 1;
                }
            }
        }
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(WriteLenientUtf8, ReplacesEachByteOfACharacterThatIsCutOff) {
    for (const std::string character : {"\xC3\x9C", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
        for (std::size_t length = 1; length <= character.size(); ++length) {
            const std::string cut = "a" + character.substr(0, length);
            EXPECT_EQ(Written(cut), Expected(cut)) << length;
            EXPECT_EQ(Written(cut + "b"), Expected(cut + "b")) << length;
        }
    }
}

// ASCII is written in a faster way than the rest. The place and the length of each part must not
// matter.
TEST(WriteLenientUtf8, WritesTextOfEveryLengthWithAnythingAnywhere) {
    for (std::size_t length = 0; length != 70; ++length) {
        std::string text;
        for (std::size_t i = 0; i != length; ++i) {
            text += static_cast<char>('!' + i);
        }
        EXPECT_EQ(Written(text), Expected(text)) << length;
        for (std::size_t at = 0; at != length; ++at) {
            for (const char byte : {'\x00', '\x7F', '\x80', '\xFF'}) {
                std::string other = text;
                other[at] = byte;
                ASSERT_EQ(Written(other), Expected(other)) << length << ' ' << at;
            }
        }
    }
}

}  // namespace
