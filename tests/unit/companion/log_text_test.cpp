#include "loghelper/log_text.h"

#include <gmock/gmock.h>

using LogHelper::LogText;

namespace {

std::string Text(std::wstring_view text) {
    const std::string prefix = "[info] [1] ";
    const std::string line = LogText(3, 1, text);
    EXPECT_EQ(line.substr(0, prefix.size()), prefix);
    return line.substr(prefix.size());
}

}  // namespace

TEST(LogTextTest, Levels3And4HaveNames_OthersAreNumbers) {
    EXPECT_EQ(LogText(3, 1234, L"a"), "[info] [1234] a");
    EXPECT_EQ(LogText(4, 1234, L"a"), "[error] [1234] a");
    EXPECT_EQ(LogText(5, 1234, L"a"), "[5] [1234] a");
    EXPECT_EQ(LogText(0, 1234, L"a"), "[0] [1234] a");
    EXPECT_EQ(LogText(-1, 4294967295UL, L"a"), "[-1] [4294967295] a");
}

TEST(LogTextTest, EmptyTextKeepsThePrefix) {
    EXPECT_EQ(LogText(3, 7, L""), "[info] [7] ");
}

TEST(LogTextTest, PrintableAsciiStaysAsItIs) {
    std::wstring wide;
    std::string narrow;
    for (char letter = 0x20; letter < 0x7F; ++letter) {
        wide.push_back(static_cast<wchar_t>(letter));
        narrow.push_back(letter);
    }
    EXPECT_EQ(Text(wide), narrow);
}

TEST(LogTextTest, OddCharacterIsFoundAtEveryPlace) {
    for (std::size_t place = 0; place != 40; ++place) {
        std::wstring text(40, L'x');
        text[place] = 0xE4;
        EXPECT_EQ(Text(text), std::string(place, 'x') + "\xC3\xA4" + std::string(39 - place, 'x'));
        text[place] = L'\n';
        EXPECT_EQ(Text(text), std::string(place, 'x') + "\\u000A" + std::string(39 - place, 'x'));
    }
}

TEST(LogTextTest, BackslashesAreNotDoubled) {
    EXPECT_EQ(Text(L"C:\\new\\u"), "C:\\new\\u");
}

TEST(LogTextTest, ControlCharactersAreShown) {
    EXPECT_EQ(Text(std::wstring_view(L"a\r\nb\tc\0d", 8)), "a\\u000D\\u000Ab\\u0009c\\u0000d");
    EXPECT_EQ(Text(L"\x1B[31m"), "\\u001B[31m");
    EXPECT_EQ(Text(L"\x7E\x7F\x80\x85\x9F\xA0"), "~\\u007F\\u0080\\u0085\\u009F\xC2\xA0");
    // NOLINTNEXTLINE(misc-misleading-bidirectional): the first character that is no line's end.
    EXPECT_EQ(Text(L"\x2027\x2028\x2029\x202A"), "\xE2\x80\xA7\\u2028\\u2029\xE2\x80\xAA");
}

TEST(LogTextTest, NoTextMakesASecondLine) {
    for (unsigned point = 0; point != 0x10000; ++point) {
        const wchar_t text[] = {L'a', static_cast<wchar_t>(point), L'b'};
        const std::string line = LogText(3, 1, std::wstring_view(text, 3));
        ASSERT_EQ(line.find_first_of(std::string("\r\n\0\v\f", 5)), std::string::npos) << point;
    }
}

TEST(LogTextTest, EachLengthOfUtf8IsWritten) {
    EXPECT_EQ(Text(L"\x00E9"), "\xC3\xA9");
    EXPECT_EQ(Text(L"\x07FF\x0800"), "\xDF\xBF\xE0\xA0\x80");
    EXPECT_EQ(Text(L"\x4E2D\xFFFF"), "\xE4\xB8\xAD\xEF\xBF\xBF");
    EXPECT_EQ(Text(L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Text(L"\xD800\xDC00\xDBFF\xDFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(LogTextTest, LoneSurrogatesAreReplaced) {
    EXPECT_EQ(Text(L"\xD83D"), "\xEF\xBF\xBD");
    EXPECT_EQ(Text(L"\xDE00"), "\xEF\xBF\xBD");
    EXPECT_EQ(Text(L"a\xD83D"
                   L"b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(Text(L"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(Text(L"\xD83D\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
    EXPECT_EQ(Text(L"\xD83D\n"), "\xEF\xBF\xBD\\u000A");
}

TEST(LogTextTest, WideUnitsBeyondUtf16AreAccepted) {
    const std::wstring text = {static_cast<wchar_t>(0x1F600), static_cast<wchar_t>(0x110000),
                               static_cast<wchar_t>(0xFFFFFFC3)};
    EXPECT_EQ(Text(text), "\xF0\x9F\x98\x80\xEF\xBF\xBD\xEF\xBF\xBD");
}
