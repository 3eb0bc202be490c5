#include "wire/catalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace PlenxWire {
namespace {

using testing::ElementsAre;

std::vector<std::int32_t> IdsOf(Direction direction) {
    std::vector<std::int32_t> ids;
    for (const MessageShape& shape : Catalog()) {
        if (shape.direction == direction) {
            ids.push_back(shape.id);
        }
    }
    return ids;
}

std::string Signature(const MessageShape& shape) {
    std::string text = shape.name;
    for (const ArgumentShape& argument : shape.arguments) {
        text += text == shape.name ? "(" : ", ";
        text += NameOf(argument.type);
    }
    return text + ")";
}

TEST(Catalog, HasTheRequestsAndTheNotifications) {
    EXPECT_THAT(IdsOf(Direction::kRequest), ElementsAre(0, 1, 2, 3, 4, 5, 7, 8, 19));
    EXPECT_THAT(IdsOf(Direction::kNotification),
                ElementsAre(9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
}

TEST(Catalog, HasTheArgumentsOfEachMessage) {
    std::vector<std::string> signatures;
    for (const MessageShape& shape : Catalog()) {
        signatures.push_back(Signature(shape));
    }
    EXPECT_THAT(
        signatures,
        ElementsAre("CreateGroup(string, int32, string)", "DeleteGroup(string)",
                    "DeviceOnline(string, string, int32, int32, int8 array)",
                    "DeviceOffline(string, string, int32, int32)", "NameChanged(string)",
                    "RecvRemoteMessage(int32, int32, string)", "SetStringConfig(int32, string)",
                    "SetInt64Config(int32, int64)", "SendLocalMessage(int32, int32, string)",
                    "ConnectNotify(string)", "DisconnectNotify(string)", "ReconnectNotify(string)",
                    "LinkTypeQuery(string, int32)", "StatusNotify(string, int32, int32)",
                    "ErrorNotify(int32)", "DiskNameNotify(string)",
                    "UpdateWindowsExplore(int32, int8 array)", "ExploreFlushNotify(string, int32)",
                    "PingService(int64)"));
}

TEST(Catalog, FindsByNumberAndByName) {
    for (const MessageShape& shape : Catalog()) {
        EXPECT_EQ(FindMessage(shape.id), &shape);
        EXPECT_EQ(FindMessage(shape.name), &shape);
    }
    EXPECT_EQ(FindMessage(6), nullptr);
    EXPECT_EQ(FindMessage(-1), nullptr);
    EXPECT_EQ(FindMessage("createGroup"), nullptr);
}

TEST(CheckShape, WrongCount_IsNamed) {
    EXPECT_EQ(CheckShape(*FindMessage(kDeleteGroup), {std::string("g_1"), std::int32_t{1}}),
              "2 arguments where DeleteGroup has 1");
}

TEST(CheckShape, WrongType_IsNamed) {
    EXPECT_EQ(CheckShape(*FindMessage(kPingService), {std::int32_t{1}}),
              "argument 0 (number): int32 where it must be int64");
}

TEST(CheckShape, CreateGroup_AlwaysHasKind2) {
    const MessageShape& shape = *FindMessage(kCreateGroup);
    EXPECT_EQ(CheckShape(shape, {std::string("g_1"), std::int32_t{2}, std::string("a")}), "");
    EXPECT_EQ(CheckShape(shape, {std::string("g_1"), std::int32_t{3}, std::string("a")}),
              "argument 1 (kind): 3 where it must always be 2");
}

TEST(CheckShape, ArrayLength_MustBeTheOneStatedBeforeIt) {
    const MessageShape& shape = *FindMessage(kUpdateWindowsExplore);
    EXPECT_EQ(CheckShape(shape, {std::int32_t{2}, Bytes{1, 2}}), "");
    EXPECT_EQ(CheckShape(shape, {std::int32_t{3}, Bytes{1, 2}}),
              "argument 1 (path): 2 bytes where the argument before it says 3");
}

// The library refuses an empty path, though not empty data of a device.
TEST(CheckShape, LengthOfAPath_IsAtLeast1) {
    const MessageShape& shape = *FindMessage(kUpdateWindowsExplore);
    EXPECT_EQ(CheckShape(shape, {std::int32_t{0}, Bytes{}}),
              "argument 0 (length): 0 where it must be at least 1");
    EXPECT_EQ(CheckShape(shape, {std::int32_t{-1}, Bytes{1, 2}}),
              "argument 0 (length): -1 where it must be at least 1");
    EXPECT_EQ(CheckShape(shape, {std::int32_t{1}, Bytes{1}}), "");
    EXPECT_EQ(CheckShape(*FindMessage(kDeviceOnline), {std::string("g_1"), std::string("d"),
                                                       std::int32_t{0}, std::int32_t{0}, Bytes{}}),
              "");
}

TEST(CheckShape, ArrayLength_ThatIsNegative_IsNoSize) {
    EXPECT_EQ(
        CheckShape(*FindMessage(kDeviceOnline), {std::string("g_1"), std::string("d"),
                                                 std::int32_t{0}, std::int32_t{-1}, Bytes{1, 2}}),
        "argument 4 (data): 2 bytes where the argument before it says -1");
}

TEST(DecodeAs, ReportsTheLayoutBeforeTheShape) {
    const Bytes message = Encode({std::int64_t{7}});
    EXPECT_TRUE(DecodeAs(*FindMessage(kPingService), message.data(), message.size()).Ok());
    EXPECT_EQ(DecodeAs(*FindMessage(kErrorNotify), message.data(), message.size()).error,
              "argument 0 (errCode): int64 where it must be int32");
    EXPECT_EQ(DecodeAs(*FindMessage(kPingService), message.data(), 7).error,
              "7 bytes are too few: the header alone has 8");
}

TEST(DecodeReply, TakesOneInt32Alone) {
    const Bytes good = Encode({std::int32_t{5}});
    EXPECT_EQ(DecodeReply(good.data(), good.size()).arguments, Arguments{std::int32_t{5}});
    const Bytes two = Encode({std::int32_t{5}, std::int32_t{6}});
    EXPECT_EQ(DecodeReply(two.data(), two.size()).error, "2 arguments where reply has 1");
}

}  // namespace
}  // namespace PlenxWire
