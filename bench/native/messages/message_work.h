// Rows 1, 2 and 12: messages are encoded into bytes of their own and decoded from these.
//
// Every contender does the same. It encodes the values into one block that is made for this
// message, as the library does for a request. It decodes that block, with checks against hostile
// bytes, into values that belong to their reader: strings as std::string, bytes as a block. In a
// round trip the strings that came out go in again, so that a contender may keep those that it is
// given, as the library does with those of a request. A contender is a Codec:
//
//     Codec::Encoded(values)   makes the bytes; data() and size() tell where they are
//     Codec::Decode(bytes, size, out)   false when the bytes hold no such message
//     Codec::Bytes   how it delivers bytes; data() and size()

#ifndef PLENXSDK_BENCH_MESSAGES_MESSAGE_WORK_H
#define PLENXSDK_BENCH_MESSAGES_MESSAGE_WORK_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "harness/measure.h"

namespace bench {

struct Ping {
    std::int64_t number = 0;
};

struct Reply {
    std::int32_t value = 0;
};

struct CreateGroup {
    std::string name;
    std::int32_t kind = 0;
    std::string argument;
};

template <class Bytes>
struct DeviceOnlineWith {
    std::string group;
    std::string device;
    std::int32_t isRemote = 0;
    Bytes data;
};

/// Bytes that nobody has filled with zero before they are written.
class Block {
public:
    Block() = default;
    Block(const void* bytes, std::size_t size) : bytes_(new std::uint8_t[size]), size_(size) {
        std::memcpy(bytes_.get(), bytes, size);
    }
    /// Takes over a block that was made with new[].
    Block(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size)
        : bytes_(std::move(bytes)), size_(size) {}

    const std::uint8_t* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }

private:
    std::unique_ptr<std::uint8_t[]> bytes_;
    std::size_t size_ = 0;
};

/// These values are encoded.
using DeviceOnline = DeviceOnlineWith<std::vector<std::uint8_t>>;

inline DeviceOnline DeviceOnlineOf(std::size_t bytes) {
    return {std::string(32, 'g'), std::string(64, 'd'), 1, std::vector<std::uint8_t>(bytes, 0xA5)};
}

inline bool AreEqual(const Ping& a, const Ping& b) {
    return a.number == b.number;
}
inline bool AreEqual(const Reply& a, const Reply& b) {
    return a.value == b.value;
}
inline bool AreEqual(const CreateGroup& a, const CreateGroup& b) {
    return a.name == b.name && a.kind == b.kind && a.argument == b.argument;
}
template <class Bytes>
bool AreEqual(const DeviceOnline& a, const DeviceOnlineWith<Bytes>& b) {
    return a.group == b.group && a.device == b.device && a.isRemote == b.isRemote &&
           a.data.size() == b.data.size() &&
           std::memcmp(a.data.data(), b.data.data(), a.data.size()) == 0;
}

inline void GiveBack(const Ping& out, Ping& in) {
    in = out;
}
inline void GiveBack(const Reply& out, Reply& in) {
    in = out;
}
inline void GiveBack(CreateGroup&& out, CreateGroup& in) {
    in = std::move(out);
}
template <class Bytes>
void GiveBack(DeviceOnlineWith<Bytes>&& out, DeviceOnline& in) {
    in.group = std::move(out.group);
    in.device = std::move(out.device);
}

template <class Codec, class Out, class In>
bool ComesBack(const In& in, In given) {
    typename Codec::Encoded encoded(given);
    Out out;
    return Codec::Decode(encoded.data(), encoded.size(), out) && AreEqual(in, out);
}

template <class Codec, class Out, class In>
void RoundTrip(In& in) {
    typename Codec::Encoded encoded(in);
    Escape(encoded.data());
    Out out;
    benchmark::DoNotOptimize(Codec::Decode(encoded.data(), encoded.size(), out));
    Escape(&out);
    GiveBack(std::move(out), in);
}

template <class Codec, class Out, class In>
void RegisterRoundTrip(const std::string& name, In in) {
    benchmark::RegisterBenchmark(name.c_str(), [in](benchmark::State& state) {
        if (!ComesBack<Codec, Out>(in, in)) {
            state.SkipWithError("what was decoded is not what was encoded");
            return;
        }
        In values = in;
        Measure(state, [&values] { RoundTrip<Codec, Out>(values); });
    });
}

template <class Codec>
void RegisterEncode(const std::string& name, const DeviceOnline& in) {
    benchmark::RegisterBenchmark(name.c_str(), [in](benchmark::State& state) {
        Measure(state, [&in] {
            typename Codec::Encoded encoded(in);
            Escape(encoded.data());
        });
    });
}

/// Measures rows 1 and 2 of one contender. Returns a number for a static initialiser.
template <class Codec>
int RegisterMessages(const std::string& contender) {
    using Delivered = DeviceOnlineWith<typename Codec::Bytes>;
    const CreateGroup group{std::string(32, 'g'), 2, std::string(64, 'a')};
    const DeviceOnline large = DeviceOnlineOf(std::size_t{1} << 20);
    RegisterRoundTrip<Codec, Ping>("1 ping/" + contender, Ping{0x0123456789ABCDEF});
    RegisterRoundTrip<Codec, Reply>("1 reply/" + contender, Reply{1234567});
    RegisterRoundTrip<Codec, CreateGroup>("1 create group/" + contender, group);
    RegisterRoundTrip<Codec, Delivered>("1 device online 4 KiB/" + contender,
                                        DeviceOnlineOf(std::size_t{4} << 10));
    RegisterEncode<Codec>("2 encode 1 MiB/" + contender, large);
    RegisterRoundTrip<Codec, Delivered>("2 round trip 1 MiB/" + contender, large);
    return 0;
}

/// Measures row 12 of one contender: the cost of a KiB.
template <class Codec>
int RegisterGrowth(const std::string& row) {
    const auto add = [&](const std::string& size, std::int64_t kibibytes) {
        benchmark::RegisterBenchmark(
            (row + "/" + size).c_str(), [kibibytes](benchmark::State& state) {
                using Delivered = DeviceOnlineWith<typename Codec::Bytes>;
                DeviceOnline in = DeviceOnlineOf(static_cast<std::size_t>(kibibytes) << 10);
                RoundTrip<Codec, Delivered>(in);
                while (state.KeepRunningBatch(kibibytes)) {
                    RoundTrip<Codec, Delivered>(in);
                }
            });
    };
    add("1 KiB", 1);
    add("256 KiB", 256);
    add("64 MiB", 64 << 10);
    return 0;
}

}  // namespace bench

#endif  // PLENXSDK_BENCH_MESSAGES_MESSAGE_WORK_H
