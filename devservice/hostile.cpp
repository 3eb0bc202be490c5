#include "hostile.h"

#include <initializer_list>
#include <string>

#include "wire/catalog.h"

namespace PlenxService {
namespace {

using PlenxWire::Arguments;
using PlenxWire::Bytes;

constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

Bytes Words(std::initializer_list<std::uint32_t> words) {
    Bytes bytes;
    for (const std::uint32_t word : words) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(word >> shift));
        }
    }
    return bytes;
}

struct BrokenMessage {
    const char* remark;
    Bytes message;
};

// These are not messages, whatever the id.
const std::vector<BrokenMessage>& BrokenMessages() {
    static const std::vector<BrokenMessage> all = {
        {"no bytes", {}},
        {"one byte", {1}},
        {"seven bytes", {7, 0, 0, 0, 1, 0, 0}},
        {"header alone", Words({8, 0})},
        {"more arguments than fit", Words({24, 0x7fffffff, 2, 20, 4, 0})},
        {"argument count that wraps to 16 bytes", Words({24, 0x15555556, 2, 20, 4, 0})},
        {"offset far outside", Words({24, 1, 4, 0xfffffff0, 4, 0})},
        {"offset just outside", Words({24, 1, 4, 24, 4, 0})},
        {"offset into the header", Words({24, 1, 4, 0, 4, 0})},
        {"size far outside", Words({24, 1, 4, 20, 0xffffffff, 0})},
        {"size of nothing", Words({24, 1, 4, 20, 0, 0})},
        {"unknown type tag", Words({24, 1, 99, 20, 4, 0})},
        {"total size that lies", Words({0xffffffff, 1, 4, 20, 4, 0})},
        {"0xff everywhere", Bytes(64, 0xff)},
    };
    return all;
}

struct NastyMessage {
    const char* remark;
    std::int32_t id;
    Arguments arguments;
};

// These messages are well-formed, but their values are bad.
std::vector<NastyMessage> NastyMessages() {
    std::vector<NastyMessage> all = {
        {"empty text", PlenxWire::kSendLocalMessage, {-1, -1, std::string()}},
        {"large text", PlenxWire::kSendLocalMessage, {1, 1, std::string(kMegabyte, 'x')}},
        {"text that is not UTF-8",
         PlenxWire::kSendLocalMessage,
         {1, 2, std::string("\xff\xc0\x80")}},
        {"array where a string must be", PlenxWire::kConnectNotify, {Bytes{'g', '_', '1', 0}}},
        {"too many arguments", PlenxWire::kErrorNotify, {1, 2, 3}},
        {"missing argument", PlenxWire::kStatusNotify, {std::string("g_1")}},
        {"unknown status kind", PlenxWire::kStatusNotify, {std::string("g_1"), -1, -1}},
        {"unknown link type", PlenxWire::kLinkTypeQuery, {std::string("g_1"), -2147483647}},
        {"empty disk name", PlenxWire::kDiskNameNotify, {std::string()}},
        {"disk name that is not UTF-8", PlenxWire::kDiskNameNotify, {std::string("\xfe:")}},
        {"path of no bytes", PlenxWire::kUpdateWindowsExplore, {0, Bytes{}}},
        {"path of negative length", PlenxWire::kUpdateWindowsExplore, {-1, Bytes{'C', 0}}},
        {"path shorter than it says",
         PlenxWire::kUpdateWindowsExplore,
         {0x7fffffff, Bytes{'C', 0}}},
        {"path without its end", PlenxWire::kUpdateWindowsExplore, {4, Bytes{'C', 0, ':', 0}}},
        {"path of odd length", PlenxWire::kUpdateWindowsExplore, {3, Bytes{'C', 0, ':'}}},
        {"no disk", PlenxWire::kExploreFlushNotify, {std::string(), 0}},
        {"disk in lower case", PlenxWire::kExploreFlushNotify, {std::string("p:"), 0}},
        {"disk that is no letter", PlenxWire::kExploreFlushNotify, {std::string("\xc4:"), 0}},
        {"unknown flush type", PlenxWire::kExploreFlushNotify, {std::string("P:"), 99}},
    };
    for (const char* const group : {"", "_", "group", "g_", "g_x", "g_3x", "g_ 1", "g_-1", "g_+1",
                                    "g_99999999999", "g_1_", "\xff_1"}) {
        all.push_back({"bad group name", PlenxWire::kConnectNotify, {std::string(group)}});
    }
    return all;
}

constexpr std::int32_t kIds[] = {9, 10, 11, 12, 13, 14, 15, 16, 17, 18, -1, 0, 6, 100};

}  // namespace

Notifications HostileNotifications() {
    Notifications all;
    for (const std::int32_t id : kIds) {
        for (const BrokenMessage& broken : BrokenMessages()) {
            all.push_back({id, broken.message, broken.remark, 0});
        }
    }
    for (const NastyMessage& nasty : NastyMessages()) {
        all.push_back({nasty.id, PlenxWire::Encode(nasty.arguments), nasty.remark});
    }
    return all;
}

}  // namespace PlenxService
