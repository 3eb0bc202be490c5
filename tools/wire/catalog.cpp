#include "wire/catalog.h"

#include <algorithm>

namespace PlenxWire {
namespace {

constexpr ArgumentType kInt32 = ArgumentType::kInt32;
constexpr ArgumentType kInt64 = ArgumentType::kInt64;
constexpr ArgumentType kString = ArgumentType::kString;
constexpr ArgumentType kInt8Array = ArgumentType::kInt8Array;
constexpr Direction kRequest = Direction::kRequest;
constexpr Direction kNotification = Direction::kNotification;

const MessageShape kReply = {-1, "reply", kRequest, {{"result", kInt32}}};

Decoded Checked(Decoded decoded, const MessageShape& shape) {
    if (decoded.Ok()) {
        decoded.error = CheckShape(shape, decoded.arguments);
    }
    if (!decoded.Ok()) {
        decoded.arguments.clear();
    }
    return decoded;
}

std::string CheckArgument(const ArgumentShape& shape, const Arguments& arguments,
                          std::size_t index) {
    const Argument& argument = arguments[index];
    const std::string who = "argument " + std::to_string(index) + " (" + shape.name + "): ";
    if (TypeOf(argument) != shape.type) {
        return who + NameOf(TypeOf(argument)) + " where it must be " + NameOf(shape.type);
    }
    if (shape.always && std::get<std::int32_t>(argument) != *shape.always) {
        return who + std::to_string(std::get<std::int32_t>(argument)) +
               " where it must always be " + std::to_string(*shape.always);
    }
    if (shape.type == kInt8Array) {
        const std::int64_t stated = std::get<std::int32_t>(arguments[index - 1]);
        const std::size_t size = std::get<Bytes>(argument).size();
        if (stated < 0 || static_cast<std::uint64_t>(stated) != size) {
            return who + std::to_string(size) + " bytes where the argument before it says " +
                   std::to_string(stated);
        }
    }
    return {};
}

}  // namespace

const std::vector<MessageShape>& Catalog() {
    static const std::vector<MessageShape> catalog = {
        {kCreateGroup,
         "CreateGroup",
         kRequest,
         {{"groupName", kString}, {"kind", kInt32, 2}, {"groupArg", kString}}},
        {kDeleteGroup, "DeleteGroup", kRequest, {{"groupName", kString}}},
        {kDeviceOnline,
         "DeviceOnline",
         kRequest,
         {{"groupName", kString},
          {"deviceId", kString},
          {"isRemote", kInt32},
          {"length", kInt32},
          {"data", kInt8Array}}},
        {kDeviceOffline,
         "DeviceOffline",
         kRequest,
         {{"groupName", kString},
          {"deviceId", kString},
          {"isRemote", kInt32},
          {"trigger", kInt32}}},
        {kNameChanged, "NameChanged", kRequest, {{"name", kString}}},
        {kRecvRemoteMessage,
         "RecvRemoteMessage",
         kRequest,
         {{"msgType", kInt32}, {"msgLen", kInt32}, {"message", kString}}},
        {kSetStringConfig, "SetStringConfig", kRequest, {{"cfgType", kInt32}, {"value", kString}}},
        {kSetInt64Config, "SetInt64Config", kRequest, {{"cfgType", kInt32}, {"value", kInt64}}},
        {kSendLocalMessage,
         "SendLocalMessage",
         kNotification,
         {{"msgType", kInt32}, {"msgLen", kInt32}, {"msg", kString}}},
        {kConnectNotify, "ConnectNotify", kNotification, {{"grpName", kString}}},
        {kDisconnectNotify, "DisconnectNotify", kNotification, {{"grpName", kString}}},
        {kReconnectNotify, "ReconnectNotify", kNotification, {{"grpName", kString}}},
        {kLinkTypeQuery,
         "LinkTypeQuery",
         kNotification,
         {{"grpName", kString}, {"linkType", kInt32}}},
        {kStatusNotify,
         "StatusNotify",
         kNotification,
         {{"grpName", kString}, {"sttsType", kInt32}, {"value", kInt32}}},
        {kErrorNotify, "ErrorNotify", kNotification, {{"errCode", kInt32}}},
        {kDiskNameNotify, "DiskNameNotify", kNotification, {{"diskName", kString}}},
        {kUpdateWindowsExplore,
         "UpdateWindowsExplore",
         kNotification,
         {{"length", kInt32}, {"path", kInt8Array}}},
        {kExploreFlushNotify,
         "ExploreFlushNotify",
         kNotification,
         {{"disk", kString}, {"expFlushType", kInt32}}},
        {kPingService, "PingService", kRequest, {{"number", kInt64}}},
    };
    return catalog;
}

const MessageShape* FindMessage(std::int32_t id) {
    const auto& all = Catalog();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const MessageShape& shape) { return shape.id == id; });
    return found == all.end() ? nullptr : &*found;
}

const MessageShape* FindMessage(std::string_view name) {
    const auto& all = Catalog();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const MessageShape& shape) { return shape.name == name; });
    return found == all.end() ? nullptr : &*found;
}

std::string CheckShape(const MessageShape& shape, const Arguments& arguments) {
    if (arguments.size() != shape.arguments.size()) {
        return std::to_string(arguments.size()) + " arguments where " + shape.name + " has " +
               std::to_string(shape.arguments.size());
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string error = CheckArgument(shape.arguments[i], arguments, i);
        if (!error.empty()) {
            return error;
        }
    }
    return {};
}

Decoded DecodeAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size) {
    return Checked(Decode(data, size), shape);
}

Decoded DecodeReply(const std::uint8_t* data, std::size_t size) {
    return DecodeAs(kReply, data, size);
}

}  // namespace PlenxWire
