#include "reactions.h"

#include <optional>

#include "wire/catalog.h"

namespace PlenxService {
namespace {

using PlenxWire::Arguments;
using PlenxWire::Bytes;

// Our own kinds; the library passes any status kind on.
constexpr std::int32_t kGroupStatus = 100;
constexpr std::int32_t kNameStatus = 101;
constexpr std::int32_t kLinkType = 0;
constexpr std::int32_t kDriveAdded = 0;
constexpr std::int32_t kDriveChanged = 2;
const std::string kDisk = "P:";

struct Cause {
    const Arguments& arguments;
    const PeerState& state;
    const std::wstring& dataFolder;

    const std::string& String(std::size_t index) const {
        return std::get<std::string>(arguments[index]);
    }
    std::int32_t Int32(std::size_t index) const { return std::get<std::int32_t>(arguments[index]); }
};

Notification Make(std::int32_t id, const Arguments& arguments) {
    return {id, PlenxWire::Encode(arguments), {}, 0};
}

// UTF-16 with its terminating NUL.
Bytes PathBytes(const std::wstring& path) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(path.c_str());
    return Bytes(bytes, bytes + (path.size() + 1) * sizeof(wchar_t));
}

Notifications GroupUp(const Cause& cause) {
    const std::string& group = cause.String(0);
    return {Make(PlenxWire::kConnectNotify, {group}),
            Make(PlenxWire::kStatusNotify, {group, kGroupStatus, 1})};
}

Notifications GroupGone(const Cause& cause) {
    return {Make(PlenxWire::kDisconnectNotify, {cause.String(0)})};
}

Notifications LocalDeviceUp(const Cause& cause) {
    return {Make(PlenxWire::kLinkTypeQuery, {cause.String(0), kLinkType}),
            Make(PlenxWire::kDiskNameNotify, {kDisk})};
}

Notifications RemoteDeviceUp(const Cause& cause) {
    const Bytes path = PathBytes(cause.dataFolder);
    return {Make(PlenxWire::kReconnectNotify, {cause.String(0)}),
            Make(PlenxWire::kUpdateWindowsExplore, {static_cast<std::int32_t>(path.size()), path}),
            Make(PlenxWire::kExploreFlushNotify, {kDisk, kDriveAdded})};
}

Notifications LocalDeviceGone(const Cause&) {
    return {Make(PlenxWire::kExploreFlushNotify, {kDisk, kDriveChanged})};
}

Notifications RemoteDeviceGone(const Cause& cause) {
    return {Make(PlenxWire::kErrorNotify, {cause.Int32(3)})};
}

// The request names no group, so every group hears of it.
Notifications NewName(const Cause& cause) {
    Notifications notifications;
    for (const auto& group : cause.state.groups) {
        notifications.push_back(Make(PlenxWire::kStatusNotify, {group.first, kNameStatus, 1}));
    }
    return notifications;
}

Notifications RemoteMessage(const Cause& cause) {
    return {Make(PlenxWire::kSendLocalMessage, cause.arguments)};
}

struct Reaction {
    std::int32_t request;
    std::optional<bool> remote;  // for device requests, the kind of device
    Notifications (*notifications)(const Cause& cause);
};

constexpr Reaction kReactions[] = {
    {PlenxWire::kCreateGroup, {}, GroupUp},               // 10, 14
    {PlenxWire::kDeleteGroup, {}, GroupGone},             // 11
    {PlenxWire::kDeviceOnline, false, LocalDeviceUp},     // 13, 16
    {PlenxWire::kDeviceOnline, true, RemoteDeviceUp},     // 12, 17, 18
    {PlenxWire::kDeviceOffline, false, LocalDeviceGone},  // 18
    {PlenxWire::kDeviceOffline, true, RemoteDeviceGone},  // 15
    {PlenxWire::kNameChanged, {}, NewName},               // 14 for each group
    {PlenxWire::kRecvRemoteMessage, {}, RemoteMessage},   // 9
};

}  // namespace

Notifications ReactionsTo(std::int32_t request, const Arguments& arguments, const PeerState& state,
                          const std::wstring& dataFolder) {
    const Cause cause{arguments, state, dataFolder};
    for (const Reaction& reaction : kReactions) {
        if (reaction.request == request &&
            (!reaction.remote || *reaction.remote == (cause.Int32(2) != 0))) {
            return reaction.notifications(cause);
        }
    }
    return {};
}

}  // namespace PlenxService
