#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "tool.h"
#include "wire/message.h"

namespace PlenxMessage {
namespace {

using testing::HasSubstr;

std::string ErrorOf(const std::vector<std::string>& words) {
    const Outcome outcome = Encoded(words);
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
}

std::string JsonError(const std::string& json) {
    const Outcome outcome = Tool({"encode", "--from", "-"}, json);
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
}

TEST(Encode, WritesHexOf32BytesALine) {
    const Outcome outcome = Encoded({"CreateGroup", "groupName=g_1", "kind=2", "groupArg=a"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "36 00 00 00 03 00 00 00 04 00 00 00 2c 00 00 00 04 00 00 00 02 00 00 00 30 00 00 00 "
              "04 00 00 00\n"
              "04 00 00 00 34 00 00 00 02 00 00 00 67 5f 31 00 02 00 00 00 61 00\n");
}

TEST(Encode, Binary_WritesTheBytesAlone) {
    const Outcome outcome = Encoded({"reply", "result=-2", "--binary"});
    EXPECT_EQ(outcome.out, std::string("\x18\0\0\0\1\0\0\0\2\0\0\0\x14\0\0\0\4\0\0\0"
                                       "\xfe\xff\xff\xff",
                                       24));
}

TEST(Encode, TakesTheArgumentsInAnyOrderAndTheIdAsANumber) {
    EXPECT_EQ(Encoded({"14", "value=1", "grpName=g_1", "sttsType=100"}).out,
              Encoded({"StatusNotify", "grpName=g_1", "sttsType=100", "value=1"}).out);
}

TEST(Encode, FillsInTheKindAndTheLength) {
    EXPECT_EQ(Encoded({"CreateGroup", "groupName=g_1", "groupArg=a"}).out,
              Encoded({"CreateGroup", "groupName=g_1", "kind=2", "groupArg=a"}).out);
    EXPECT_EQ(Encoded({"UpdateWindowsExplore", "path=43000000"}).out,
              Encoded({"UpdateWindowsExplore", "length=4", "path=43000000"}).out);
}

TEST(Encode, Utf16_IsTheTextWithItsNul) {
    EXPECT_EQ(Encoded({"UpdateWindowsExplore", "path=utf16:C\xc3\xbc\xf0\x9f\x98\x80"}).out,
              Encoded({"UpdateWindowsExplore", "path=4300 fc00 3dd8 00de 0000"}).out);
}

TEST(Encode, ValuesMayHoldBracketsAndEqualSigns) {
    EXPECT_EQ(Encoded({"NameChanged", "name=[a,b]=c"}).out,
              Tool({"encode", "--from", "-"},
                   R"({"message": "NameChanged", "arguments": {"name": "[a,b]=c"}})")
                  .out);
}

TEST(Encode, WrongDescription_IsNamed) {
    EXPECT_EQ(ErrorOf({"Foo"}),
              "plenxkit message: there is no message \"Foo\"; \"plenxkit message list\" shows them "
              "all\n");
    EXPECT_EQ(
        ErrorOf({"6", "a=1"}),
        "plenxkit message: there is no message 6; \"plenxkit message list\" shows them all\n");
    EXPECT_EQ(ErrorOf({}), "plenxkit message: the message to build is not named\n");
    EXPECT_EQ(ErrorOf({"CreateGroup", "groupName=g_1"}),
              "plenxkit message: groupArg (string) is missing; CreateGroup has: groupName, kind, "
              "groupArg\n");
    EXPECT_EQ(ErrorOf({"ErrorNotify", "code=5"}),
              "plenxkit message: ErrorNotify has no argument \"code\"; it has: errCode\n");
    EXPECT_EQ(ErrorOf({"ErrorNotify", "errCode=5", "errCode=5"}),
              "plenxkit message: errCode is given twice\n");
    EXPECT_EQ(ErrorOf({"ErrorNotify", "errCode"}),
              "plenxkit message: \"errCode\" is not of the form field=value\n");
    EXPECT_EQ(ErrorOf({"ErrorNotify", "errCode=2147483648"}),
              "plenxkit message: errCode: \"2147483648\" is not an int32\n");
    EXPECT_EQ(ErrorOf({"PingService", "number=1.5"}),
              "plenxkit message: number: \"1.5\" is not an int64\n");
    EXPECT_EQ(ErrorOf({"PingService", "number="}),
              "plenxkit message: number: \"\" is not an int64\n");
    EXPECT_EQ(ErrorOf({"CreateGroup", "groupName=g", "kind=3", "groupArg=a"}),
              "plenxkit message: argument 1 (kind): 3 where it must always be 2\n");
    EXPECT_EQ(ErrorOf({"UpdateWindowsExplore", "length=3", "path=0000"}),
              "plenxkit message: argument 1 (path): 2 bytes where the argument before it says 3\n");
    EXPECT_EQ(ErrorOf({"UpdateWindowsExplore", "path=C:"}),
              "plenxkit message: path: \"C\" has an odd "
              "number of digits; a byte has two\n");
    EXPECT_EQ(ErrorOf({"UpdateWindowsExplore", "path=utf16:\xff"}),
              "plenxkit message: path: the text after utf16: is not UTF-8\n");
}

TEST(Encode, WrongJson_IsNamed) {
    EXPECT_THAT(JsonError("{"), HasSubstr("plenxkit message: the JSON cannot be read: "));
    EXPECT_EQ(JsonError("[]"), "plenxkit message: the JSON lacks \"message\"\n");
    EXPECT_EQ(JsonError(R"({"message": 4})"),
              "plenxkit message: \"message\" in the JSON is not a text\n");
    EXPECT_EQ(JsonError(R"({"message": "NameChanged"})"),
              "plenxkit message: the JSON lacks \"arguments\"\n");
    EXPECT_EQ(JsonError(R"({"message": "NameChanged", "arguments": 1})"),
              "plenxkit message: \"arguments\" in the JSON is neither an object nor an array\n");
    EXPECT_EQ(JsonError(R"({"message": "NameChanged", "arguments": {"name": 1}})"),
              "plenxkit message: name: 1 is not a string\n");
    EXPECT_EQ(JsonError(R"({"message": "ErrorNotify", "arguments": {"errCode": "1"}})"),
              "plenxkit message: errCode: \"1\" is not an int32\n");
    EXPECT_EQ(JsonError(R"({"message": "PingService",
                            "arguments": {"number": 18446744073709551615}})"),
              "plenxkit message: number: \"18446744073709551615\" is not an int64\n");
    EXPECT_EQ(JsonError(R"({"message": "NameChanged", "arguments": [{"name": "name"}]})"),
              "plenxkit message: the JSON lacks \"value\"\n");
    EXPECT_EQ(Tool({"encode", "ErrorNotify", "errCode=1", "--from", "-"}).err,
              "plenxkit message: use either --from or a message and its fields, not both\n");
}

TEST(RoundTrip, OfEachMessage_ThroughJson_GivesTheSameBytes) {
    for (const auto& words : EachMessage()) {
        const std::string hex = Encoded(words).out;
        const Outcome json = Tool({"decode", "--json", "--as", words.front()}, hex);
        const Outcome again = Tool({"encode", "--from", "-"}, json.out);
        EXPECT_EQ(again.out, hex) << words.front() << again.err;
    }
}

TEST(RoundTrip, OfRandomMessages_ThroughJson_GivesTheSameBytes) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 300; ++round) {
        std::string text(random() % 20, '\0');
        for (char& byte : text) {
            byte = static_cast<char>(round % 2 == 0 ? random() : random() % 128);
        }
        PlenxWire::Bytes data(random() % 20);
        for (std::uint8_t& byte : data) {
            byte = static_cast<std::uint8_t>(random());
        }
        const PlenxWire::Bytes bytes =
            PlenxWire::Encode({text, std::string("id"), static_cast<std::int32_t>(random()),
                               static_cast<std::int32_t>(data.size()), data});
        const Outcome json = Tool({"decode", "--json", "--as", "DeviceOnline"},
                                  std::string(bytes.begin(), bytes.end()));
        ASSERT_EQ(json.code, 0) << json.out;
        ASSERT_EQ(Tool({"encode", "--binary", "--from", "-"}, json.out).out,
                  std::string(bytes.begin(), bytes.end()));
    }
}

