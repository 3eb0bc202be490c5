#include "rpc/rpc_message_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "rpc/message_bytes.h"
#include "rpc/rpc_message_writer.h"

using DistributedFs::RpcMessageReader;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();
constexpr std::uint32_t kHighBit = 0x80000000U;

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

// The copy lies on the heap and has exactly its size, so that a sanitizer sees a read past its end.
struct Received {
    explicit Received(const Bytes& bytes)
        : block(new std::uint8_t[bytes.size()]), size(static_cast<std::int32_t>(bytes.size())) {
        std::copy(bytes.begin(), bytes.end(), block.get());
    }
    std::unique_ptr<std::uint8_t[]> block;
    std::int32_t size;
};

struct Reader : RpcMessageReader {
    explicit Reader(const Bytes& bytes) : Reader(Received(bytes)) {}
    explicit Reader(const Received& received)
        : RpcMessageReader(received.block.get(), received.size) {}
};

// Reads the argument, releases it and returns the code.
std::int32_t ReadArray(RpcMessageReader& reader, std::uint32_t index, std::int32_t length,
                       Bytes* out = nullptr) {
    std::uint8_t stale = 0;
    std::uint8_t* block = &stale;
    const std::int32_t code = reader.ReadInt8Array(index, &block, length);
    if (code != 0) {
        EXPECT_EQ(block, nullptr);
        return code;
    }
    const std::unique_ptr<std::uint8_t[]> owner(block);
    EXPECT_NE(block, nullptr);
    if (out != nullptr) {
        out->assign(block, block + length);
    }
    return code;
}

std::string In(const std::string& operation) {
    return "(DistributedFs::RpcMessageReader::" + operation + ")";
}

std::string IndexLine(const std::string& operation, std::uint32_t index, int argCursor,
                      int msgCursor, int size) {
    return "L4 [PLENXSDK] Invalid Args Error index:" + std::to_string(index) +
           " argCursor_:" + std::to_string(argCursor) + " msgCursor_:" + std::to_string(msgCursor) +
           " rpcMsgSize_:" + std::to_string(size) + In(operation);
}

std::string TypeLine(const std::string& operation, std::uint32_t tag) {
    return "L4 [PLENXSDK] Invalid Args rpcReqArgType:" + std::to_string(tag) + In(operation);
}

std::string OffsetLine(const std::string& operation, std::uint32_t offset, std::uint32_t size,
                       int messageSize, const std::string& end = "") {
    return "L4 [PLENXSDK] Invalid Args offset:" + std::to_string(offset) +
           " rpcReqArgSize:" + std::to_string(size) +
           " rpcMsgSize_:" + std::to_string(messageSize) + end + In(operation);
}

TEST(RpcMessageReader, ReadsInt32StringAndArrayOfALiteralMessage) {
    Reader reader(
        FromHex("36000000 03000000"
                "04000000 2c000000 03000000"
                "02000000 2f000000 04000000"
                "05000000 33000000 03000000"
                "616200 feffffff aabbcc"));
    std::string text = "old";
    std::int32_t number = 9;
    Bytes array;
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(reader.ReadInt32(1, &number), 0);
    EXPECT_EQ(ReadArray(reader, 2, 3, &array), 0);
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(number, -2);
    EXPECT_EQ(array, (Bytes{0xAA, 0xBB, 0xCC}));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageReader, CopiesTheBuffer) {
    Bytes bytes = Int32Message(5);
    RpcMessageReader reader(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xFF});
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 0);
    EXPECT_EQ(number, 5);
}

TEST(RpcMessageReader, NeverReadsTheBuffersOwnSizeField) {
    for (const std::uint32_t claimed : {0U, 8U, 0xFFFFFFFFU}) {
        Reader reader(FromWords({claimed, 1, 2, 20, 4, 7}));
        std::int32_t number = 0;
        EXPECT_EQ(reader.ReadInt32(0, &number), 0);
        EXPECT_EQ(number, 7);
    }
}

TEST(RpcMessageReader, StringIsExactlyTheBytesWithoutTheLastWhichIsNotLookedAt) {
    Reader reader(FromHex("17000000 01000000 04000000 14000000 03000000 616221"));
    std::string text;
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(text, "ab");
}

TEST(RpcMessageReader, StringKeepsEmbeddedNuls) {
    Reader reader(MessageOf({StringArg(std::string("a\0b\0", 4))}));
    std::string text;
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(text, std::string("a\0b\0", 4));
}

