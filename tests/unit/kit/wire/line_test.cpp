#include "wire/line.h"

#include <gtest/gtest.h>

#include <random>

#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxWire {
namespace {

using Kind = ParsedLine::Kind;

TEST(ParseMessageLine, ReadsBackWhatWasRendered) {
    const Arguments arguments = {std::string("g_1"), std::string("a\n\"\\\x01\xff Gr\xc3\xbc"),
                                 std::int32_t{-1}, std::int32_t{3}, Bytes{0, 16, 255}};
    const ParsedLine parsed = ParseMessageLine(RenderMessage(kDeviceOnline, arguments));
    EXPECT_EQ(parsed.kind, Kind::kWhole);
    EXPECT_EQ(parsed.id, kDeviceOnline);
    EXPECT_EQ(parsed.error, "");
    EXPECT_EQ(parsed.bytes, Encode(arguments));
}

TEST(ParseMessageLine, TakesTheTypeOfANumberFromTheCatalog) {
    EXPECT_EQ(ParseMessageLine("PingService(19) number:5").bytes, Encode({std::int64_t{5}}));
    EXPECT_EQ(ParseMessageLine("ErrorNotify(15) errCode:5").bytes, Encode({std::int32_t{5}}));
    EXPECT_EQ(ParseMessageLine("message(6) 0:5 1:5000000000").bytes,
              Encode({std::int32_t{5}, std::int64_t{5000000000}}));
}

TEST(ParseMessageLine, ABrokenMessageWithItsBytes_IsWhole) {
    const Bytes broken = {1, 2, 3};
    const ParsedLine parsed =
        ParseMessageLine(RenderMessage(kDeleteGroup, broken.data(), broken.size()));
    EXPECT_EQ(parsed.kind, Kind::kWhole);
    EXPECT_EQ(parsed.bytes, broken);
}

TEST(ParseMessageLine, ABrokenMessageOfNoBytes_IsWhole) {
    const ParsedLine parsed = ParseMessageLine(RenderMessage(kDeleteGroup, nullptr, 0));
    EXPECT_EQ(parsed.kind, Kind::kWhole);
    EXPECT_TRUE(parsed.bytes.empty());
}

TEST(ParseMessageLine, ABrokenMessageWithoutItsBytes_IsTold) {
    const ParsedLine parsed = ParseMessageLine("DeleteGroup(1) broken: it is wrong");
    EXPECT_EQ(parsed.kind, Kind::kTold);
    EXPECT_EQ(parsed.error, "it is wrong");
}

TEST(ParseMessageLine, ABrokenMessageOfManyBytes_IsTold) {
    const Bytes broken(100, 0xff);
    const ParsedLine parsed =
        ParseMessageLine(RenderMessage(kDeleteGroup, broken.data(), broken.size()));
    EXPECT_EQ(parsed.kind, Kind::kTold);
    EXPECT_EQ(parsed.error,
              "the total size at offset 0 says 4294967295, the buffer has 100 bytes: the line "
              "shows only the first 64 of 100 bytes");
}

TEST(ParseMessageLine, LongText_IsPartial) {
    const ParsedLine parsed =
        ParseMessageLine(RenderMessage(kNameChanged, {std::string(2000, 'x')}));
    EXPECT_EQ(parsed.kind, Kind::kPartial);
    EXPECT_EQ(parsed.error, "name: the line shows only the first 1000 bytes");
    EXPECT_TRUE(parsed.bytes.empty());
}

TEST(ParseMessageLine, ALongArray_IsPartial) {
    const ParsedLine parsed =
        ParseMessageLine(RenderMessage(kUpdateWindowsExplore, {std::int32_t{65}, Bytes(65, 1)}));
    EXPECT_EQ(parsed.kind, Kind::kPartial);
    EXPECT_EQ(parsed.error, "path: the line shows only the first 64 of 65 bytes");
}

TEST(ParseMessageLine, ATornLine_IsPartial) {
    EXPECT_EQ(ParseMessageLine("NameChanged(4) name:\"de").error,
              "name: the line ends within the text");
    EXPECT_EQ(ParseMessageLine("ErrorNotify(15) errCode:").error, "errCode: it has no value");
    EXPECT_EQ(ParseMessageLine("ErrorNotify(15) errC").error, "\"errC\" is not an argument");
    EXPECT_EQ(ParseMessageLine("ErrorNotify(15) errCode:5x").error,
              "something follows the last argument");
    EXPECT_EQ(ParseMessageLine("message(6) 0:[2] 01 0").error, "0: a byte is invalid");
    EXPECT_EQ(ParseMessageLine("ErrorNotify(15) errCode:5x").kind, Kind::kPartial);
}

TEST(ParseMessageLine, OtherText_HoldsNoMessage) {
    for (const char* const text :
         {"", "runs", "PingService", "PingService(", "PingService(x)", "PingService(4) number:1",
          "message(1) 0:1", "Foo(77777777777)"}) {
        EXPECT_EQ(ParseMessageLine(text).kind, Kind::kNone) << text;
    }
}

TEST(ParseMessageLine, OfEveryCutLine_TakesNoneForTheWholeMessage) {
    const Arguments arguments = {std::string("g\x01_1"), std::string("dev"), std::int32_t{0},
                                 std::int32_t{3}, Bytes{1, 2, 255}};
    const std::string line = RenderMessage(kDeviceOnline, arguments);
    for (std::size_t size = 0; size < line.size(); ++size) {
        const std::string exact = line.substr(0, size);
        EXPECT_NE(ParseMessageLine(exact).bytes, Encode(arguments)) << exact;
    }
}

TEST(ParseMessageLine, OfRandomText_ReadsBackEveryByte) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 40, '\0');
        for (char& byte : text) {
            byte = static_cast<char>(random());
        }
        const Arguments arguments = {text};
        ASSERT_EQ(ParseMessageLine(RenderMessage(kNameChanged, arguments)).bytes,
                  Encode(arguments));
    }
}

}  // namespace
}  // namespace PlenxWire
