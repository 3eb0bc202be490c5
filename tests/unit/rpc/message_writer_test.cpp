#include "rpc/rpc_message_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "companion/recorded_log.h"
#include "rpc/message_bytes.h"

using DistributedFs::RpcMessageWriter;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

Bytes Written(RpcMessageWriter& writer) {
    return Bytes(writer.Buffer(), writer.Buffer() + writer.Size());
}

std::string FailureLine(const std::string& operation, std::uint32_t index, int argCursor,
                        int msgCursor, int size) {
    return "L4 [PLENXSDK] index:" + std::to_string(index) +
           " argCursor_:" + std::to_string(argCursor) + " msgCursor_:" + std::to_string(msgCursor) +
           " rpcMsgSize_:" + std::to_string(size) +
           "(DistributedFs::RpcMessageWriter::" + operation + ")";
}

TEST(RpcMessageWriter, OneInt32NeedsExactly24Bytes) {
    RpcMessageWriter writer(24, 1);
    EXPECT_EQ(writer.WriteInt32(0, 0x12345678), 0);
    EXPECT_EQ(Written(writer), (Bytes{24, 0, 0, 0, 1, 0, 0, 0, 2,    0,    0,    0,
                                      20, 0, 0, 0, 4, 0, 0, 0, 0x78, 0x56, 0x34, 0x12}));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageWriter, AllFourTypesArePackedOneAfterTheOther) {
    RpcMessageWriter writer(74, 4);
    const std::uint8_t array[] = {0xAA, 0xBB, 0xCC};
    EXPECT_EQ(writer.WriteString(0, "ab"), 0);
    EXPECT_EQ(writer.WriteInt32(1, -2), 0);
    EXPECT_EQ(writer.WriteInt64(2, 0x0102030405060708), 0);
    EXPECT_EQ(writer.WriteInt8Array(3, array, 3), 0);
    EXPECT_EQ(Written(writer), FromHex("4a000000 04000000"
                                       "04000000 38000000 03000000"
                                       "02000000 3b000000 04000000"
                                       "03000000 3f000000 08000000"
                                       "05000000 47000000 03000000"
                                       "616200 feffffff 0807060504030201 aabbcc"));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageWriter, FreshMessageHoldsSizeAndCountAndZeros) {
    RpcMessageWriter writer(40, 2);
    Bytes expected(40, 0);
    expected[0] = 40;
    expected[4] = 2;
    EXPECT_EQ(Written(writer), expected);
}

TEST(RpcMessageWriter, UnwrittenBytesAreZeroInMessagesOfAnySize) {
    for (const std::int32_t size : {40, 300, 4608, 4609, 20000}) {
        // The message is built where another one has left its bytes.
        {
            RpcMessageWriter(size, 1).WriteString(0, std::string(size - 21, 'x'));
        }
        RpcMessageWriter writer(size, 2);
        EXPECT_EQ(writer.WriteInt32(0, 0x01020304), 0);
        Bytes expected = FromHex("00000000 02000000 02000000 20000000 04000000");
        expected[0] = static_cast<std::uint8_t>(size);
        expected[1] = static_cast<std::uint8_t>(size >> 8);
        expected.resize(size);
        expected[32] = 4;
        expected[33] = 3;
        expected[34] = 2;
        expected[35] = 1;
        EXPECT_EQ(Written(writer), expected);
    }
}

// A descriptor behind the table lies in the data, which may be written or not.
TEST(RpcMessageWriter, DescriptorAfterTheTableLeavesTheRestZero) {
    RpcMessageWriter writer(48, 1);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 0), 0);
    EXPECT_EQ(writer.WriteInt8Array(1, nullptr, 0), 0);
    EXPECT_EQ(Written(writer), FromHex("30000000 01000000 05000000 14000000 00000000"
                                       "05000000 14000000 00000000"
                                       "00000000 00000000 00000000 00000000"));
}

TEST(RpcMessageWriter, DataOverlaysADescriptorAfterTheTable) {
    {
        RpcMessageWriter(60, 1).WriteString(0, std::string(39, 'x'));
    }
    RpcMessageWriter writer(60, 1);
    EXPECT_EQ(writer.WriteInt32(0, 0x11111111), 0);
    EXPECT_EQ(writer.WriteInt32(1, 0x22222222), 0);
    Bytes expected = FromHex(
        "3C000000 01000000 02000000 14000000 04000000"
        "02000000 22222222 04000000");
    expected.resize(60);
    EXPECT_EQ(Written(writer), expected);
}