// These sizes lie around the largest message that fits inside its reader.
TEST(RpcMessageReader, ReadsTheLastByteOfMessagesOfAnySize) {
    for (const std::size_t size : {100U, 4607U, 4608U, 4609U, 70000U}) {
        std::string text(size - 21, 'a');
        text.back() = 'z';
        const Bytes message = MessageOf({StringArg(text)});
        ASSERT_EQ(message.size(), size);
        Reader reader(message);
        std::string read;
        EXPECT_EQ(reader.ReadString(0, &read), 0);
        EXPECT_EQ(read, text);
    }
}

TEST(RpcMessageReader, StringOfSize1IsEmpty) {
    Reader reader(MessageOf({StringArg("")}));
    std::string text = "old";
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(text, "");
}

TEST(RpcMessageReader, StringOfSize0Fails) {
    Reader reader(FromWords({24, 1, 4, 20, 0, 0}));
    std::string text;
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadString", 20, 0, 24)));
}

TEST(RpcMessageReader, ArrayOfLength0IsABlockOfNoBytes) {
    Reader reader(FromWords({24, 1, 5, 20, 0, 0}));
    Bytes array{1};
    EXPECT_EQ(ReadArray(reader, 0, 0, &array), 0);
    EXPECT_THAT(array, IsEmpty());
}

TEST(RpcMessageReader, ArgumentsMayLieInTheHeaderAndOverlap) {
    Reader reader(FromWords({99, 2, 2, 0, 4, 4, 32, 4, 0x00636261}));
    std::int32_t number = 0;
    std::string text;
    EXPECT_EQ(reader.ReadInt32(0, &number), 0);
    EXPECT_EQ(reader.ReadString(1, &text), 0);
    EXPECT_EQ(number, 99);
    EXPECT_EQ(text, "abc");
}

TEST(RpcMessageReader, ArgumentThatEndsWithTheMessageIsInside) {
    Reader reader(FromWords({24, 1, 4, 0, 24, 0}));
    std::string text;
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(text.size(), 23U);
}

// The reader refuses these messages.

struct Short {
    std::int32_t size;
    Bytes bytes;
};

void PrintTo(const Short& value, std::ostream* out) {
    *out << "Size" << value.size << "Count";
    for (std::size_t i = 4; i < 8 && i < value.bytes.size(); ++i) {
        *out << '.' << static_cast<int>(value.bytes[i]);
    }
}

class ShortMessage : public testing::TestWithParam<Short> {};

TEST_P(ShortMessage, IsRefusedAndEveryReadFails) {
    const Received received(GetParam().bytes);
    RpcMessageReader reader(received.block.get(), GetParam().size);
    std::int32_t number = 0;
    std::string text;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_EQ(ReadArray(reader, 0, 4), 21);
    EXPECT_THAT(Texts(),
                ElementsAre("L4 [PLENXSDK] Short Message Size rpcMsgSize:" +
                                std::to_string(GetParam().size) + In("RpcMessageReader"),
                            IndexLine("ReadInt32", 0, 0, 0, 0), IndexLine("ReadString", 0, 0, 0, 0),
                            IndexLine("ReadInt8Array", 0, 0, 0, 0)));
}

Short OfCount(std::uint32_t count, std::int32_t size) {
    Bytes bytes = FromWords({static_cast<std::uint32_t>(size), count});
    bytes.resize(static_cast<std::size_t>(size));
    return {size, bytes};
}

INSTANTIATE_TEST_SUITE_P(Sizes, ShortMessage,
                         testing::Values(Short{0, {}}, Short{1, Bytes(1)}, Short{4, Bytes(4)},
                                         Short{7, Bytes(7)}, Short{-1, Bytes(24)},
                                         Short{kInt32Min, Bytes(24)}, OfCount(0, 8), OfCount(1, 20),
                                         OfCount(1, 19), OfCount(2, 32), OfCount(5, 24),
                                         // 12 * count + 8 does not fit 32 bits: 16, -8, -4, 0, 8
                                         OfCount(0x15555556, 24), OfCount(0x15555554, 24),
                                         OfCount(0xFFFFFFFF, 24), OfCount(0xAAAAAAAA, 24),
                                         OfCount(kHighBit, 24), OfCount(0x40000000, 24),
                                         OfCount(0x55555555, 24)));

