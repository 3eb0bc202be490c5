// Calls the routine behind the "Manager" endpoint, with all of its handlers, with any id and any
// bytes.
//
// Whatever comes, the answer must be one of the documented codes, a reply must be the 24 bytes of
// one int32, nothing may stay allocated, and at most one notification may reach the observers. The
// routine must serve every message that the peers' strict decoder accepts.

#include <cstdint>
#include <string>
#include <vector>

#include "common/result_code.h"
#include "companion/recorded_log.h"
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "platform/fake_platform.h"
#include "unit/facade/recording_observer.h"
#include "unit/rpc/manager_calls.h"
#include "wire/catalog.h"

namespace {

constexpr std::int32_t kExploreFlush = 18;

bool IsStatedCode(std::int32_t result) {
    return result == DistributedFs::kSuccess || result == DistributedFs::kOutOfTable ||
           result == DistributedFs::kReadFailed;
}

bool IsNotification(std::int32_t id) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(id);
    return shape != nullptr && shape->direction == PlenxWire::Direction::kNotification;
}

// The caller of these never sees a failure.
bool AlwaysSucceeds(std::int32_t id) {
    return id == kExploreFlush || !IsNotification(id);
}

void RequireReply(const ManagerReply& reply, std::int32_t linkStatus, std::int32_t id) {
    if (reply.result != DistributedFs::kSuccess) {
        REQUIRE(reply.size == 0 && !reply.hasBlock);
        return;
    }
    const PlenxWire::Decoded decoded =
        PlenxWire::DecodeReply(reply.bytes.data(), reply.bytes.size());
    REQUIRE(reply.size == 24 && decoded.Ok());
    const std::int32_t expected = id == PlenxWire::kLinkTypeQuery ? linkStatus : 0;
    REQUIRE(decoded.arguments == PlenxWire::Arguments{expected});
}

// Only the group name may be a reason to refuse a message that the peers' decoder accepts.
void RequireServed(std::int32_t id, const Bytes& message, const ManagerReply& reply,
                   std::size_t heard) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(id);
    if (!IsNotification(id) || !PlenxWire::DecodeAs(*shape, message.data(), message.size()).Ok()) {
        return;
    }
    const bool reachesExplorer =
        id == PlenxWire::kUpdateWindowsExplore || id == PlenxWire::kExploreFlushNotify;
    if (id == PlenxWire::kUpdateWindowsExplore) {
        return;  // an empty path is well-formed, but the server refuses it
    }
    REQUIRE(reply.result == DistributedFs::kSuccess || reply.result == DistributedFs::kOutOfTable);
    REQUIRE(heard == (reply.result == DistributedFs::kSuccess && !reachesExplorer ? 1U : 0U));
}

void CallOnce(FuzzInput& input) {
    const std::int32_t id = input.Byte() < 0xf0 ? input.Byte() % 32 : input.Number<std::int32_t>();
    const auto linkStatus = static_cast<std::int32_t>(input.Byte()) - 128;
    const Bytes message = input.Block(input.Number<std::uint16_t>());
    const std::int32_t size = static_cast<std::int32_t>(message.size());

    RecordedLog::Get().Clear();
    FakePlatform::Get().Reset();
    RecordingObserver observer;
    observer.linkStatus = linkStatus;
    DistributedFs::PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer);
    const ManagerReply reply = CallManager(id, message.empty() ? nullptr : message.data(), size);
    DistributedFs::PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer);

    REQUIRE(IsStatedCode(reply.result));
    REQUIRE(!AlwaysSucceeds(id) || reply.result == DistributedFs::kSuccess);
    REQUIRE(FakeRpc::Get().LiveBlocks() == 0);
    const std::size_t heard = observer.Events().size();
    REQUIRE(heard <= 1 && (heard == 0 || reply.result == DistributedFs::kSuccess));
    RequireReply(reply, heard == 1 ? linkStatus : 0, id);
    RequireServed(id, message, reply, heard);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    while (!input.IsEmpty()) {
        CallOnce(input);
    }
    return 0;
}
