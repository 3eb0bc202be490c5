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

bool StatesSize(const Argument& argument, std::size_t size) {
    const std::int32_t* const stated = std::get_if<std::int32_t>(&argument);
    return stated && *stated >= 0 && static_cast<std::uint32_t>(*stated) == size;
}

std::string ValueProblem(const ArgumentShape& shape, const Arguments& arguments,
                         std::size_t index) {
    const Argument& argument = arguments[index];
    if (shape.always && std::get<std::int32_t>(argument) != *shape.always) {
        return std::to_string(std::get<std::int32_t>(argument)) + " where it must always be " +
               std::to_string(*shape.always);
    }
    if (shape.least && std::get<std::int32_t>(argument) < *shape.least) {
        return std::to_string(std::get<std::int32_t>(argument)) + " where it must be at least " +
               std::to_string(*shape.least);
    }
    if (shape.type != kInt8Array || TypeOf(arguments[index - 1]) != kInt32) {
        return {};
    }
    const std::size_t size = std::get<Bytes>(argument).size();
    if (StatesSize(arguments[index - 1], size)) {
        return {};
    }
    return std::to_string(size) + " bytes where the argument before it says " +
           std::to_string(std::get<std::int32_t>(arguments[index - 1]));
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
         {{"length", kInt32, {}, 1}, {"path", kInt8Array}}},
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

const MessageShape& ReplyShape() {
    return kReply;
}

std::vector<ShapeProblem> ShapeProblems(const MessageShape& shape, const Arguments& arguments) {
    if (arguments.size() != shape.arguments.size()) {
        return {{std::nullopt, false,
                 std::to_string(arguments.size()) + " arguments where " + shape.name + " has " +
                     std::to_string(shape.arguments.size())}};
    }
    std::vector<ShapeProblem> problems;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const ArgumentShape& expected = shape.arguments[i];
        const ArgumentType type = TypeOf(arguments[i]);
        const bool ofType = type != expected.type;
        const std::string text =
            ofType ? std::string(NameOf(type)) + " where it must be " + NameOf(expected.type)
                   : ValueProblem(expected, arguments, i);
        if (!text.empty()) {
            problems.push_back(
                {i, ofType, "argument " + std::to_string(i) + " (" + expected.name + "): " + text});
        }
    }
    return problems;
}

std::string CheckShape(const MessageShape& shape, const Arguments& arguments) {
    const std::vector<ShapeProblem> problems = ShapeProblems(shape, arguments);
    return problems.empty() ? std::string() : problems.front().text;
}

Decoded DecodeAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size) {
    return Checked(Decode(data, size), shape);
}

Decoded DecodeReply(const std::uint8_t* data, std::size_t size) {
    return DecodeAs(kReply, data, size);
}

}  // namespace PlenxWire
