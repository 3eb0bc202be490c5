#include "wire/render.h"

#include <gtest/gtest.h>

#include "wire/catalog.h"

namespace PlenxWire {
namespace {

std::string Rendered(std::int32_t id, const Bytes& message) {
    return RenderMessage(id, message.data(), message.size());
}

TEST(Render, AMessage_IsItsNameItsNumberAndItsNamedArguments) {
    EXPECT_EQ(Rendered(kDeviceOnline, Encode({std::string("g_1"), std::string("dev"),
                                              std::int32_t{0}, std::int32_t{3}, Bytes{1, 2, 255}})),
              "DeviceOnline(2) groupName:\"g_1\" deviceId:\"dev\" isRemote:0 length:3 "
              "data:[3] 01 02 ff");
    EXPECT_EQ(Rendered(kPingService, Encode({std::int64_t{-9000000000}})),
              "PingService(19) number:-9000000000");
}

TEST(Render, AnUnknownId_ShowsItsArgumentsByNumber) {
    EXPECT_EQ(Rendered(6, Encode({std::int32_t{4}, std::string("x")})), "message(6) 0:4 1:\"x\"");
}

TEST(Render, ABrokenMessage_ShowsTheErrorAndTheBytes) {
    EXPECT_EQ(Rendered(kDeleteGroup, {1, 2, 3}),
              "DeleteGroup(1) broken: 3 bytes are too few: the header alone has 8; "
              "bytes [3] 01 02 03");
}

TEST(RenderText, KeepsUtf8AndEscapesWhatWouldBreakALine) {
    EXPECT_EQ(RenderText("Gr\xc3\xbc\xc3\x9f \xe7\xbe\xa4 \xf0\x9f\x98\x80"),
              "\"Gr\xc3\xbc\xc3\x9f \xe7\xbe\xa4 \xf0\x9f\x98\x80\"");
    EXPECT_EQ(RenderText(std::string("a\0b\n\"\\\x7f", 7)), R"("a\x00b\n\"\\\x7f")");
    EXPECT_EQ(RenderText("\xc2\x85 \xe2\x80\xa8"), R"("\xc2\x85 \xe2\x80\xa8")");
}

TEST(RenderText, EscapesEveryByteThatIsNotUtf8) {
    EXPECT_EQ(RenderText("\xff\x80"), R"("\xff\x80")");
    EXPECT_EQ(RenderText("\xc0\xaf"), R"("\xc0\xaf")");                  // overlong
    EXPECT_EQ(RenderText("\xed\xa0\x80"), R"("\xed\xa0\x80")");          // surrogate
    EXPECT_EQ(RenderText("\xf4\x90\x80\x80"), R"("\xf4\x90\x80\x80")");  // above 10FFFF
    EXPECT_EQ(RenderText("a\xe2\x82"), R"("a\xe2\x82")");                // cut
}

TEST(RenderText, OfLongText_IsCutAndSaysSo) {
    EXPECT_EQ(RenderText(std::string(2000, 'x')),
              "\"" + std::string(1000, 'x') + "\"... of 2000 bytes");
}

TEST(RenderBytes, OfManyBytes_IsCut) {
    EXPECT_EQ(RenderBytes(nullptr, 0), "[0]");
    const std::string line = RenderBytes(Bytes(65, 1).data(), 65);
    EXPECT_EQ(line.substr(0, 10), "[65] 01 01");
    EXPECT_EQ(line.substr(line.size() - 7), " 01 ...");
}

}  // namespace
}  // namespace PlenxWire