TEST(RoundTrip, TheLargestInt64_KeepsItsDigits) {
    const std::string hex = Encoded({"PingService", "number=9223372036854775807"}).out;
    const Outcome json = Tool({"decode", "--json", "--as", "PingService"}, hex);
    EXPECT_THAT(json.out, HasSubstr("\"value\": 9223372036854775807\n"));
    EXPECT_EQ(Tool({"encode", "--from", "-"}, json.out).out, hex);
}

TEST(List, ShowsEveryMessageWithItsArguments) {
    EXPECT_EQ(Tool({"list"}).out,
              "Requests, library to service:\n"
              "   0  CreateGroup           groupName string, kind int32 = 2, groupArg string\n"
              "   1  DeleteGroup           groupName string\n"
              "   2  DeviceOnline          groupName string, deviceId string, isRemote int32, "
              "length int32, \n"
              "                            data int8 array\n"
              "   3  DeviceOffline         groupName string, deviceId string, isRemote int32, "
              "trigger int32\n"
              "   4  NameChanged           name string\n"
              "   5  RecvRemoteMessage     msgType int32, msgLen int32, message string\n"
              "   7  SetStringConfig       cfgType int32, value string\n"
              "   8  SetInt64Config        cfgType int32, value int64\n"
              "  19  PingService           number int64\n"
              "\n"
              "Notifications, service to library:\n"
              "   9  SendLocalMessage      msgType int32, msgLen int32, msg string\n"
              "  10  ConnectNotify         grpName string\n"
              "  11  DisconnectNotify      grpName string\n"
              "  12  ReconnectNotify       grpName string\n"
              "  13  LinkTypeQuery         grpName string, linkType int32\n"
              "  14  StatusNotify          grpName string, sttsType int32, value int32\n"
              "  15  ErrorNotify           errCode int32\n"
              "  16  DiskNameNotify        diskName string\n"
              "  17  UpdateWindowsExplore  length int32, path int8 array\n"
              "  18  ExploreFlushNotify    disk string, expFlushType int32\n"
              "\n"
              "Every one is answered by a reply: result int32\n");
}

