// Row 14: the cost of a host of the library while it has nothing to do. Wine does not tell when a
// thread was woken, and it does not count a process's handles. Linux knows both, and its view of
// the process is under the drive Z.

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/process_size.h"
#include "support/samples.h"
#include "support/server_process.h"

namespace PlenxBench {
namespace {

namespace fs = std::filesystem;

// The system ends the threads of past calls after some seconds.
constexpr DWORD kSettleMilliseconds = 8000;
constexpr DWORD kIdleMilliseconds = 60000;
constexpr DWORD kQuickIdleMilliseconds = 6000;

std::string ReadAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Finds the folder of the process that has the word in its command line.
fs::path FindProcess(const std::wstring& word) {
    const std::string narrow(word.begin(), word.end());
    for (const fs::directory_entry& entry : fs::directory_iterator(L"Z:\\proc")) {
        const std::wstring name = entry.path().filename();
        if (name.find_first_not_of(L"0123456789") == std::wstring::npos &&
            ReadAll(entry.path() / L"cmdline").find(narrow) != std::string::npos) {
            return entry.path();
        }
    }
    throw std::runtime_error("no such process");
}

// Adds up all lines "...<name>: <number>".
std::int64_t NumberOf(const std::string& name, const std::string& status) {
    std::istringstream lines(status);
    std::int64_t sum = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t found = line.find(name + ":");
        if (found != std::string::npos) {
            sum += std::stoll(line.substr(found + name.size() + 1));
        }
    }
    return sum;
}

// These count since the process started, or say what it holds now.
struct Cost {
    std::int64_t nanoseconds = 0;  // on a processor
    std::int64_t switches = 0;     // of its threads
    std::int64_t bytes = 0;        // of its own memory
    std::int64_t handles = 0;
};

Cost CostOf(const fs::path& process, DWORD processId) {
    Cost cost;
    for (const fs::directory_entry& task : fs::directory_iterator(process / L"task")) {
        cost.nanoseconds += std::stoll(ReadAll(task.path() / L"schedstat"));
        cost.switches += NumberOf("voluntary_ctxt_switches", ReadAll(task.path() / L"status"));
    }
    const std::string status = ReadAll(process / L"status");
    cost.bytes = (NumberOf("RssAnon", status) + NumberOf("VmSwap", status)) * 1024;
    cost.handles = static_cast<std::int64_t>(PlenxSupport::HandlesOf(processId));
    if (cost.nanoseconds == 0 || cost.switches == 0 || cost.bytes == 0 || cost.handles == 0) {
        throw std::runtime_error("the system does not tell what a process costs");
    }
    return cost;
}

int Run(const Options& options) {
    const ServerProcess host(L"idle_host.exe");
    const fs::path process = FindProcess(host.Name());
    Sleep(kSettleMilliseconds);

    const Cost before = CostOf(process, host.Id());
    Sleep(options.quick ? kQuickIdleMilliseconds : kIdleMilliseconds);
    const Cost after = CostOf(process, host.Id());

    const auto more = [&](std::int64_t Cost::* which) {
        return std::vector<double>{static_cast<double>(after.*which - before.*which)};
    };
    return Finish(options, {{"14 CPU", "ours", "ns", more(&Cost::nanoseconds)},
                            {"14 wake-ups", "ours", "wake-ups", more(&Cost::switches)},
                            {"14 growth", "ours", "B", more(&Cost::bytes)},
                            {"14 growth", "(handles)", "handles", more(&Cost::handles)}});
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "Idle cost of a host"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "idle_bench: %s\n", error.what());
    return 1;
}
