#include "support/wide_text.h"

#include <gtest/gtest.h>

namespace PlenxSupport {
namespace {

constexpr char kOfEachLength[] = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
constexpr wchar_t kWideOfEachLength[] = L"a\u00E4\u20AC\U0001F600";

TEST(WideText, IsTheSameTextInBothForms) {
    EXPECT_EQ(ToWide(kOfEachLength), kWideOfEachLength);
    EXPECT_EQ(ToUtf8(kWideOfEachLength), kOfEachLength);
    EXPECT_EQ(ToWide(""), L"");
    EXPECT_EQ(ToUtf8(L""), "");
    EXPECT_EQ(ToWide(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(ToUtf8(std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST(WideText, HasAMarkWhereItWasMalformed) {
    EXPECT_EQ(ToWide("a\xFF"
                     "b"),
              L"a\uFFFDb");
    EXPECT_EQ(ToUtf8(std::wstring{L'a', wchar_t{0xD83D}, L'b'}),
              "a\xEF\xBF\xBD"
              "b");
}

}  // namespace
}  // namespace PlenxSupport
