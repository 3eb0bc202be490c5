#include "wire/message.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "words.h"

namespace PlenxWire {
namespace {

Bytes With(Bytes bytes, std::initializer_list<std::uint8_t> more) {
    bytes.insert(bytes.end(), more);
    return bytes;
}

TEST(Encode, OneInt32_IsTheSixWordsOfAReply) {
    EXPECT_EQ(Encode({std::int32_t{-2}}), Words({24, 1, 2, 20, 4, 0xfffffffe}));
}

TEST(Encode, OneInt64_Has28Bytes) {
    EXPECT_EQ(Encode({std::int64_t{0x0102030405060708}}),
              Words({28, 1, 3, 20, 8, 0x05060708, 0x01020304}));
}

TEST(Encode, String_IsEndedByItsNulWhichTheSizeCounts) {
    EXPECT_EQ(Encode({std::string("abc")}), With(Words({24, 1, 4, 20, 4}), {'a', 'b', 'c', 0}));
}

TEST(Encode, Int8Array_HasNoTerminator) {
    EXPECT_EQ(Encode({Bytes{1, 2, 255}}), With(Words({23, 1, 5, 20, 3}), {1, 2, 255}));
}

TEST(Encode, SeveralArguments_ArePackedInOrderWithoutAlignment) {
    const Bytes expected =
        With(Words({63, 4, 4, 56, 2, 5, 58, 1, 2, 59, 4, 5, 63, 0}), {'x', 0, 9, 7, 0, 0, 0});
    EXPECT_EQ(Encode({std::string("x"), Bytes{9}, std::int32_t{7}, Bytes{}}), expected);
}

TEST(Decode, TakesWhatEncodeBuilt) {
    const Arguments arguments = {
        std::string("g_1"),     std::int32_t{-1}, std::int64_t{1} << 40, Bytes{0, 1}, std::string(),
        std::string("a\0b", 3), Bytes{}};
    const Decoded decoded = Decode(Encode(arguments));
    EXPECT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.arguments, arguments);
}

struct Broken {
    const char* name;
    Bytes message;
    const char* error;
};

class DecodeBroken : public testing::TestWithParam<Broken> {};

TEST_P(DecodeBroken, SaysWhatIsWrongAndWhere) {
    const Decoded decoded = Decode(GetParam().message);
    EXPECT_FALSE(decoded.Ok());
    EXPECT_EQ(decoded.error, GetParam().error);
    EXPECT_TRUE(decoded.arguments.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Each, DecodeBroken,
    testing::Values(
        Broken{"Empty", {}, "0 bytes are too few: the header alone has 8"},
        Broken{"SevenBytes", {7, 0, 0, 0, 0, 0, 0}, "7 bytes are too few: the header alone has 8"},
        Broken{"HeaderAlone", Words({8, 0}),
               "the table of 0 arguments ends at 8 and leaves no data in 8 bytes"},
        Broken{"TableAlone", Words({20, 1, 5, 20, 0}),
               "the table of 1 arguments ends at 20 and leaves no data in 20 bytes"},
        Broken{"TotalTooSmall", Words({23, 1, 2, 20, 4, 0}),
               "the total size at offset 0 says 23, the buffer has 24 bytes"},
        Broken{"TotalTooLarge", Words({0xffffffff, 1, 2, 20, 4, 0}),
               "the total size at offset 0 says 4294967295, the buffer has 24 bytes"},
        Broken{"CountTooLarge", Words({24, 2, 2, 20, 4, 0}),
               "the table of 2 arguments ends at 32 and leaves no data in 24 bytes"},
        Broken{"CountThatWrapsTo16", Words({24, 0x15555556, 2, 20, 4, 0}),
               "the table of 357913942 arguments ends at 4294967312 and leaves no data in "
               "24 bytes"},
        Broken{"TagBelow", Words({24, 1, 1, 20, 4, 0}),
               "argument 0: unknown type tag 1 at offset 8"},
        Broken{"TagAbove", Words({24, 1, 6, 20, 4, 0}),
               "argument 0: unknown type tag 6 at offset 8"},
        Broken{"OffsetIntoTheHeader", Words({24, 1, 2, 4, 4, 0}),
               "argument 0 (int32): its offset is 4, but its data begins at 20"},
        Broken{"OffsetHuge", Words({24, 1, 2, 0xfffffff0, 4, 0}),
               "argument 0 (int32): its offset is 4294967280, but its data begins at 20"},
        Broken{"SizePastTheEnd", Words({24, 1, 5, 20, 5, 0}),
               "argument 0 (int8 array): 5 bytes at offset 20 do not end within 24"},
        Broken{"SizeHuge", Words({24, 1, 4, 20, 0xffffffff, 0}),
               "argument 0 (string): 4294967295 bytes at offset 20 do not end within 24"},
        Broken{"Int32OfEight", Words({28, 1, 2, 20, 8, 0, 0}),
               "argument 0 (int32): size 8 where it must be 4"},
        Broken{"Int64OfFour", Words({24, 1, 3, 20, 4, 0}),
               "argument 0 (int64): size 4 where it must be 8"},
        Broken{"StringOfNothing", Words({24, 1, 4, 20, 0, 0}),
               "argument 0 (string): size 0 where at least its NUL must be"},
        Broken{"StringWithoutNul", With(Words({23, 1, 4, 20, 3}), {'a', 'b', 'c'}),
               "argument 0 (string): its last byte, at offset 22, is 99 where a NUL must be"},
        Broken{"SecondArgument", With(Words({38, 2, 4, 32, 2, 2, 33, 4}), {'x', 0, 1, 0, 0, 0}),
               "argument 1 (int32): its offset is 33, but its data begins at 34"},
        Broken{"LeftOver", Words({28, 1, 2, 20, 4, 0, 0}),
               "4 bytes are left over after the last argument, which ends at 24"}),
    [](const auto& test) { return test.param.name; });

TEST(Decode, NullOfSize0_IsRefused) {
    EXPECT_EQ(Decode(nullptr, 0).error, "0 bytes are too few: the header alone has 8");
}

// Whatever is accepted must be exactly what Encode builds: there is one spelling of a message.
TEST(Decode, OfAlteredMessages_TakesNothingThatEncodeWouldNotBuild) {
    const Bytes good =
        Encode({std::string("group_1"), std::int32_t{2}, Bytes{1, 2, 3}, std::int64_t{5}});
    std::mt19937 random(20260131);
    int taken = 0;
    for (int round = 0; round < 50000; ++round) {
        Bytes altered = good;
        for (unsigned change = 0; change <= round % 3u; ++change) {
            altered[random() % altered.size()] = static_cast<std::uint8_t>(random());
        }
        altered.resize(random() % 4 == 0 ? random() % (good.size() + 8) : altered.size());
        // an exact heap block, so that a sanitizer sees a read past its end
        const Bytes exact(altered.begin(), altered.end());
        const Decoded decoded = Decode(exact);
        if (decoded.Ok()) {
            ++taken;
            ASSERT_EQ(Encode(decoded.arguments), exact);
        }
    }
    EXPECT_GT(taken, 100);
    EXPECT_LT(taken, 40000);
}

TEST(Decode, OfEveryCutMessage_Fails) {
    const Bytes good = Encode({std::string("group_1"), std::int32_t{2}});
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(Decode(Bytes(good.begin(), good.begin() + size)).Ok()) << size;
    }
}

}  // namespace
}  // namespace PlenxWire
