#include "host/arguments.h"

#include <gmock/gmock.h>

namespace PlenxHost {
namespace {

using testing::HasSubstr;

Arguments Given(std::string_view line) {
    return Arguments(SplitWords(line).words);
}

template <class Take>
std::string Complaint(std::string_view line, Take take) {
    Arguments arguments = Given(line);
    try {
        take(arguments);
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "none";
}

std::string Text(std::string_view line) {
    return Given(line).TakeText("text");
}

TEST(Arguments, TextMayBeRepeatedOrHexadecimal) {
    EXPECT_EQ(Text("repeat:3:ab"), "ababab");
    EXPECT_EQ(Text("repeat:2:\"a b\""), "a ba b");
    EXPECT_EQ(Text("repeat:0:x"), "");
    EXPECT_EQ(Text("repeat:2:a:b"), "a:ba:b");
    EXPECT_EQ(Text("hex:00ff"), std::string("\0\xFF", 2));
    EXPECT_EQ(Text("\"hex:00ff\""), "hex:00ff");
    EXPECT_EQ(Text("repeat:1048576:x").size(), 1048576U);
}

TEST(Arguments, BadTextFormsAreRefused) {
    const auto take = [](Arguments& arguments) { arguments.TakeText("text"); };
    EXPECT_EQ(Complaint("repeat:3", take), "write repeat:N:text, not \"repeat:3\"");
    EXPECT_EQ(Complaint("repeat:x:y", take), "this is not a size: \"repeat:x:y\"");
    EXPECT_EQ(Complaint("repeat:1073741825:x", take), "more than 1 GiB: \"repeat:1073741825:x\"");
    EXPECT_EQ(Complaint("hex:0", take), "these are not pairs of hexadecimal digits: \"hex:0\"");
    EXPECT_EQ(Complaint("", take), "text is missing");
}

TEST(Arguments, ServiceIsANameOrAny32BitNumber) {
    const auto type = [](std::string_view line) {
        return static_cast<std::uint32_t>(Given(line).TakeServiceType());
    };
    EXPECT_EQ(type("office"), 0U);
    EXPECT_EQ(type("pc"), 1U);
    EXPECT_EQ(type("phone"), 2U);
    EXPECT_EQ(type("all"), 3U);
    EXPECT_EQ(type("7"), 7U);
    EXPECT_EQ(type("-1"), 0xFFFFFFFFU);
    EXPECT_EQ(type("0xffffffff"), 0xFFFFFFFFU);
    EXPECT_THAT(Complaint("tablet", [](Arguments& a) { a.TakeServiceType(); }),
                HasSubstr("a service (office, pc, phone, all) is a 32-bit number"));
}

TEST(Arguments, DataComesAsHexCountingBytesTextOrNull) {
    EXPECT_EQ(Given("hex:0102").TakeData().bytes, "\x01\x02");
    EXPECT_EQ(Given("text").TakeData().bytes, "text");
    const std::string counting = Given("bytes:258").TakeData().bytes;
    EXPECT_EQ(counting.substr(254), std::string("\xFE\xFF\0\x01", 4));
    EXPECT_TRUE(Given("null").TakeData().isNull);
    EXPECT_EQ(Given("null:0xffffffffffffffff").TakeData().size, UINT64_MAX);
    EXPECT_EQ(Given("bytes:0").TakeData().size, 0U);
}

TEST(Arguments, SizeOfDataMayDifferAsLongAsNothingIsReadPastTheData) {
    EXPECT_EQ(Given("bytes:5 4294967301").TakeData().size, 4294967301U);
    EXPECT_EQ(Given("bytes:5 0x80000000").TakeData().size, 0x80000000U);
    EXPECT_EQ(Given("bytes:5 2").TakeData().size, 2U);
    EXPECT_EQ(Complaint("bytes:5 6", [](Arguments& a) { a.TakeData(); }),
              "the library would read past the data");
    EXPECT_EQ(Complaint("bytes:5 4294967302", [](Arguments& a) { a.TakeData(); }),
              "the library would read past the data");
}

TEST(Arguments, TimesAreUpToADay) {
    EXPECT_EQ(Given("86400000").TakeMilliseconds(), 86400000);
    const auto take = [](Arguments& arguments) { arguments.TakeMilliseconds(); };
    EXPECT_EQ(Complaint("86400001", take), "milliseconds must be from 0 to 86400000");
    EXPECT_EQ(Complaint("-1", take), "milliseconds must be from 0 to 86400000");
    EXPECT_EQ(Complaint("soon", take), "milliseconds is a 64-bit number, not \"soon\"");
}

TEST(Arguments, NothingMayBeLeft) {
    EXPECT_EQ(Complaint("more", [](Arguments& a) { a.End(); }), "unexpected argument: \"more\"");
    EXPECT_EQ(Complaint("", [](Arguments& a) { a.End(); }), "none");
}

}  // namespace
}  // namespace PlenxHost