TEST(List, OfOneMessage_DescribesItsArguments) {
    EXPECT_EQ(Tool({"list", "UpdateWindowsExplore"}).out,
              "UpdateWindowsExplore(17): notification, service to library\n"
              "\n"
              "  0  length          int32       the size of path\n"
              "  1  path            int8 array  UTF-16 text with its NUL\n");
    EXPECT_EQ(Tool({"list", "0"}).out,
              "CreateGroup(0): request, library to service\n"
              "\n"
              "  0  groupName       string\n"
              "  1  kind            int32       always 2\n"
              "  2  groupArg        string\n");
    EXPECT_EQ(Tool({"list", "reply"}).out,
              "reply: the answer to any message\n"
              "\n"
              "  0  result          int32\n");
    EXPECT_EQ(Tool({"list", "6"}).err, "plenxkit message: there is no message 6\n");
}

TEST(List, AsJson_HasAllOfThem) {
    const auto json = nlohmann::json::parse(Tool({"list", "--json"}).out);
    ASSERT_EQ(json.size(), 19u);
    EXPECT_EQ(json[0].dump(),
              R"({"arguments":[{"name":"groupName","type":"string"},)"
              R"({"always":2,"name":"kind","type":"int32"},{"name":"groupArg","type":"string"}],)"
              R"("id":0,"message":"CreateGroup","sort":"request"})");
    EXPECT_EQ(nlohmann::json::parse(Tool({"list", "19", "--json"}).out)["message"], "PingService");
}

TEST(Help, HasExamplesAndTheExitCodes) {
    for (const char* const command : {"decode", "encode", "log", "list"}) {
        const Outcome outcome = Tool({command, "--help"});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_THAT(outcome.out, HasSubstr(std::string("  plenxkit message ") + command));
    }
    EXPECT_THAT(
        Tool({"--help"}).out,
        HasSubstr("Exit codes: 0 all messages are good, 1 a message is broken, 2 wrong usage."));
}

}  // namespace
}  // namespace PlenxMessage
