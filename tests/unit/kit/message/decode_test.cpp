#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tool.h"
#include "wire/catalog.h"

namespace PlenxMessage {
namespace {

using testing::HasSubstr;

std::string Golden() {
    std::ifstream stream(EVERY_MESSAGE, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Decode, OfAGoodMessageOfEachId_ShowsEveryByte) {
    std::string all;
    for (const auto& words : EachMessage()) {
        const Outcome built = Encoded(words);
        const Outcome shown = Tool({"decode", "--as", words.front()}, built.out);
        EXPECT_EQ(shown.code, 0) << shown.err;
        all += built.out + shown.out + "\n";
    }
    EXPECT_EQ(EachMessage().size(), PlenxWire::Catalog().size() + 1);
    EXPECT_EQ(all, Golden());
}

TEST(Decode, AMessageWithoutItsId_NamesThoseThatItMayBe) {
    const Outcome outcome =
        Tool({"decode", "16000000", "01000000", "0400000014000000020000006100"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out,
              "message: the message was not named, 22 bytes\n"
              "\n"
              "    offset      size  field           type        value\n"
              "         0         4  total size      uint32      22\n"
              "         4         4  argument count  uint32      1\n"
              "         8        12  descriptor 0    3 x uint32  tag 4, offset 20, size 2\n"
              "        20         2  argument 0      string      \"a\"\n"
              "\n"
              "good\n"
              "  Judging by its arguments alone, it may be: DeleteGroup(1), NameChanged(4), "
              "ConnectNotify(10), \n"
              "  DisconnectNotify(11), ReconnectNotify(12), DiskNameNotify(16)\n");
}

TEST(Decode, AnIdThatNoMessageHas_ShowsTheArgumentsByNumber) {
    const Outcome outcome =
        Tool({"decode", "--as", "6", "18000000 01000000 02000000 14000000 04000000 05000000"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, HasSubstr("message 6: the system has no such message, 24 bytes\n"));
    EXPECT_THAT(outcome.out, HasSubstr("argument 0      int32       5\n\ngood\n"));
}

// Returns the text after "good".
std::string Notes(const std::vector<std::string>& words) {
    const Outcome shown = Tool({"decode", "--as", words.front()}, Encoded(words).out);
    EXPECT_EQ(shown.code, 0) << shown.out;
    return shown.out.substr(shown.out.find("\ngood\n") + 6);
}

TEST(Decode, AGroupNameThatTheLibraryRefuses_IsNoted) {
    constexpr char kRefused[] =
        "  note: grpName: the library refuses it with 16: it must end in \"_\" and a number up to "
        "2147483647\n";
    for (const char* const name : {"", "g", "g_", "g_x", "g_1x", "g_-1", "g_+1", "g_2147483648"}) {
        EXPECT_EQ(Notes({"ConnectNotify", std::string("grpName=") + name}), kRefused) << name;
    }
    EXPECT_EQ(Notes({"StatusNotify", "grpName=g", "sttsType=100", "value=1"}), kRefused);
    for (const char* const name : {"_0", "a_b_2147483647", "g_007"}) {
        EXPECT_EQ(Notes({"ConnectNotify", std::string("grpName=") + name}), "") << name;
    }
    EXPECT_EQ(Notes({"DeleteGroup", "groupName=g"}), "");
}

TEST(Decode, ALengthThatIsNotTheTexts_IsNoted) {
    for (const char* const message : {"SendLocalMessage", "RecvRemoteMessage"}) {
        const std::string text =
            std::string(message) == "SendLocalMessage" ? "msg=ten bytes!" : "message=ten bytes!";
        EXPECT_EQ(Notes({message, "msgType=1", "msgLen=5", text}),
                  "  note: msgLen: the text has 10 bytes; the two are never compared\n");
        EXPECT_NE(Notes({message, "msgType=1", "msgLen=-1", text}), "");
        EXPECT_EQ(Notes({message, "msgType=1", "msgLen=10", text}), "");
    }
    EXPECT_EQ(Notes({"SendLocalMessage", "msgType=1", "msgLen=0", "msg="}), "");
}

TEST(Decode, APathThatTheLibraryHasToComplete_IsNoted) {
    EXPECT_EQ(Notes({"UpdateWindowsExplore", "path=50003a"}),
              "  note: path: UTF-16 has an even number of bytes; the library takes this odd number "
              "and adds zeros\n");
    EXPECT_EQ(Notes({"UpdateWindowsExplore", "path=50003a00"}),
              "  note: path: it has no NUL at its end, so the library adds one\n");
    EXPECT_EQ(Notes({"UpdateWindowsExplore", "path=50000000"}), "");
    EXPECT_EQ(Notes({"UpdateWindowsExplore", "path=0000"}), "");
}

TEST(Decode, ANote_IsInTheJson) {
    const std::string message = Encoded({"UpdateWindowsExplore", "path=5000"}).out;
    const Outcome shown = Tool({"decode", "--json", "--as", "17"}, message);
    EXPECT_EQ(shown.code, 0);
    EXPECT_THAT(shown.out, HasSubstr("\"good\": true"));
    EXPECT_THAT(shown.out,
                HasSubstr("  \"problems\": [],\n"
                          "  \"notes\": [\n"
                          "    \"path: it has no NUL at its end, so the library adds one\"\n"
                          "  ],\n"
                          "  \"hex\": "));
}

struct Broken {
    const char* name;
    const char* as;
    const char* hex;
    const char* shown;  // after the head of the table
};

class DecodeBroken : public testing::TestWithParam<Broken> {};

TEST_P(DecodeBroken, SaysWhatIsWrongAndWhere) {
    const Outcome outcome = Tool({"decode", "--as", GetParam().as}, GetParam().hex);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.substr(outcome.out.find("value\n") + 6), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Each, DecodeBroken,
    testing::Values(
        Broken{"Empty", "15", "",
               "\nBROKEN\n  at offset 0  0 bytes are too few: the header alone has 8\n"},
        Broken{"CutInTheHeader", "15", "18 00 00 00 01",
               "         0         5  (no field)      bytes       [5] 18 00 00 00 01\n"
               "\nBROKEN\n  at offset 5  5 bytes are too few: the header alone has 8\n"},
        Broken{"TotalSize", "15", "19000000 01000000 02000000 14000000 04000000 05000000",
               "         0         4  total size      uint32      25\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 4\n"
               "        20         4  errCode         int32       5\n"
               "\nBROKEN\n"
               "  at offset 0  the total size at offset 0 says 25, the buffer has 24 bytes\n"},
        Broken{"TooManyArguments", "15", "18000000 02000000 02000000 14000000 04000000 05000000",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      2\n"
               "         8        16  (no field)      bytes       "
               "[16] 02 00 00 00 14 00 00 00 04 00 00 00 05 00 00 \n"
               "                                                  00\n"
               "\nBROKEN\n"
               "  at offset 4  the table of 2 arguments ends at 32 and leaves no data in 24 "
               "bytes\n"},
        Broken{"UnknownTag", "15", "18000000 01000000 63000000 14000000 04000000 05000000",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 99, offset 20, size 4\n"
               "        20         4  errCode         tag 99      [4] 05 00 00 00\n"
               "\nBROKEN\n"
               "  at offset 8  argument 0: unknown type tag 99 at offset 8\n"},
        Broken{"OffsetOutside", "15", "18000000 01000000 02000000 f0ffffff 04000000 05000000",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 4294967280, size "
               "4\n"
               "  4294967280         4  errCode         int32       (outside the message)\n"
               "\nBROKEN\n"
               "  at offset 12  argument 0 (int32): its offset is 4294967280, but its data "
               "begins at 20\n"},
        Broken{"SizeOutside", "DiskNameNotify",
               "18000000 01000000 04000000 14000000 05000000 50 3a 00 00",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 4, offset 20, size 5\n"
               "        20         5  diskName        string      (outside the message)\n"
               "\nBROKEN\n"
               "  at offset 16  argument 0 (string): 5 bytes at offset 20 do not end within 24\n"},
        Broken{"WrongSizeOfAnInt32", "15",
               "1c000000 01000000 02000000 14000000 08000000 05000000 00000000",
               "         0         4  total size      uint32      28\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 8\n"
               "        20         8  errCode         int32       [8] 05 00 00 00 00 00 00 00\n"
               "\nBROKEN\n"
               "  at offset 16  argument 0 (int32): size 8 where it must be 4\n"},
        Broken{"NoNul", "DiskNameNotify", "16000000 01000000 04000000 14000000 02000000 50 3a",
               "         0         4  total size      uint32      22\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 4, offset 20, size 2\n"
               "        20         2  diskName        string      [2] 50 3a\n"
               "\nBROKEN\n"
               "  at offset 21  argument 0 (string): its last byte, at offset 21, is 58 where a "
               "NUL must be\n"},
        Broken{"LeftOver", "15", "1a000000 01000000 02000000 14000000 04000000 05000000 abcd",
               "         0         4  total size      uint32      26\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 4\n"
               "        20         4  errCode         int32       5\n"
               "        24         2  (no field)      bytes       [2] ab cd\n"
               "\nBROKEN\n"
               "  at offset 24  2 bytes are left over after the last argument, which ends at "
               "24\n"},
        Broken{"WrongType", "PingService", "18000000 01000000 02000000 14000000 04000000 05000000",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 4\n"
               "        20         4  number          int32       5\n"
               "\nBROKEN\n"
               "  at offset 8  argument 0 (number): int32 where it must be int64\n"},
        Broken{"WrongCount", "CreateGroup", "18000000 01000000 02000000 14000000 04000000 05000000",
               "         0         4  total size      uint32      24\n"
               "         4         4  argument count  uint32      1\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 4\n"
               "        20         4  groupName       int32       5\n"
               "\nBROKEN\n"
               "  at offset 4  1 arguments where CreateGroup has 3\n"},
        Broken{"WrongLengthOfAnArray", "UpdateWindowsExplore",
               "26000000 02000000 02000000 20000000 04000000 05000000 24000000 02000000 "
               "03000000 0000",
               "         0         4  total size      uint32      38\n"
               "         4         4  argument count  uint32      2\n"
               "         8        12  descriptor 0    3 x uint32  tag 2, offset 32, size 4\n"
               "        20        12  descriptor 1    3 x uint32  tag 5, offset 36, size 2\n"
               "        32         4  length          int32       3\n"
               "        36         2  path            int8 array  \"\" as UTF-16: [2] 00 00\n"
               "\nBROKEN\n"
               "  at offset 36  argument 1 (path): 2 bytes where the argument before it says "
               "3\n"}),
    [](const auto& test) { return test.param.name; });

TEST(Decode, AsJson_HasTheSameContent) {
    const Outcome good = Tool({"decode", "--json", "--as", "ErrorNotify"},
                              Encoded({"ErrorNotify", "errCode=5"}).out);
    EXPECT_EQ(good.code, 0);
    EXPECT_EQ(good.out, R"({
  "message": "ErrorNotify",
  "id": 15,
  "sort": "notification",
  "good": true,
  "size": 24,
  "statedSize": 24,
  "argumentCount": 1,
  "arguments": [
    {
      "name": "errCode",
      "type": "int32",
      "tag": 2,
      "offset": 20,
      "size": 4,
      "value": 5
    }
  ],
  "problems": [],
  "hex": "18 00 00 00 01 00 00 00 02 00 00 00 14 00 00 00 04 00 00 00 05 00 00 00"
}
)");
    const Outcome broken = Tool({"decode", "--json", "112233"});
    EXPECT_EQ(broken.code, 1);
    EXPECT_EQ(broken.out, R"({
  "message": "message",
  "id": null,
  "sort": "unknown",
  "good": false,
  "size": 3,
  "statedSize": null,
  "argumentCount": null,
  "arguments": [],
  "problems": [
    {
      "offset": 3,
      "text": "3 bytes are too few: the header alone has 8"
    }
  ],
  "hex": "11 22 33"
}
)");
}

TEST(Decode, TextThatIsNotUtf8_IsHexInJson) {
    const Outcome outcome =
        Tool({"decode", "--json", "--as", "4", "160000000100000004000000140000000200 0000 ff 00"});
    EXPECT_THAT(outcome.out, HasSubstr("\"value\": {\n        \"hex\": \"ff\"\n      }"));
}

TEST(Decode, HexInAnySpelling_IsTheSameMessage) {
    const std::string plain =
        Tool({"decode", "18000000 01000000 02000000 14000000 04000000 0a0b0c0d"}).out;
    EXPECT_EQ(Tool({"decode", "--file", "-"},
                   "0x18,0x00,0x00,0x00\n01:00:00:00\r\n\t0200000014000000; 04000000 0A0B0C0D\n")
                  .out,
              plain);
    EXPECT_EQ(Tool({"decode"}, std::string("\x18\0\0\0\1\0\0\0\2\0\0\0\x14\0\0\0\4\0\0\0"
                                           "\x0a\x0b\x0c\x0d",
                                           24))
                  .out,
              plain);
}

TEST(Decode, AFile_MayHoldTheBytes) {
    const std::string file = testing::TempDir() + "plenxkit_decode_test.bin";
    EXPECT_EQ(Tool({"encode", "PingService", "number=7", "--binary", "--output", file}).code, 0);
    EXPECT_EQ(std::filesystem::file_size(file), 28u);
    const Outcome outcome = Tool({"decode", "--as", "19", "--file", file});
    std::filesystem::remove(file);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, HasSubstr("number          int64       7\n"));
}

TEST(Decode, WrongUsage_EndsWith2AndSaysWhy) {
    const auto error = [](const std::vector<std::string>& arguments) {
        const Outcome outcome = Tool(arguments);
        EXPECT_EQ(outcome.code, 2);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    };
    EXPECT_EQ(error({"decode", "zz"}), "plenxkit message: \"zz\" is not hex\n");
    EXPECT_EQ(error({"decode", "0x123"}),
              "plenxkit message: \"0x123\" has an odd number of digits; a byte has two\n");
    EXPECT_EQ(error({"decode", "--as", "Foo", "00"}),
              "plenxkit message: there is no message \"Foo\"; \"plenxkit message list\" shows them "
              "all\n");
    EXPECT_EQ(error({"decode", "--file", "/no/such/file"}),
              "plenxkit message: cannot read /no/such/file\n");
    EXPECT_THAT(error({"decode", "00", "--file", "x"}), HasSubstr("excludes"));
    EXPECT_THAT(error({}), HasSubstr("A subcommand is required"));
    EXPECT_THAT(error({"decode", "--foo"}), HasSubstr("--foo"));
}

TEST(Decode, LongText_IsWrappedWithinThePage) {
    const std::string text(300, 'x');
    const Outcome outcome =
        Tool({"decode", "--as", "4"}, Encoded({"NameChanged", "name=" + text}).out);
    std::istringstream lines(outcome.out);
    std::size_t longest = 0;
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    EXPECT_EQ(longest, 100u);
}

}  // namespace
}  // namespace PlenxMessage
