// Tests that the library's server routine answers as the page says.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "page.h"
#include "rpc/manager_calls.h"
#include "rpc/message_bytes.h"

namespace WirePage {
namespace {

struct Notification {
    std::int32_t id;
    std::vector<std::uint8_t> message;
};

using Notifications = std::vector<Notification>;

// Returns a message of one int32 with the given descriptor.
Notification WithDescriptor(std::int32_t id, std::uint32_t tag, std::uint32_t offset,
                            std::uint32_t size) {
    return {id, FromWords({24, 1, tag, offset, size, 0})};
}

Notifications OfGroups(const std::vector<std::string>& names) {
    Notifications notifications;
    for (const std::string& name : names) {
        for (const std::int32_t id : {10, 11, 12}) {
            notifications.push_back({id, MessageOf({StringArg(name)})});
        }
        notifications.push_back({13, MessageOf({StringArg(name), Int32Arg(0)})});
        notifications.push_back({14, MessageOf({StringArg(name), Int32Arg(0), Int32Arg(0)})});
    }
    return notifications;
}

// The cases are in the order of the page's rows. The tests of the server itself cover the rows
// about an observer's exception and about missing memory.
std::vector<Notifications> CasesOfEachRow() {
    return {
        OfGroups({"g_1", "_0", "a_b_2147483647"}),
        {{18, {}}, {18, MessageOf({StringArg("E:")})}, WithDescriptor(18, 4, 20, 5)},
        {{0, {}}, {6, {}}, {8, FromWords({8, 0})}, {19, MessageOf({Int64Arg(0)})}, {-1, {}}},
        {{17, MessageOf({Int32Arg(3), ArrayArg({80, 0, 58})})},
         {17, MessageOf({Int32Arg(2), ArrayArg({80, 0})})}},
        {{15, {}},
         {15, {24, 0, 0, 0, 1, 0, 0}},
         {15, FromWords({8, 0})},
         {15, FromWords({20, 1, 2, 20, 0})},
         {15, FromWords({24, 2, 2, 20, 4, 0})},
         {15, FromWords({24, 0xffffffff, 2, 20, 4, 0})}},
        {{13, MessageOf({StringArg("g_1")})}, {14, MessageOf({StringArg("g_1"), Int32Arg(0)})}},
        {{15, MessageOf({StringArg("abc")})},
         {15, MessageOf({Int64Arg(5)})},
         {16, MessageOf({Int32Arg(5)})}},
        {WithDescriptor(15, 2, 21, 4), WithDescriptor(15, 2, 0xfffffff0, 4),
         WithDescriptor(16, 4, 20, 5), WithDescriptor(16, 4, 20, 0xffffffff)},
        {WithDescriptor(15, 2, 20, 3), WithDescriptor(16, 4, 20, 0)},
        {{17, MessageOf({Int32Arg(3), ArrayArg({80, 0, 0, 0})})},
         {17, MessageOf({Int32Arg(0), ArrayArg({})})},
         {17, MessageOf({Int32Arg(-1), ArrayArg({80, 0, 0, 0})})}},
        OfGroups({"", "g", "g_", "g_x", "g_1x", "g_-1", "g_+1", "g_ 1", "g_2147483648"}),
        {},
        {},
    };
}

TEST(WirePage, RowsAboutRefusedNotifications_AreTrue) {
    const std::vector<Cells> rows = RowsOf(Section(Page(), "## What is refused"));
    const std::vector<Notifications> cases = CasesOfEachRow();
    ASSERT_EQ(rows.size(), cases.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (const Notification& notification : cases[i]) {
            const ManagerReply reply = CallManager(notification.id, notification.message);
            EXPECT_EQ(std::to_string(reply.result), rows[i].at(1)) << rows[i].at(0);
            EXPECT_EQ(reply.hasBlock, rows[i].at(2) != "none") << rows[i].at(0);
            EXPECT_EQ(reply.bytes, reply.hasBlock ? Int32Message(0) : Bytes()) << rows[i].at(0);
        }
    }
}

}  // namespace
}  // namespace WirePage
