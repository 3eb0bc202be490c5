// One table of every message that travels between the library and its services. It has the number,
// the name, the direction and the arguments of each.

#ifndef PLENXKIT_WIRE_CATALOG_H
#define PLENXKIT_WIRE_CATALOG_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wire/message.h"

namespace PlenxWire {

enum MessageId : std::int32_t {
    // requests of the library to a service
    kCreateGroup = 0,
    kDeleteGroup = 1,
    kDeviceOnline = 2,
    kDeviceOffline = 3,
    kNameChanged = 4,
    kRecvRemoteMessage = 5,
    kSetStringConfig = 7,
    kSetInt64Config = 8,
    kPingService = 19,
    // notifications of a service to the library
    kSendLocalMessage = 9,
    kConnectNotify = 10,
    kDisconnectNotify = 11,
    kReconnectNotify = 12,
    kLinkTypeQuery = 13,
    kStatusNotify = 14,
    kErrorNotify = 15,
    kDiskNameNotify = 16,
    kUpdateWindowsExplore = 17,
    kExploreFlushNotify = 18,
};

enum class Direction { kRequest, kNotification };

struct ArgumentShape {
    const char* name;
    ArgumentType type;
    std::optional<std::int32_t> always = std::nullopt;  // an int32 that never varies
    std::optional<std::int32_t> least = std::nullopt;   // an int32 that is never less
};

struct MessageShape {
    std::int32_t id;
    const char* name;
    Direction direction;
    std::vector<ArgumentShape> arguments;
};

/// All messages, in ascending order of their ids.
const std::vector<MessageShape>& Catalog();

/// Null when the system has no such message.
const MessageShape* FindMessage(std::int32_t id);
const MessageShape* FindMessage(std::string_view name);

/// The shape of a reply: one int32, in either direction.
const MessageShape& ReplyShape();

struct ShapeProblem {
    std::optional<std::size_t> argument;  // empty when the number of arguments is wrong
    bool ofType = false;
    std::string text;
};

/// All problems of the arguments of such a message. An array's size must stand in the argument
/// before it.
std::vector<ShapeProblem> ShapeProblems(const MessageShape& shape, const Arguments& arguments);

/// The first of these problems; empty when there is no problem.
std::string CheckShape(const MessageShape& shape, const Arguments& arguments);

/// Decodes a message of the given id strictly: the layout, then the shape.
Decoded DecodeAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size);

/// Decodes a reply: one int32, in either direction.
Decoded DecodeReply(const std::uint8_t* data, std::size_t size);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_CATALOG_H
