// Feeds any bytes as a name to the code that splits "name_3" into group and service, and compares
// it with a second implementation (a regular grammar and a number in 64 bits).

#include <cstdint>
#include <optional>
#include <string>

#include "common/result_code.h"
#include "companion/recorded_log.h"
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "unit/facade/recording_observer.h"
#include "unit/rpc/manager_calls.h"
#include "wire/catalog.h"

namespace {

// Returns what the observer must hear if the name is valid.
std::optional<std::string> ExpectedArguments(const std::string& name) {
    std::size_t digits = name.size();
    while (digits > 0 && name[digits - 1] >= '0' && name[digits - 1] <= '9') {
        --digits;
    }
    std::string number = name.substr(digits);
    if (number.empty() || digits == 0 || name[digits - 1] != '_') {
        return std::nullopt;
    }
    number.erase(0, number.find_first_not_of('0'));
    if (number.size() > 10 || std::stoull("0" + number) > 0x7fffffff) {
        return std::nullopt;
    }
    return "(" + (number.empty() ? "0" : number) + ", " + name.substr(0, digits - 1);
}

// Every notification that names a group.
struct Case {
    std::int32_t id;
    const char* event;
    PlenxWire::Arguments further;
    const char* end;
};

const Case kCases[] = {
    {PlenxWire::kConnectNotify, "NotifyConnect", {}, ")"},
    {PlenxWire::kDisconnectNotify, "NotifyDisconnect", {}, ")"},
    {PlenxWire::kReconnectNotify, "NotifyReconnect", {}, ")"},
    {PlenxWire::kLinkTypeQuery, "QueryLinkStatus", {std::int32_t{5}}, ", 5, 0)"},
    {PlenxWire::kStatusNotify, "NotifyStatus", {std::int32_t{6}, std::int32_t{1}}, ", 6, true)"},
};

void Try(const Case& one, const std::string& name) {
    PlenxWire::Arguments arguments{name};
    arguments.insert(arguments.end(), one.further.begin(), one.further.end());
    RecordedLog::Get().Clear();
    RecordingObserver observer;
    DistributedFs::PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer);
    const ManagerReply reply = CallManager(one.id, PlenxWire::Encode(arguments));
    DistributedFs::PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer);

    const std::optional<std::string> expected = ExpectedArguments(name);
    REQUIRE(reply.result == (expected ? DistributedFs::kSuccess : DistributedFs::kOutOfTable));
    REQUIRE(observer.Events().size() == (expected ? 1U : 0U));
    REQUIRE(!expected || observer.Events()[0] == one.event + *expected + one.end);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const Case& one = kCases[input.Byte() % std::size(kCases)];
    const std::string name = input.Text(size);
    Try(one, name);
    return 0;
}
