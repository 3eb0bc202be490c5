// Row 13: the load of the DLL and the first call, each time in a fresh process.

#include <cstdio>
#include <stdexcept>
#include <string>

#include "support/child_process.h"
#include "support/samples.h"

namespace PlenxBench {
namespace {

constexpr DWORD kProbeMilliseconds = 30000;

double Load(const std::wstring& dll) {
    const std::wstring folder = PlenxTest::ProgramFolder() + L"\\";
    PlenxTest::ChildProcess probe(L"\"" + folder + L"load_probe.exe\" \"" + folder + L"stripped\\" +
                                  dll + L"\"");
    const DWORD nanoseconds = probe.WaitForExit(kProbeMilliseconds).value_or(0);
    if (nanoseconds == 0) {
        throw std::runtime_error("a DLL cannot be loaded");
    }
    return nanoseconds;
}

int Run(const Options& options) {
    const std::size_t values = options.quick ? 1 : 4;
    return Finish(options, Measure("13 load", "ns",
                                   {{"ours", [] { return Load(L"plenxsdk.dll"); }},
                                    {"minimal DLL", [] { return Load(L"minimal_dll.dll"); }}},
                                   options.repetitions, values));
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    return PlenxBench::Run(PlenxBench::ReadOptions(argc, argv, "Load the DLL, first call"));
} catch (const std::exception& error) {
    std::fprintf(stderr, "load_bench: %s\n", error.what());
    return 1;
}
