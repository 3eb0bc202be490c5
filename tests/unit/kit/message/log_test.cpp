#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool.h"
#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxMessage {
namespace {

using PlenxWire::Bytes;

const char kLog[] =
    "2026-01-31 12:34:56.000 pc runs\n"
    "2026-01-31 12:34:56.789 pc received PingService(19) number:7\r\n"
    "2026-01-31 12:34:56.789 pc answered PingService(19) result:0 reply:0\n"
    "2026-01-31 12:34:56.790 pc sends ErrorNotify(15) errCode:5\n"
    "2026-01-31 12:34:56.791 pc Manager answered ErrorNotify(15) result:0 reply:0\n";

const char kErrorNotify[] =
    "ErrorNotify(15): notification, service to library, 24 bytes\n"
    "\n"
    "    offset      size  field           type        value\n"
    "         0         4  total size      uint32      24\n"
    "         4         4  argument count  uint32      1\n"
    "         8        12  descriptor 0    3 x uint32  tag 2, offset 20, size 4\n"
    "        20         4  errCode         int32       5\n"
    "\n"
    "good\n";

TEST(Log, ShowsTheMessagesThatWereReceivedAndSent) {
    const Outcome outcome = Tool({"log"}, kLog);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out,
              "line 2: 2026-01-31 12:34:56.789 pc received\n"
              "PingService(19): request, library to service, 28 bytes\n"
              "\n"
              "    offset      size  field           type        value\n"
              "         0         4  total size      uint32      28\n"
              "         4         4  argument count  uint32      1\n"
              "         8        12  descriptor 0    3 x uint32  tag 3, offset 20, size 8\n"
              "        20         8  number          int64       7\n"
              "\n"
              "good\n"
              "\n"
              "line 4: 2026-01-31 12:34:56.790 pc sends\n" +
                  std::string(kErrorNotify) +
                  "\nMessages: 2, good: 2, broken: 0, cut by the log: 0\n");
}

TEST(Log, BrokenMessages_EndWith1AndAreShownAlone) {
    const Bytes broken = {1, 2, 3};
    const std::string log =
        std::string(kLog) + "2026-01-31 12:34:57.000 pc sends hostile (three bytes) " +
        PlenxWire::RenderMessage(PlenxWire::kErrorNotify, broken.data(), broken.size()) + "\n" +
        "2026-01-31 12:34:58.000 pc received DeleteGroup(1) broken: it is wrong\n";
    const Outcome outcome = Tool({"log", "--broken"}, log);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out,
              "line 6: 2026-01-31 12:34:57.000 pc sends hostile (three bytes)\n"
              "ErrorNotify(15): notification, service to library, 3 bytes\n"
              "\n"
              "    offset      size  field           type        value\n"
              "         0         3  (no field)      bytes       [3] 01 02 03\n"
              "\n"
              "BROKEN\n"
              "  at offset 3  3 bytes are too few: the header alone has 8\n"
              "\n"
              "line 7: 2026-01-31 12:34:58.000 pc received\n"
              "DeleteGroup(1)\n"
              "\n"
              "  BROKEN according to the log:  it is wrong\n"
              "\n"
              "Messages: 4, good: 2, broken: 2, cut by the log: 0\n");
}

TEST(Log, MessageThatTheLogCut_IsNeitherGoodNorBroken) {
    const std::string log =
        "2026-01-31 12:34:57.000 pc received " +
        PlenxWire::RenderMessage(PlenxWire::kNameChanged, {std::string(2000, 'x')}) + "\n";
    const Outcome outcome = Tool({"log"}, log);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out,
              "line 1: 2026-01-31 12:34:57.000 pc received\n"
              "NameChanged(4)\n"
              "\n"
              "  cut by the log:  name: the line shows only the first 1000 bytes\n"
              "\n"
              "Messages: 1, good: 0, broken: 0, cut by the log: 1\n");
}

TEST(Log, AsJson_HasOneObjectPerLine) {
    const std::string log =
        std::string(kLog) + "2026-01-31 12:34:58.000 pc received DeleteGroup(1) broken: \xff\n";
    const Outcome outcome = Tool({"log", "--json"}, log);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(
        outcome.out,
        R"({"line":2,"context":"2026-01-31 12:34:56.789 pc received","message":"PingService",)"
        R"("id":19,"sort":"request","good":true,"size":28,"statedSize":28,"argumentCount":1,)"
        R"("arguments":[{"name":"number","type":"int64","tag":3,"offset":20,"size":8,"value":7}],)"
        R"("problems":[],"hex":"1c 00 00 00 01 00 00 00 03 00 00 00 14 00 00 00 08 00 00 00 )"
        R"(07 00 00 00 00 00 00 00"})"
        "\n"
        R"({"line":4,"context":"2026-01-31 12:34:56.790 pc sends","message":"ErrorNotify",)"
        R"("id":15,"sort":"notification","good":true,"size":24,"statedSize":24,)"
        R"("argumentCount":1,"arguments":[{"name":"errCode","type":"int32","tag":2,"offset":20,)"
        R"("size":4,"value":5}],"problems":[],"hex":"18 00 00 00 01 00 00 00 02 00 00 00 14 00 )"
        R"(00 00 04 00 00 00 05 00 00 00"})"
        "\n"
        R"({"line":6,"context":"2026-01-31 12:34:58.000 pc received","message":"DeleteGroup",)"
        R"("id":1,"sort":"request","good":false,"error":")"
        "\xef\xbf\xbd\"}\n");
}

TEST(Log, OtherLines_HoldNoMessages) {
    const Outcome outcome =
        Tool({"log"},
             "\n"
             "word\n"
             "2026-01-31 12:34:56.789 pc\n"
             "2026-01-31 12:34:56.789 pc received \n"
             "2026-01-31 12:34:56.789 pc sends hostile (never closed\n"
             "2026-01-31 12:34:56.789 pc says received ErrorNotify(15) errCode:5\n"
             "2026-01-31 12:34:56.789 pc received Unheard(15) errCode:5\n");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "Messages: 0, good: 0, broken: 0, cut by the log: 0\n");
}

TEST(Log, WithoutALineOfAService_SaysSo) {
    const std::string line =
        "2026-01-31 12:34:56.789 [info] [36] [PLENXSDK] plenx manager Init"
        "(DistributedFs::PLENXManager::Init)\r\n";
    for (const std::string& log : {line, line + "2026-01-31 12:34:56 pc runs\n", std::string()}) {
        const Outcome outcome = Tool({"log"}, log);
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.out, "Messages: 0, good: 0, broken: 0, cut by the log: 0\n");
        EXPECT_EQ(outcome.err,
                  "plenxkit message: the input has no line of a service's log, such as:\n"
                  "2026-01-31 12:34:56.789 pc received PingService(19) number:7\n");
        EXPECT_EQ(Tool({"log", "--json"}, log).out, "");
    }
}

TEST(Log, WithALineOfAService_IsALogWithoutMessagesAtMost) {
    for (const char* service : {"office", "pc", "phone"}) {
        const std::string line = "2026-01-31 12:34:56.789 " + std::string(service) + " runs\r\n";
        EXPECT_EQ(Tool({"log"}, "other\n" + line).err, "");
    }
}

TEST(Log, AFileThatIsMissing_EndsWith2) {
    const Outcome outcome = Tool({"log", "/no/such/log"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.err, "plenxkit message: cannot read /no/such/log\n");
}

}  // namespace
}  // namespace PlenxMessage
