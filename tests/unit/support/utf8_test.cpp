#include "support/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace PlenxSupport {
namespace {

// One character of each length. The last one is a pair of surrogates in UTF-16.
constexpr char kOfEachLength[] = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";

TEST(IsUtf8, TakesTextOfEveryLengthOfCharacter) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8(kOfEachLength));
    EXPECT_TRUE(IsUtf8(std::string("a\0b", 3)));
    EXPECT_TRUE(IsUtf8("\xF4\x8F\xBF\xBF"));
}

TEST(IsUtf8, RefusesOverlongFormsSurrogatesTheTooLargeAndTheCutOff) {
    EXPECT_FALSE(IsUtf8("\xC0\x80"));
    EXPECT_FALSE(IsUtf8("\xE0\x80\x80"));
    EXPECT_FALSE(IsUtf8("\xF0\x8F\xBF\xBF"));
    EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(IsUtf8("\xFF"));
    EXPECT_FALSE(IsUtf8("ok\x80"));
    EXPECT_FALSE(IsUtf8("\xE2\x82"));
}

TEST(WellFormedLength, EndsBeforeTheFirstMalformedByte) {
    EXPECT_EQ(WellFormedLength(""), 0U);
    EXPECT_EQ(WellFormedLength(kOfEachLength), 10U);
    EXPECT_EQ(WellFormedLength("a\xC3\xA4\xFF"
                               "b"),
              3U);
    EXPECT_EQ(WellFormedLength("\xE2\x82"), 0U);
}

TEST(CharacterLength, IsThatOfTheFirstCharacterAndZeroForMalformedBytes) {
    EXPECT_EQ(CharacterLength(kOfEachLength), 1U);
    EXPECT_EQ(CharacterLength("\xC3\xA4\xC3\xA4"), 2U);
    EXPECT_EQ(CharacterLength("\xE2\x82\xAC-"), 3U);
    EXPECT_EQ(CharacterLength("\xF0\x9F\x98\x80\xFF"), 4U);
    EXPECT_EQ(CharacterLength(std::string("\0a", 2)), 1U);
    EXPECT_EQ(CharacterLength(""), 0U);
    EXPECT_EQ(CharacterLength("\x80\xC3\xA4"), 0U);
    EXPECT_EQ(CharacterLength("\xE2\x82"), 0U);
    EXPECT_EQ(CharacterLength("\xED\xA0\x80"), 0U);
}

TEST(WellFormed, KeepsGoodTextAndReplacesTheRest) {
    EXPECT_EQ(WellFormed(kOfEachLength), kOfEachLength);
    EXPECT_EQ(WellFormed("a\xFF"
                         "b\x80"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
    EXPECT_EQ(WellFormed("a\xE2\x82"), "a\xEF\xBF\xBD");
}

TEST(Utf8ToUtf16, MakesPairsOfSurrogatesAndFailsForMalformedText) {
    EXPECT_EQ(Utf8ToUtf16(kOfEachLength), u"a\u00E4\u20AC\U0001F600");
    EXPECT_EQ(Utf8ToUtf16(""), u"");
    EXPECT_EQ(Utf8ToUtf16("a\xFF"), std::nullopt);
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), std::nullopt);
}

TEST(Utf16ToUtf8, TakesPairsOfSurrogatesAndFailsForHalfOfOne) {
    EXPECT_EQ(Utf16ToUtf8(u"a\u00E4\u20AC\U0001F600"), kOfEachLength);
    EXPECT_EQ(Utf16ToUtf8(u""), "");
    EXPECT_EQ(Utf16ToUtf8(std::u16string{u'a', char16_t{0xD83D}}), std::nullopt);
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t{0xD83D}, u'a'}), std::nullopt);
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t{0xDE00}, u'a'}), std::nullopt);
}

}  // namespace
}  // namespace PlenxSupport