TEST(RpcMessageWriter, WritesGoOnAfterTheBufferHasBeenSeen) {
    RpcMessageWriter writer(52, 2);
    EXPECT_EQ(writer.WriteString(0, "abc"), 0);
    Bytes expected = FromHex("34000000 02000000 04000000 20000000 04000000");
    expected.resize(52);
    expected[32] = 'a';
    expected[33] = 'b';
    expected[34] = 'c';
    EXPECT_EQ(Written(writer), expected);
    EXPECT_EQ(writer.WriteInt32(1, -1), 0);
    const Bytes second = FromHex("02000000 24000000 04000000");
    std::copy(second.begin(), second.end(), expected.begin() + 20);
    std::fill(expected.begin() + 36, expected.begin() + 40, std::uint8_t{0xff});
    EXPECT_EQ(Written(writer), expected);
}

TEST(RpcMessageWriter, StringOfLengthLTakesLPlus1BytesAlsoWhenEmpty) {
    RpcMessageWriter writer(21, 1);
    EXPECT_EQ(writer.WriteString(0, ""), 0);
    EXPECT_EQ(Written(writer), FromHex("15000000 01000000 04000000 14000000 01000000 00"));
}

TEST(RpcMessageWriter, StringKeepsEmbeddedNuls) {
    RpcMessageWriter writer(24, 1);
    EXPECT_EQ(writer.WriteString(0, std::string("a\0b", 3)), 0);
    EXPECT_EQ(Written(writer), FromHex("18000000 01000000 04000000 14000000 04000000 61006200"));
}

TEST(RpcMessageWriter, EmptyArrayMayBeNull) {
    RpcMessageWriter writer(21, 1);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 0), 0);
    EXPECT_EQ(Written(writer), FromHex("15000000 01000000 05000000 14000000 00000000 00"));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageWriter, EmptyArrayMayStandLastWithNoByteLeft) {
    RpcMessageWriter writer(36, 2);
    EXPECT_EQ(writer.WriteInt32(0, 7), 0);
    EXPECT_EQ(writer.WriteInt8Array(1, nullptr, 0), 0);
    EXPECT_EQ(Written(writer), FromHex("24000000 02000000 02000000 20000000 04000000"
                                       "05000000 24000000 00000000 07000000"));
}

TEST(RpcMessageWriter, Index1BeforeIndex0FailsWith21AndWritesNothing) {
    RpcMessageWriter writer(60, 2);
    const Bytes before = Written(writer);
    const std::uint8_t array[] = {1};
    EXPECT_EQ(writer.WriteInt32(1, 5), 21);
    EXPECT_EQ(writer.WriteInt64(1, 5), 21);
    EXPECT_EQ(writer.WriteString(1, "x"), 21);
    EXPECT_EQ(writer.WriteInt8Array(1, array, 1), 21);
    EXPECT_EQ(Written(writer), before);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt32", 1, 0, 32, 60),
                                     FailureLine("WriteInt64", 1, 0, 32, 60),
                                     FailureLine("WriteString", 1, 0, 32, 60),
                                     FailureLine("WriteInt8Array", 1, 0, 32, 60)));
}

TEST(RpcMessageWriter, SameIndexTwiceFails) {
    RpcMessageWriter writer(60, 2);
    EXPECT_EQ(writer.WriteInt32(0, 5), 0);
    EXPECT_EQ(writer.WriteInt32(0, 6), 21);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt32", 0, 1, 36, 60)));
}

TEST(RpcMessageWriter, HighestIndexFails) {
    RpcMessageWriter writer(24, 1);
    EXPECT_EQ(writer.WriteInt32(0xFFFFFFFFU, 5), 21);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] index:4294967295 argCursor_:0 "
                                     "msgCursor_:20 rpcMsgSize_:24"
                                     "(DistributedFs::RpcMessageWriter::WriteInt32)"));
}

TEST(RpcMessageWriter, DataThatDoesNotFitFailsAndTheSameIndexCanBeWrittenThen) {
    RpcMessageWriter writer(24, 1);
    const std::uint8_t array[] = {1, 2, 3, 4, 5};
    EXPECT_EQ(writer.WriteInt64(0, 5), 21);
    EXPECT_EQ(writer.WriteString(0, "abcd"), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, array, 5), 21);
    EXPECT_EQ(writer.WriteInt32(0, 5), 0);
    EXPECT_EQ(Written(writer), Int32Message(5));
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt64", 0, 0, 20, 24),
                                     FailureLine("WriteString", 0, 0, 20, 24),
                                     FailureLine("WriteInt8Array", 0, 0, 20, 24)));
}

TEST(RpcMessageWriter, Int32ThatDoesNotFitFails) {
    RpcMessageWriter writer(23, 1);
    EXPECT_EQ(writer.WriteInt32(0, 5), 21);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt32", 0, 0, 20, 23)));
}