TEST(RpcMessageReader, NullBufferIsRefusedWithTheSizeAsGiven) {
    RpcMessageReader reader(nullptr, 24);
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre("L4 [PLENXSDK] Short Message Size rpcMsgSize:24" +
                                         In("RpcMessageReader"),
                                     IndexLine("ReadInt32", 0, 0, 0, 0)));
}

TEST(RpcMessageReader, MessageWithoutArgumentsOf9BytesIsTakenAndHasNothingToRead) {
    Reader reader(FromHex("09000000 00000000 00"));
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 0, 0, 8, 9)));
}

// The reader refuses these arguments.

TEST(RpcMessageReader, Index1BeforeIndex0Fails) {
    Reader reader(MessageOf({Int32Arg(1), Int32Arg(2)}));
    std::int32_t number = 0;
    std::string text;
    EXPECT_EQ(reader.ReadInt32(1, &number), 21);
    EXPECT_EQ(reader.ReadString(1, &text), 21);
    EXPECT_EQ(ReadArray(reader, 1, 4), 21);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 1, 0, 32, 40),
                                     IndexLine("ReadString", 1, 0, 32, 40),
                                     IndexLine("ReadInt8Array", 1, 0, 32, 40)));
}

TEST(RpcMessageReader, IndexBeyondTheLastArgumentFails) {
    Reader reader(Int32Message(3));
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 0);
    EXPECT_EQ(reader.ReadInt32(1, &number), 21);
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 1, 1, 24, 24),
                                     IndexLine("ReadInt32", 0, 1, 24, 24)));
}

TEST(RpcMessageReader, HighestIndexFails) {
    Reader reader(Int32Message(3));
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0xFFFFFFFFU, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 0xFFFFFFFFU, 0, 20, 24)));
}

class OtherTag : public testing::TestWithParam<std::uint32_t> {};

TEST_P(OtherTag, IsRefusedByEveryOperationButItsOwn) {
    const std::uint32_t tag = GetParam();
    const Bytes bytes = FromWords({24, 1, tag, 20, 4, 0});
    std::vector<std::string> expected;
    if (tag != 2) {
        Reader reader(bytes);
        std::int32_t number = 0;
        EXPECT_EQ(reader.ReadInt32(0, &number), 21);
        expected.push_back(TypeLine("ReadInt32", tag));
    }
    if (tag != 4) {
        Reader reader(bytes);
        std::string text;
        EXPECT_EQ(reader.ReadString(0, &text), 21);
        expected.push_back(TypeLine("ReadString", tag));
    }
    if (tag != 5) {
        Reader reader(bytes);
        EXPECT_EQ(ReadArray(reader, 0, 4), 21);
        expected.push_back(TypeLine("ReadInt8Array", tag));
    }
    EXPECT_EQ(Texts(), expected);
}

INSTANTIATE_TEST_SUITE_P(Tags, OtherTag,
                         testing::Values(0U, 1U, 2U, 3U, 4U, 5U, 6U, 0x00000200U, 0x01000002U,
                                         kHighBit, 0xFFFFFFFFU));

TEST(RpcMessageReader, Int32WhoseDescriptorSaysSize8FailsEvenInsideTheMessage) {
    Reader reader(FromWords({28, 1, 2, 20, 8, 7, 0}));
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt32", 20, 8, 28)));
}

TEST(RpcMessageReader, Int32OfAnyOtherSizeFails) {
    for (const std::uint32_t size : {0U, 1U, 3U, 5U, 0x80000004U}) {
        RecordedLog::Get().Clear();
        Reader reader(FromWords({28, 1, 2, 20, size, 7, 0}));
        std::int32_t number = 0;
        EXPECT_EQ(reader.ReadInt32(0, &number), 21);
        EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt32", 20, size, 28)));
    }
}

TEST(RpcMessageReader, ArrayOfAnotherLengthThanExpectedFailsWithArgLen) {
    Reader reader(MessageOf({ArrayArg({1, 2, 3})}));
    EXPECT_EQ(ReadArray(reader, 0, 2), 21);
    EXPECT_EQ(ReadArray(reader, 0, 4), 21);
    EXPECT_EQ(ReadArray(reader, 0, 0), 21);
    EXPECT_EQ(ReadArray(reader, 0, 3), 0);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt8Array", 20, 3, 23, " argLen:2"),
                                     OffsetLine("ReadInt8Array", 20, 3, 23, " argLen:4"),
                                     OffsetLine("ReadInt8Array", 20, 3, 23, " argLen:0")));
}

