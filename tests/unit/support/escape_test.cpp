#include "support/escape.h"

#include <gtest/gtest.h>

namespace PlenxSupport {
namespace {

std::string Quoted(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::string_view character = FirstCharacter(text);
        AppendQuotedCharacter(out, character);
        text.remove_prefix(character.size());
    }
    return out;
}

TEST(Escape, TextThatAnybodyCanReadStaysAsItIs) {
    EXPECT_EQ(Quoted("grüße ☕ 😀 ~"), "grüße ☕ 😀 ~");
    EXPECT_EQ(Quoted("\xC2\xA0"), "\xC2\xA0");
}

TEST(Escape, ControlCharactersAndLineSeparatorsAreEscaped) {
    EXPECT_EQ(Quoted("\"\\\n\r\t"), R"(\"\\\n\r\t)");
    EXPECT_EQ(Quoted("\x1F\x7F"), R"(\x1f\x7f)");
    EXPECT_EQ(Quoted(std::string("a\0b", 3)), R"(a\x00b)");
    EXPECT_EQ(Quoted("\xC2\x80\xC2\x9F"), R"(\xc2\x80\xc2\x9f)");
    EXPECT_EQ(Quoted("\xE2\x80\xA8\xE2\x80\xA9"), R"(\xe2\x80\xa8\xe2\x80\xa9)");
}

TEST(Escape, EachMalformedByteIsEscapedAlone) {
    EXPECT_EQ(Quoted("\xFFü\xC3"), "\\xffü\\xc3");
    EXPECT_EQ(Quoted("\xED\xA0\x80"), R"(\xed\xa0\x80)");
    EXPECT_EQ(FirstCharacter("\xED\xA0\x80").size(), 1U);
}

}  // namespace
}  // namespace PlenxSupport
