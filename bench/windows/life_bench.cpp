// Row 13: Init on the host's thread, and the end of a host with idle services. Each measurement
// starts a fresh host process.

#include <cstdio>
#include <stdexcept>
#include <string>

#include "life_times.h"
#include "support/child_process.h"
#include "support/clock.h"
#include "support/install_folder.h"
#include "support/samples.h"
#include "support/service_state.h"
#include "support/shared_numbers.h"

namespace PlenxBench {
namespace {

using PlenxTest::ChildProcess;
using PlenxTest::InstallFolder;

constexpr DWORD kHostMilliseconds = 120000;
constexpr int kTries = 500;

struct Life {
    double init;
    double ready;
    double servicesStopped;  // 0 unless the host did that itself
    double exit;
};

std::wstring Wide(const std::string& text) {
    return {text.begin(), text.end()};
}

// The system forgets a deleted service some time after its process is gone.
void WaitUntilForgotten(const wchar_t* service) {
    for (int i = 0; i != kTries && PlenxTest::IsRegistered(service); ++i) {
        Sleep(10);
    }
}

Life Live(const InstallFolder& folder, const std::wstring& more) {
    static int count = 0;
    const std::wstring name = L"plenx-bench-life-" + std::to_wstring(++count);
    const SharedNumbers times(name);
    ChildProcess host(L"\"" + PlenxTest::ProgramFolder() + L"\\life_host.exe\" " +
                      Wide(folder.Install()) + L" " + Wide(folder.Data()) + L" " + name + more);
    const auto code = host.WaitForExit(kHostMilliseconds);
    const std::int64_t ended = Now();
    if (code != 0u) {
        throw std::runtime_error("a host failed");
    }
    WaitUntilForgotten(L"PlenxPcSvc");
    WaitUntilForgotten(L"PlenxPhoneSvc");
    return {Nanoseconds(times[kInitReturned]), Nanoseconds(times[kEngineReady]),
            Nanoseconds(times[kServicesStopped]), Nanoseconds(ended - times[kLeaving])};
}

int Run(const Options& options) {
    SetEnvironmentVariableW(L"PLENX_LOG_LEVEL", L"off");  // the hosts' lines go nowhere
    const InstallFolder folder(L"plenx-bench-life");
    Series init{"13 Init", "ours", "ns", {}};
    Series ready{"13 Init", "(until the engine is ready)", "ns", {}};
    Series exit{"13 exit", "ours", "ns", {}};
    Series limit{"13 exit", "limit", "ns", {}};
    for (std::size_t i = 0; i != options.repetitions; ++i) {
        const Life life = Live(folder, L"");
        init.samples.push_back(life.init);
        ready.samples.push_back(life.ready);
        exit.samples.push_back(life.exit);
        limit.samples.push_back(Live(folder, L" stop").servicesStopped);
    }
    return Finish(options, {init, ready, exit, limit});
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "Init and exit of a host"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "life_bench: %s\n", error.what());
    return 1;
}
