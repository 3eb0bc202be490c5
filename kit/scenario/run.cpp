#include "scenario/run.h"

#include <windows.h>

#include <chrono>

#include "scenario/host_log.h"
#include "scenario/host_process.h"
#include "support/wide_text.h"
#include "text_file.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

// plenxkit host ends itself when its time is over, and gets these seconds to do so.
constexpr double kForTheEnd = 10;

std::string Quoted(const fs::path& path) {
    return '"' + path.u8string() + '"';
}

std::string UsualHost(const ReadyScenario& scenario, const Stage& stage,
                      const RunOptions& options) {
    if (!fs::exists(scenario.script)) {
        throw UsageError(scenario.script.u8string() + " is missing; --host names another host");
    }
    return Quoted(options.stage.programs / "plenxkit.exe") + " host --install " +
           Quoted(stage.Install()) + " --data " + Quoted(stage.Data()) + " --timeout " +
           std::to_string(options.seconds) + " --script " + Quoted(scenario.script);
}

void Tell(const wchar_t* variable, const fs::path& value) {
    SetEnvironmentVariableW(variable, value.wstring().c_str());
}

std::string TextOf(const fs::path& file) {
    return fs::exists(file) ? PlenxKit::ReadText(file) : std::string();
}

}  // namespace

Result RunScenario(const ReadyScenario& scenario, const RunOptions& options) {
    const Stage stage(options.stage, scenario.name, scenario.file);
    Tell(L"PLENX_SCENARIO", fs::u8path(scenario.name));
    Tell(L"PLENX_INSTALL", stage.Install());
    Tell(L"PLENX_DATA", stage.Data());
    Tell(L"PLENX_LOG_FILE", stage.Logs() / "library.log");

    const fs::path output = stage.Logs() / "host.txt";
    const bool ownHost = !options.host.empty();
    const std::string command = ownHost ? options.host : UsualHost(scenario, stage, options);
    Ending ending;
    ending.ownHost = ownHost;
    ending.deadline = options.seconds;
    const auto begin = std::chrono::steady_clock::now();
    ending.exitCode = RunHost(PlenxSupport::ToWide(command), output,
                              options.seconds + (ownHost ? 0 : kForTheEnd));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;

    const std::string hostOutput = TextOf(output);
    const std::string serviceLog = TextOf(stage.Logs() / "service.log");
    Result result;
    result.name = scenario.name;
    result.title = scenario.title;
    result.tables = scenario.tables.size();
    result.notPlayed = NotPlayed(scenario.tables, serviceLog);
    result.reason = ReasonOfFailure(ending, hostOutput, serviceLog);
    if (options.strict && result.Passed()) {
        result.reason = TextOfNotPlayed(result.notPlayed, result.tables);
    }
    result.seconds = took.count();
    result.logFolder = stage.Logs().u8string();
    result.observed = ObservedIn(hostOutput);
    return result;
}

}  // namespace PlenxScenario
