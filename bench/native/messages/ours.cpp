// Measures RpcMessageWriter and RpcMessageReader, used as the library's requests use them.

#include <cstring>
#include <string>
#include <utility>

#include "messages/message_work.h"
#include "rpc/rpc_message_layout.h"
#include "rpc/rpc_message_reader.h"
#include "rpc/rpc_message_writer.h"

namespace bench {
namespace {

using DistributedFs::RpcMessageReader;
using DistributedFs::RpcMessageWriter;

std::int32_t SizeOf(std::int64_t arguments, std::size_t bytes) {
    return static_cast<std::int32_t>(DistributedFs::RpcDataOffset(arguments)) +
           static_cast<std::int32_t>(bytes);
}

std::uint32_t WordAt(const std::uint8_t* bytes, std::size_t offset) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes + offset, sizeof(word));
    return word;
}

// The library sends an int64 to services but never receives one, so its reader has no operation for
// it. This does what a service's reader does. It adds to the work of the library's reader, which
// has already taken its copy.
bool ReadInt64(const std::uint8_t* bytes, std::size_t size, std::int64_t& out) {
    const std::uint64_t offset = WordAt(bytes, 12);
    if (WordAt(bytes, 8) != static_cast<std::uint32_t>(DistributedFs::RpcArgType::kInt64) ||
        WordAt(bytes, 16) != sizeof(out) || offset + sizeof(out) > size) {
        return false;
    }
    std::memcpy(&out, bytes + offset, sizeof(out));
    return true;
}

struct Ours {
    using Bytes = Block;

    // The writer takes strings by value. The library moves those of a request into it; only a
    // caller that keeps its strings has them copied.
    class Encoded {
    public:
        explicit Encoded(const Ping& ping) : writer_(SizeOf(1, 8), 1) {
            writer_.WriteInt64(0, ping.number);
        }
        explicit Encoded(const Reply& reply) : writer_(SizeOf(1, 4), 1) {
            writer_.WriteInt32(0, reply.value);
        }
        explicit Encoded(CreateGroup& group)
            : writer_(SizeOf(3, group.name.size() + 1 + 4 + group.argument.size() + 1), 3) {
            writer_.WriteString(0, std::move(group.name));
            writer_.WriteInt32(1, group.kind);
            writer_.WriteString(2, std::move(group.argument));
        }
        explicit Encoded(DeviceOnline& online)
            : Encoded(online, std::move(online.group), std::move(online.device)) {}
        explicit Encoded(const DeviceOnline& online)
            : Encoded(online, online.group, online.device) {}

        const std::uint8_t* data() { return writer_.Buffer(); }
        std::size_t size() const { return static_cast<std::size_t>(writer_.Size()); }

    private:
        Encoded(const DeviceOnline& online, std::string group, std::string device)
            : writer_(SizeOf(5, group.size() + 1 + device.size() + 1 + 4 + 4 + online.data.size()),
                      5) {
            const auto length = static_cast<std::int32_t>(online.data.size());
            writer_.WriteString(0, std::move(group));
            writer_.WriteString(1, std::move(device));
            writer_.WriteInt32(2, online.isRemote);
            writer_.WriteInt32(3, length);
            writer_.WriteInt8Array(4, online.data.data(), length);
        }

        RpcMessageWriter writer_;
    };

    static bool Decode(const std::uint8_t* bytes, std::size_t size, Ping& out) {
        const RpcMessageReader reader(bytes, static_cast<std::int32_t>(size));
        return ReadInt64(bytes, size, out.number);
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Reply& out) {
        RpcMessageReader reader(bytes, static_cast<std::int32_t>(size));
        return reader.ReadInt32(0, &out.value) == 0;
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, CreateGroup& out) {
        RpcMessageReader reader(bytes, static_cast<std::int32_t>(size));
        return reader.ReadString(0, &out.name) == 0 && reader.ReadInt32(1, &out.kind) == 0 &&
               reader.ReadString(2, &out.argument) == 0;
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, DeviceOnlineWith<Bytes>& out) {
        RpcMessageReader reader(bytes, static_cast<std::int32_t>(size));
        std::int32_t length = 0;
        std::uint8_t* block = nullptr;
        if (reader.ReadString(0, &out.group) != 0 || reader.ReadString(1, &out.device) != 0 ||
            reader.ReadInt32(2, &out.isRemote) != 0 || reader.ReadInt32(3, &length) != 0 ||
            reader.ReadInt8Array(4, &block, length) != 0) {
            return false;
        }
        out.data = Block(std::unique_ptr<std::uint8_t[]>(block), static_cast<std::size_t>(length));
        return true;
    }
};

// Row 12 measures the memory that is left.
void MemoryAfterMessages(benchmark::State& state) {
    DeviceOnline in = DeviceOnlineOf(std::size_t{64} << 20);
    const std::size_t before = BytesInUse();
    for (auto _ : state) {
        RoundTrip<Ours, DeviceOnlineWith<Block>>(in);
    }
    state.counters["bytes_left"] = static_cast<double>(BytesInUse()) - static_cast<double>(before);
}

[[maybe_unused]] const int kRegistered = [] {
    RegisterMessages<Ours>("ours");
    RegisterGrowth<Ours>("12 messages");
    benchmark::RegisterBenchmark("12 memory after messages/ours", MemoryAfterMessages)
        ->Iterations(1)
        ->Repetitions(1);
    return 0;
}();

}  // namespace
}  // namespace bench
