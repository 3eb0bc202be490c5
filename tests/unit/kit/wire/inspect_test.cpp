#include "wire/inspect.h"

#include <gtest/gtest.h>

#include <random>

#include "wire/catalog.h"
#include "words.h"

namespace PlenxWire {
namespace {

Layout Inspected(const Bytes& message) {
    return Inspect(message.data(), message.size());
}

std::string Told(const Layout& layout) {
    std::string text;
    for (const Problem& problem : layout.problems) {
        text += std::to_string(problem.offset) + ": " + problem.text + "\n";
    }
    return text;
}

TEST(Inspect, AGoodMessage_HasItsFieldsWithPlacesAndValues) {
    const Layout layout = Inspected(Encode({std::string("x"), std::int32_t{7}}));
    EXPECT_EQ(Told(layout), "");
    EXPECT_EQ(layout.statedSize, 38u);
    EXPECT_EQ(layout.count, 2u);
    ASSERT_EQ(layout.fields.size(), 2u);
    EXPECT_EQ(layout.fields[0].offset, 32u);
    EXPECT_EQ(layout.fields[1].offset, 34u);
    EXPECT_EQ(layout.fields[1].size, 4u);
    EXPECT_EQ(layout.fields[1].tag, 2u);
    EXPECT_EQ(layout.fields[1].value, Argument(std::int32_t{7}));
}

TEST(Inspect, SeveralProblems_AreAllReportedWithTheirPlaces) {
    const Layout layout = Inspected(Words({99, 3, 2, 44, 8, 9, 52, 4, 4, 56, 4, 0, 0, 1, 0xff}));
    EXPECT_EQ(Told(layout),
              "0: the total size at offset 0 says 99, the buffer has 60 bytes\n"
              "16: argument 0 (int32): size 8 where it must be 4\n"
              "20: argument 1: unknown type tag 9 at offset 20\n");
    ASSERT_EQ(layout.fields.size(), 3u);
    EXPECT_FALSE(layout.fields[0].value);
    EXPECT_FALSE(layout.fields[1].value);
}

TEST(Inspect, AllOffsetsMovedByOne_AreReportedOnce) {
    Bytes message = Encode({std::int32_t{1}, std::int32_t{2}, std::int32_t{3}});
    for (const std::size_t descriptor : {8, 20, 32}) {
        ++message[descriptor + 4];
    }
    EXPECT_EQ(Told(Inspected(message)),
              "12: argument 0 (int32): its offset is 45, but its data begins at 44\n"
              "40: argument 2 (int32): 4 bytes at offset 53 do not end within 56\n");
}

TEST(Inspect, ATableThatDoesNotFit_LeavesTheHeader) {
    const Layout layout = Inspected(Words({24, 0x15555556, 2, 20, 4, 0}));
    EXPECT_EQ(layout.count, 0x15555556u);
    EXPECT_TRUE(layout.fields.empty());
    ASSERT_EQ(layout.problems.size(), 1u);
    EXPECT_EQ(layout.problems[0].offset, 4u);
}

TEST(Inspect, ArgumentsThatOverlap_AreNotCopiedAgainAndAgain) {
    constexpr std::uint32_t kCount = 1000;
    Bytes message = Words({8 + 12 * kCount + 4, kCount});
    for (std::uint32_t i = 0; i < kCount; ++i) {
        const Bytes descriptor = Words({5, 0, 8 + 12 * kCount + 4});
        message.insert(message.end(), descriptor.begin(), descriptor.end());
    }
    message.resize(message.size() + 4);
    const Layout layout = Inspected(message);
    std::size_t copied = 0;
    for (const Field& field : layout.fields) {
        copied += field.value ? std::get<Bytes>(*field.value).size() : 0;
    }
    EXPECT_EQ(layout.fields.size(), kCount);
    EXPECT_EQ(copied, message.size());
}

TEST(InspectAs, ReportsEveryWrongArgumentWithItsPlace) {
    const Bytes message = Encode({std::int64_t{1}, std::int32_t{3}, std::string("a")});
    EXPECT_EQ(Told(InspectAs(*FindMessage(kCreateGroup), message.data(), message.size())),
              "8: argument 0 (groupName): int64 where it must be string\n"
              "52: argument 1 (kind): 3 where it must always be 2\n");
}

TEST(InspectAs, TheNumberOfArguments_IsWrongInTheHeader) {
    const Bytes message = Encode({std::int32_t{3}});
    EXPECT_EQ(Told(InspectAs(*FindMessage(kCreateGroup), message.data(), message.size())),
              "4: 1 arguments where CreateGroup has 3\n");
}

TEST(InspectAs, AnArrayBehindAWrongLength_IsNotMeasured) {
    const Bytes message = Encode({std::string("x"), Bytes{1}});
    EXPECT_EQ(Told(InspectAs(*FindMessage(kUpdateWindowsExplore), message.data(), message.size())),
              "8: argument 0 (length): string where it must be int32\n");
}

// The first problem is the one that DecodeAs reports, and there is one exactly when DecodeAs fails.
TEST(InspectAs, OfAlteredMessages_AgreesWithDecodeAs) {
    const MessageShape& shape = *FindMessage(kDeviceOnline);
    const Bytes good = Encode({std::string("group_1"), std::string("device"), std::int32_t{1},
                               std::int32_t{3}, Bytes{1, 2, 3}});
    std::mt19937 random(20261121);
    int broken = 0;
    for (int round = 0; round < 20000; ++round) {
        Bytes altered = good;
        altered[random() % altered.size()] = static_cast<std::uint8_t>(random());
        altered.resize(random() % 4 == 0 ? random() % (good.size() + 8) : altered.size());
        const Bytes exact(altered.begin(), altered.end());
        const Layout layout = InspectAs(shape, exact.data(), exact.size());
        const Decoded decoded = DecodeAs(shape, exact.data(), exact.size());
        ASSERT_EQ(layout.problems.empty() ? "" : layout.problems.front().text, decoded.error);
        for (const Problem& problem : layout.problems) {
            ASSERT_LE(problem.offset, exact.size()) << problem.text;
        }
        broken += layout.problems.empty() ? 0 : 1;
    }
    EXPECT_GT(broken, 1000);
    EXPECT_LT(broken, 19000);
}

}  // namespace
}  // namespace PlenxWire
