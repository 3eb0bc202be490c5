#include <chrono>
#include <ctime>
#include <filesystem>

#include "bar.h"
#include "message/columns.h"
#include "support/interruption.h"
#include "text_file.h"
#include "verify/command.h"
#include "verify/report.h"
#include "verify/run_on.h"
#include "verify/runner.h"
#include "verify/system.h"
#include "verify/zip.h"

namespace PlenxVerify {
namespace {

namespace fs = std::filesystem;

using PlenxKit::kAsExpected;

constexpr std::size_t kNameWidth = 14;

std::tm Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return local;
}

std::string TimeText(const std::tm& time, const char* format) {
    char text[32];
    std::strftime(text, sizeof text, format, &time);
    return text;
}

ZipTime ZipTimeOf(const std::tm& time) {
    return {
        static_cast<std::uint16_t>(((time.tm_year - 80) << 9) | ((time.tm_mon + 1) << 5) |
                                   time.tm_mday),
        static_cast<std::uint16_t>((time.tm_hour << 11) | (time.tm_min << 5) | (time.tm_sec / 2))};
}

int List(const std::vector<const Stage*>& stages, std::ostream& out) {
    for (const Stage* const stage : stages) {
        out << PlenxMessage::Hanging(PlenxMessage::PadRight(stage->name, kNameWidth),
                                     stage->sentence);
    }
    return kAsExpected;
}

// Only somebody who sees the question can answer it.
bool Agrees(const char* question, const PlenxKit::Streams& streams) {
    streams.out << question << " [y/N] " << std::flush;
    std::string line;
    return streams.process.ReadLine(line) && !line.empty() && (line[0] == 'y' || line[0] == 'Y');
}

fs::path OutFolder(const Options& options) {
    return fs::absolute(options.out.empty() ? "plenxverify-results" : fs::u8path(options.out));
}

fs::path MadeOutFolder(const Options& options) {
    const fs::path folder = OutFolder(options);
    std::error_code error;
    fs::create_directories(folder, error);
    if (!fs::is_directory(folder)) {
        throw UsageError("cannot make the folder " + folder.u8string());
    }
    return folder;
}

int Clean(System& system, std::ostream& out) {
    CheckRights(system);
    if (!OnlyTracesOfVerify(system.Traces())) {
        throw Refusal("not all of this comes from plenxkit verify:\n" + TextOf(system.Traces()));
    }
    system.CleanAll();
    const std::vector<Trace> left = system.Traces();
    out << (left.empty() ? "Nothing of an earlier run is left.\n" : "left behind:\n")
        << TextOf(left);
    return left.empty() ? kAsExpected : PlenxKit::kLeftBehind;
}

void MakeRoom(System& system, bool mayAsk, const PlenxKit::Streams& streams) {
    const std::vector<Trace> traces = system.Traces();
    if (traces.empty()) {
        return;
    }
    if (!OnlyTracesOfVerify(traces)) {
        throw Refusal("a product of ours may be installed on this machine:\n" + TextOf(traces) +
                      "Use a machine that has none.");
    }
    streams.out << "An earlier run has left this:\n" << TextOf(traces);
    if (!mayAsk || !Agrees("Remove it now?", streams)) {
        throw Refusal("an earlier run has left something; plenxkit verify --clean removes it");
    }
    system.CleanAll();
    if (!system.Traces().empty()) {
        throw Refusal("this cannot be removed:\n" + TextOf(system.Traces()));
    }
}

int CodeOf(const RunRecord& run) {
    if (!run.leftBehind.empty()) {
        return PlenxKit::kLeftBehind;
    }
    if (run.interrupted) {
        return PlenxKit::kInterrupted;
    }
    return run.Failed() ? PlenxKit::kFailed : kAsExpected;
}

// The ZIP is what a stranger sends, so everything in it has gone through the redaction.
void WriteReports(const RunRecord& run, std::vector<ZippedFile> files, const Options& options,
                  const fs::path& folder, const std::tm& begun, std::ostream& out) {
    const std::string html = HtmlOf(run);
    const std::string json = JsonOf(run);
    const std::string junit = JunitOf(run);
    files.insert(files.begin(),
                 {{"report.html", html}, {"results.json", json}, {"results.xml", junit}});
    const fs::path zip =
        folder / ("plenxverify-" + run.version + TimeText(begun, "-%Y%m%d-%H%M%S") + ".zip");
    PlenxKit::WriteText(folder / "report.html", html);
    PlenxKit::WriteText(zip, ZipOf(files, ZipTimeOf(begun)));
    PlenxKit::WriteWanted(options.html, html);
    PlenxKit::WriteWanted(options.json, json);
    PlenxKit::WriteWanted(options.junit, junit);
    out << "The report is " << (folder / "report.html").u8string() << "\n"
        << "Please send " << zip.u8string() << "\n";
}

int Verify(const std::vector<const Stage*>& stages, System& system, const Options& options,
           const PlenxKit::Streams& streams) {
    const bool mayAsk = streams.process.InputIsConsole() && !options.yes;
    if (!mayAsk && !options.yes) {
        throw UsageError("give --yes, because there is nobody to ask");
    }
    const fs::path folder = MadeOutFolder(options);
    CheckRights(system);
    CheckPrograms(stages, system);
    MakeRoom(system, mayAsk, streams);
    streams.out << ScreenText(stages, system.Root(), folder.u8string()) << "\n";
    if (mayAsk && !Agrees("Begin?", streams)) {
        throw Refusal("you have not agreed");
    }
    const std::tm begun = Now();
    RunRecord run{PLENXKIT_VERSION, TimeText(begun, "%Y-%m-%d %H:%M:%S"), system.Describe()};
    const Redaction redaction(system.Secrets());
    const std::string problem = system.Prepare();
    if (!problem.empty()) {
        system.CleanAll();
        throw Refusal(problem);
    }
    PlenxKit::Bar bar(streams.out, streams.process.OutputIsConsole());
    std::vector<ZippedFile> files;
    RunStages(stages, system, run,
              {[&](const std::string& name, std::size_t index, std::size_t all) {
                   bar.Remove();
                   bar.Show(index, all, name);
               },
               [&](const StageRecord& record) {
                   bar.Remove();
                   streams.out << StageText(record) << std::flush;
               },
               [&](const LogFile& file) {
                   files.push_back({"logs/" + file.name, redaction.Of(file.text)});
               }});
    streams.out << SummaryText(run);
    WriteReports(redaction.Of(run), std::move(files), options, folder, begun, streams.out);
    return CodeOf(run);
}

}  // namespace

int RunOn(System& system, const Options& options, const PlenxKit::Streams& streams) {
    const std::vector<const Stage*> stages = Selected(options.only);
    if (options.dryRun) {
        streams.out << ScreenText(stages, system.Root(), OutFolder(options).u8string())
                    << "\nNothing was done.\n";
        return kAsExpected;
    }
    return options.clean ? Clean(system, streams.out) : Verify(stages, system, options, streams);
}

int Run(const Options& options, const PlenxKit::Streams& streams) {
    return PlenxKit::Concluded("verify", streams.err, [&] {
        return options.list ? List(Selected(options.only), streams.out)
                            : RunOn(*MakeSystem(PlenxSupport::InterruptionOfThisProcess()), options,
                                    streams);
    });
}

}  // namespace PlenxVerify
