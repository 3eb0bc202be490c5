// Row 12 on the Windows heap: what one job and one KiB of a message cost as the work grows, and
// the memory that is left afterwards.

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/thread_pool.h"
#include "rpc/rpc_message_reader.h"
#include "rpc/rpc_message_writer.h"
#include "support/clock.h"
#include "support/samples.h"

namespace PlenxBench {
namespace {

using DistributedFs::RpcMessageReader;
using DistributedFs::RpcMessageWriter;
using DistributedFs::ThreadPool;

constexpr std::int32_t kKibibyte = 1024;
constexpr std::int32_t kArrayMessageRest = 8 + 12;  // all but the array's bytes

class Target {
public:
    void Run(const std::string& first, const std::string& second) {
        bytes_ += first.size() + second.size();
    }
    std::size_t Bytes() const { return bytes_; }

private:
    std::size_t bytes_ = 0;
};

// These strings are too long to lie inside their objects.
const std::string kFirst(40, 'f');
const std::string kSecond(64, 's');

// Returns the time of one job, when that many are queued behind a busy worker and then run.
double Jobs(std::size_t count) {
    Target target;
    std::promise<void> gate;
    ThreadPool pool(1);
    pool.Enqueue([held = gate.get_future().share()] { held.wait(); });
    const std::int64_t start = Now();
    for (std::size_t i = 0; i != count; ++i) {
        pool.Enqueue(&Target::Run, &target, kFirst, kSecond);
    }
    gate.set_value();
    pool.Enqueue([] {}).wait();
    const double time = Nanoseconds(Now() - start);
    if (target.Bytes() != count * (kFirst.size() + kSecond.size())) {
        throw std::runtime_error("not every job has been run");
    }
    return time / static_cast<double>(count);
}

const std::vector<std::uint8_t>& Bytes() {
    static const std::vector<std::uint8_t> bytes(std::size_t{64} << 20, 1);
    return bytes;
}

// Encodes and decodes one message, and returns the time of one KiB.
double Message(std::int32_t kibibytes) {
    const std::vector<std::uint8_t>& bytes = Bytes();
    const std::int32_t size = kibibytes * kKibibyte;
    const std::int64_t start = Now();
    RpcMessageWriter writer(kArrayMessageRest + size, 1);
    const bool written = writer.WriteInt8Array(0, bytes.data(), size) == 0;
    RpcMessageReader reader(writer.Buffer(), writer.Size());
    std::uint8_t* array = nullptr;
    const bool read = reader.ReadInt8Array(0, &array, size) == 0;
    const std::unique_ptr<std::uint8_t[]> owner(array);
    if (!written || !read) {
        throw std::runtime_error("a message failed");
    }
    return Nanoseconds(Now() - start) / kibibytes;
}

// Does the least that has the same effect: it makes a fresh block that holds the bytes, and another
// one that takes them out again.
double Limit(std::int32_t kibibytes) {
    const std::vector<std::uint8_t>& bytes = Bytes();
    const auto size = static_cast<std::size_t>(kibibytes) * kKibibyte;
    const std::int64_t start = Now();
    const std::unique_ptr<std::uint8_t[]> message(new std::uint8_t[size]);
    std::memcpy(message.get(), bytes.data(), size);
    const std::unique_ptr<std::uint8_t[]> array(new std::uint8_t[size]);
    std::memcpy(array.get(), message.get(), size);
    if (array[size - 1] != bytes[size - 1]) {
        throw std::runtime_error("a copy failed");
    }
    return Nanoseconds(Now() - start) / kibibytes;
}

// Measures all heaps. The C++ run time uses the process heap under Wine, and another one on
// Windows.
double BytesInUse() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    double bytes = 0;
    for (DWORD i = 0; i != count && i != 64; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

template <class Work>
Series MemoryAfter(const std::string& row, Work work) {
    work();  // makes everything that is made only once
    const double before = BytesInUse();
    work();
    return {row, "ours", "B", {BytesInUse() - before}};
}

void Append(std::vector<Series>& all, const std::vector<Series>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

template <class Work>
std::vector<Series> MeasureMessages(const std::string& row, const Options& options, Work work) {
    constexpr std::size_t kValues = 2;
    return Measure(row, "ns",
                   {{"1 KiB", [=] { return work(1); }},
                    {"256 KiB", [=] { return work(256); }},
                    {"64 MiB", [=] { return work(64 * kKibibyte); }}},
                   options.repetitions, kValues);
}

int Run(const Options& options) {
    // A quick run does less, and the table says so.
    const std::size_t million = options.quick ? 100000 : 1000000;
    std::vector<Series> all = Measure("12 queued jobs", "ns",
                                      {{"1,000", [] { return Jobs(1000); }},
                                       {"32,000", [] { return Jobs(32000); }},
                                       {"1,000,000", [=] { return Jobs(million); }}},
                                      options.repetitions, 1);
    Append(all, MeasureMessages("12 messages", options, Message));
    Append(all, MeasureMessages("12 messages, the limit", options, Limit));
    all.push_back(MemoryAfter("12 memory after jobs", [=] { Jobs(million); }));
    all.push_back(MemoryAfter("12 memory after messages", [] { Message(64 * kKibibyte); }));
    return Finish(options, all);
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "Cost as the work grows"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "growth_bench: %s\n", error.what());
    return 1;
}