TEST(RpcMessageReader, ArrayMayBeFollowedByAnotherArgument) {
    Reader reader(MessageOf({ArrayArg({1, 2}), Int32Arg(7)}));
    Bytes array;
    std::int32_t number = 0;
    EXPECT_EQ(ReadArray(reader, 0, 2, &array), 0);
    EXPECT_EQ(array, (Bytes{1, 2}));
    EXPECT_EQ(ReadArray(reader, 0, 2), 21);
    EXPECT_EQ(reader.ReadInt32(1, &number), 0);
    EXPECT_EQ(number, 7);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt8Array", 0, 1, 34, 38)));
}

TEST(RpcMessageReader, ArrayOfNegativeLengthFails) {
    Reader reader(FromWords({24, 1, 5, 20, 0xFFFFFFFF, 0}));
    EXPECT_EQ(ReadArray(reader, 0, -1), 21);
    EXPECT_EQ(ReadArray(reader, 0, kInt32Min), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt8Array", 20, 0xFFFFFFFF, 24, " argLen:-1"),
                                     OffsetLine("ReadInt8Array", 20, 0xFFFFFFFF, 24,
                                                " argLen:-2147483648")));
}

TEST(RpcMessageReader, ClaimedArrayOf2GiBFailsBeforeAnythingIsAllocated) {
    Reader reader(FromWords({24, 1, 5, 20, 0x7FFFFFFF, 0}));
    EXPECT_EQ(ReadArray(reader, 0, 0x7FFFFFFF), 21);
    EXPECT_THAT(Texts(),
                ElementsAre(OffsetLine("ReadInt8Array", 20, 0x7FFFFFFF, 24, " argLen:2147483647")));
}

struct Place {
    std::uint32_t offset;
    std::uint32_t size;
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << "Offset" << place.offset << "Size" << place.size;
}

class PlaceOutside : public testing::TestWithParam<Place> {};

TEST_P(PlaceOutside, IsRefusedForAString) {
    const auto [offset, size] = GetParam();
    Reader reader(FromWords({24, 1, 4, offset, size, 0}));
    std::string text;
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadString", offset, size, 24)));
}

TEST_P(PlaceOutside, IsRefusedForAnArray) {
    const auto [offset, size] = GetParam();
    const auto length = static_cast<std::int32_t>(size);
    Reader reader(FromWords({24, 1, 5, offset, size, 0}));
    EXPECT_EQ(ReadArray(reader, 0, length), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt8Array", offset, size, 24,
                                                " argLen:" + std::to_string(length))));
}

TEST_P(PlaceOutside, IsRefusedForAnInt32) {
    const auto [offset, size] = GetParam();
    Reader reader(FromWords({24, 1, 2, offset, size, 0}));
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(OffsetLine("ReadInt32", offset, size, 24)));
}

INSTANTIATE_TEST_SUITE_P(
    Places, PlaceOutside,
    testing::Values(Place{21, 4}, Place{24, 4}, Place{25, 4}, Place{20, 5}, Place{0, 25},
                    // the sum is small, or negative, in 32 bits
                    Place{0xFFFFFFF0, 4}, Place{0xFFFFFFFC, 4}, Place{0xFFFFFFFF, 1},
                    Place{20, 0xFFFFFFF0}, Place{20, 0xFFFFFFEC}, Place{kHighBit, 4},
                    Place{kHighBit, kHighBit}, Place{0x7FFFFFFF, 4}, Place{4, 0x7FFFFFFF}));

TEST(RpcMessageReader, FailedReadChangesNothing) {
    Reader reader(Int32Message(3));
    std::string text;
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_EQ(reader.ReadString(0, &text), 21);
    EXPECT_EQ(reader.ReadInt32(0, &number), 0);
    EXPECT_EQ(number, 3);
    EXPECT_THAT(Texts(), ElementsAre(TypeLine("ReadString", 2), TypeLine("ReadString", 2)));
}