TEST(RpcMessageWriter, IndexIsNotCheckedAgainstTheCount) {
    RpcMessageWriter writer(40, 1);
    EXPECT_EQ(writer.WriteInt32(0, 5), 0);
    EXPECT_EQ(writer.WriteInt32(1, 6), 0);
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageWriter, DescriptorMayEndWithTheMessage) {
    RpcMessageWriter writer(32, 1);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 0), 0);
    EXPECT_EQ(writer.WriteInt8Array(1, nullptr, 0), 0);
    EXPECT_EQ(Written(writer), FromHex("20000000 01000000 05000000 14000000 00000000"
                                       "05000000 14000000 00000000"));
}

TEST(RpcMessageWriter, DescriptorThatWouldEndOutsideTheMessageFails) {
    RpcMessageWriter writer(24, 1);
    EXPECT_EQ(writer.WriteInt32(0, 5), 0);
    EXPECT_EQ(writer.WriteInt8Array(1, nullptr, 0), 21);
    EXPECT_EQ(Written(writer), Int32Message(5));
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt8Array", 1, 1, 24, 24)));
}

TEST(RpcMessageWriter, ArrayOfNegativeLengthFails) {
    RpcMessageWriter writer(24, 1);
    const std::uint8_t array[] = {1};
    EXPECT_EQ(writer.WriteInt8Array(0, array, -1), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, array, kInt32Min), 21);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt8Array", 0, 0, 20, 24),
                                     FailureLine("WriteInt8Array", 0, 0, 20, 24)));
}

TEST(RpcMessageWriter, NullArrayWithALengthFails) {
    RpcMessageWriter writer(24, 1);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 1), 21);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt8Array", 0, 0, 20, 24)));
}

TEST(RpcMessageWriter, LengthThatWouldOverflowTheCursorFails) {
    RpcMessageWriter writer(24, 1);
    const std::uint8_t array[] = {1};
    EXPECT_EQ(writer.WriteInt8Array(0, array, kInt32Max), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, array, kInt32Max - 19), 21);
    EXPECT_THAT(Texts(), ElementsAre(FailureLine("WriteInt8Array", 0, 0, 20, 24),
                                     FailureLine("WriteInt8Array", 0, 0, 20, 24)));
}

class ShortWriter : public testing::TestWithParam<std::pair<std::int32_t, std::int32_t>> {};

TEST_P(ShortWriter, IsRefusedWithTheNumbersAsGivenAndEveryWriteFails) {
    const auto [size, args] = GetParam();
    RpcMessageWriter writer(size, args);
    const std::uint8_t array[] = {1};
    EXPECT_EQ(writer.Buffer(), nullptr);
    EXPECT_EQ(writer.Size(), 0);
    EXPECT_EQ(writer.WriteInt32(0, 5), 21);
    EXPECT_EQ(writer.WriteInt64(0, 5), 21);
    EXPECT_EQ(writer.WriteString(0, ""), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, array, 1), 21);
    EXPECT_EQ(writer.WriteInt8Array(0, nullptr, 0), 21);
    EXPECT_THAT(
        Texts(),
        ElementsAre(
            "L4 [PLENXSDK] Short Message Size rpcMsgSize:" + std::to_string(size) + " rpcMsgArgs:" +
                std::to_string(args) + "(DistributedFs::RpcMessageWriter::RpcMessageWriter)",
            FailureLine("WriteInt32", 0, 0, 0, 0), FailureLine("WriteInt64", 0, 0, 0, 0),
            FailureLine("WriteString", 0, 0, 0, 0), FailureLine("WriteInt8Array", 0, 0, 0, 0),
            FailureLine("WriteInt8Array", 0, 0, 0, 0)));
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ShortWriter,
    testing::Values(std::pair(20, 1), std::pair(19, 1), std::pair(8, 0), std::pair(0, 0),
                    std::pair(0, 1), std::pair(-1, 0), std::pair(kInt32Min, 0), std::pair(68, 5),
                    // negative counts
                    std::pair(1, -1), std::pair(24, -1), std::pair(kInt32Max, kInt32Min),
                    // 12 * args + 8 does not fit 32 bits: 16, and -8
                    std::pair(24, 0x15555556), std::pair(24, 0x15555554),
                    std::pair(kInt32Max, kInt32Max), std::pair(24, kInt32Max)));

TEST(RpcMessageWriter, RoomForOneByteAfterTheTableIsEnough) {
    EXPECT_EQ(RpcMessageWriter(21, 1).Size(), 21);
    EXPECT_EQ(RpcMessageWriter(9, 0).Size(), 9);
    EXPECT_THAT(Texts(), IsEmpty());
}

}  // namespace