TEST(RpcMessageReader, NullOutFailsAndTheSameIndexCanBeReadThen) {
    Reader numbers(Int32Message(3));
    std::int32_t number = 0;
    EXPECT_EQ(numbers.ReadInt32(0, nullptr), 21);
    EXPECT_EQ(numbers.ReadInt32(0, &number), 0);
    Reader strings(MessageOf({StringArg("a")}));
    std::string text;
    EXPECT_EQ(strings.ReadString(0, nullptr), 21);
    EXPECT_EQ(strings.ReadString(0, &text), 0);
    Reader arrays(MessageOf({ArrayArg({1})}));
    EXPECT_EQ(arrays.ReadInt8Array(0, nullptr, 1), 21);
    EXPECT_EQ(ReadArray(arrays, 0, 1), 0);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 0, 0, 20, 24),
                                     IndexLine("ReadString", 0, 0, 20, 22),
                                     IndexLine("ReadInt8Array", 0, 0, 20, 21)));
}

TEST(RpcMessageReader, CursorAddsUpTheSizesOfOverlappingArguments) {
    Reader reader(FromWords({48, 3, 4, 0, 48, 4, 0, 48, 2, 0, 8, 0}));
    std::string text;
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadString(0, &text), 0);
    EXPECT_EQ(reader.ReadString(1, &text), 0);
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(), ElementsAre(IndexLine("ReadInt32", 0, 2, 44 + 48 + 48, 48)));
}

// Signed addition, which a sanitizer sees, would overflow here.
TEST(RpcMessageReader, CursorOfOverlappingArgumentsMayPass31Bits) {
    constexpr std::uint32_t kSize = 0x100000;
    constexpr std::uint32_t kCount = kHighBit / kSize;
    std::vector<std::uint32_t> words{kSize, kCount};
    for (std::uint32_t i = 0; i != kCount; ++i) {
        words.insert(words.end(), {4, 0, kSize});
    }
    Bytes bytes = FromWords(words);
    bytes.resize(kSize);
    Reader reader(bytes);
    std::string text;
    for (std::uint32_t i = 0; i != kCount; ++i) {
        ASSERT_EQ(reader.ReadString(i, &text), 0);
    }
    std::int32_t number = 0;
    EXPECT_EQ(reader.ReadInt32(0, &number), 21);
    EXPECT_THAT(Texts(),
                ElementsAre(IndexLine("ReadInt32", 0, kCount,
                                      kInt32Min + 8 + 12 * static_cast<int>(kCount), kSize)));
}

TEST(RpcMessageReader, ReadsBackEverythingThatTheWriterWrote) {
    std::mt19937 random(7);
    for (int round = 0; round != 300; ++round) {
        const auto number = static_cast<std::int32_t>(random());
        const std::string text(random() % 50, static_cast<char>(random()));
        const Bytes array(random() % 50, static_cast<std::uint8_t>(random()));
        const auto length = static_cast<std::int32_t>(array.size());
        const auto size = static_cast<std::int32_t>(8 + 36 + 4 + text.size() + 1) + length;
        DistributedFs::RpcMessageWriter writer(size, 3);
        ASSERT_EQ(writer.WriteInt32(0, number), 0);
        ASSERT_EQ(writer.WriteString(1, text), 0);
        ASSERT_EQ(writer.WriteInt8Array(2, array.data(), length), 0);
        RpcMessageReader reader(writer.Buffer(), writer.Size());
        std::int32_t readNumber = 0;
        std::string readText;
        Bytes readArray;
        ASSERT_EQ(reader.ReadInt32(0, &readNumber), 0);
        ASSERT_EQ(reader.ReadString(1, &readText), 0);
        ASSERT_EQ(ReadArray(reader, 2, length, &readArray), 0);
        EXPECT_EQ(readNumber, number);
        EXPECT_EQ(readText, text);
        EXPECT_EQ(readArray, array);
    }
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(RpcMessageReader, SurvivesRandomChangesOfAMessage) {
    const Bytes good = MessageOf({StringArg("group_1"), Int32Arg(4), ArrayArg({1, 2, 3, 4})});
    std::mt19937 random(11);
    for (int round = 0; round != 20000; ++round) {
        Bytes bytes = good;
        bytes.resize(1 + random() % good.size());
        for (unsigned changes = random() % 4; changes != 0; --changes) {
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        }
        Reader reader(bytes);
        std::string text;
        std::int32_t number = 0;
        reader.ReadString(0, &text);
        reader.ReadInt32(1, &number);
        ReadArray(reader, 2, number);
        RecordedLog::Get().Clear();
    }
}

}  // namespace
