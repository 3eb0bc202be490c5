#include "verify/runner.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>

#include "verify/results.h"

namespace PlenxVerify {
namespace {

constexpr const char* kInterrupted = "the run was interrupted";

std::string FileOf(const Stage& stage, const Part& part, const char* ending) {
    return std::string(stage.name) + "-" + part.name + ending;
}

Launch LaunchOf(const Stage& stage, const Part& part, System& system) {
    Launch launch{part.program, {}, FileOf(stage, part, ".txt"), part.seconds};
    const std::string results = system.PathOf(FileOf(stage, part, ".json"));
    if (part.kind == Part::Kind::kScenarios) {
        launch.arguments = {
            "scenario", "run",  "--all", "--work", system.WorkFolder() + "\\scenarios",
            "--json",   results};
    } else {
        launch.arguments = {"--gtest_color=no", "--gtest_output=json:" + results};
        if (*part.filter != '\0') {
            launch.arguments.push_back(std::string("--gtest_filter=") + part.filter);
        }
    }
    return launch;
}

std::string InHexadecimal(std::uint32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", code);
    return text;
}

std::string WhileIn(const std::string& test) {
    return test.empty() ? "" : ", in " + test;
}

// Test programs and the kit end with 0 or 1 when they have carried out what they were asked to.
std::string ProblemOf(const Part& part, const Ended& ended, const std::string& output) {
    switch (ended.how) {
    case Ended::How::kNotStarted:
        return std::string(part.program) + " cannot be started, error " +
               std::to_string(ended.code);
    case Ended::How::kTimeWasOver:
        return std::string(part.program) + " had not ended after " + std::to_string(part.seconds) +
               " s" + WhileIn(LastBegun(output));
    case Ended::How::kInterrupted:
        return kInterrupted + WhileIn(LastBegun(output));
    case Ended::How::kByItself:
        break;
    }
    return ended.code <= 1 ? ""
                           : std::string(part.program) + " ended with " +
                                 InHexadecimal(ended.code) + WhileIn(LastBegun(output));
}

std::vector<Case> CasesOf(const Part& part, const std::string& json) {
    return part.kind == Part::Kind::kScenarios ? CasesOfScenarios(json) : CasesOfTests(json);
}

// A program that says it failed must have a failure to show, and one that tried nothing has failed.
std::string ContradictionIn(const PartRecord& record, const Ended& ended) {
    if (record.cases.empty()) {
        return "nothing was tried";
    }
    return ended.code != 0 && !record.Failed() ? "it ended with 1 although nothing failed" : "";
}

PartRecord RunPart(const Stage& stage, const Part& part, System& system) {
    PartRecord record{part.name};
    const Ended ended = system.Run(LaunchOf(stage, part, system));
    record.seconds = ended.seconds;
    record.problem = ProblemOf(part, ended, system.Read(FileOf(stage, part, ".txt")));
    try {
        const std::string json = system.Read(FileOf(stage, part, ".json"));
        if (!json.empty()) {
            record.cases = CasesOf(part, json);
        }
    } catch (const std::exception& error) {
        if (record.problem.empty()) {
            record.problem = std::string("its results cannot be read: ") + error.what();
        }
    }
    if (record.problem.empty()) {
        record.problem = ContradictionIn(record, ended);
    }
    return record;
}

void TellOfLogs(const Stage& stage, System& system, const Listener& listener) {
    for (const LogFile& file : system.Logs()) {
        listener.logs({std::string(stage.name) + "-" + file.name, file.text});
    }
}

StageRecord RunStage(const Stage& stage, System& system, const Listener& listener,
                     const std::function<void(const char* part)>& begins) {
    StageRecord record{stage.name, stage.sentence};
    for (const Part& part : stage.parts) {
        begins(part.name);
        if (system.IsInterrupted()) {
            record.whyNotRun = record.parts.empty() ? kInterrupted : "";
            break;
        }
        record.parts.push_back(RunPart(stage, part, system));
        for (const char* const ending : {".txt", ".json"}) {
            const std::string file = FileOf(stage, part, ending);
            listener.logs({file, system.Read(file)});
        }
    }
    if (record.Failed()) {
        TellOfLogs(stage, system, listener);
    }
    record.removed = system.Clean();
    return record;
}

std::vector<std::string> TextsOf(const std::vector<Trace>& traces) {
    std::vector<std::string> texts;
    std::transform(traces.begin(), traces.end(), std::back_inserter(texts),
                   [](const Trace& trace) { return trace.text; });
    return texts;
}

StageRecord LookForTraces(const Stage& stage, System& system, RunRecord& run) {
    system.CleanAll();
    run.leftBehind = TextsOf(system.Traces());
    PartRecord look{"traces"};
    for (const std::string& text : run.leftBehind) {
        look.cases.push_back({text, Case::Verdict::kFailed, 0, "It is still there."});
    }
    if (run.leftBehind.empty()) {
        look.cases.push_back({"services, endpoints, processes and folders"});
    }
    return {stage.name, stage.sentence, {look}};
}

}  // namespace

void RunStages(const std::vector<const Stage*>& stages, System& system, RunRecord& run,
               const Listener& listener) {
    std::size_t all = 0;
    for (const Stage* const stage : stages) {
        all += std::max<std::size_t>(stage->parts.size(), 1);
    }
    std::size_t index = 0;
    for (const Stage* const stage : stages) {
        const auto begins = [&](const std::string& part) {
            listener.begins(stage->name + part, index++, all);
        };
        if (stage->parts.empty()) {
            begins("");
            run.stages.push_back(LookForTraces(*stage, system, run));
        } else {
            run.stages.push_back(RunStage(*stage, system, listener, [&](const char* part) {
                begins(std::string("/") + part);
            }));
        }
        listener.ends(run.stages.back());
    }
    run.interrupted = system.IsInterrupted();
}

bool OnlyTracesOfVerify(const std::vector<Trace>& traces) {
    return std::all_of(traces.begin(), traces.end(),
                       [](const Trace& trace) { return trace.fromVerify; });
}

void CheckRights(System& system) {
    if (!system.HasRights()) {
        throw Refusal("it needs administrator rights; start it from an elevated prompt");
    }
    if (!system.TakeTurn()) {
        throw Refusal("another plenxkit verify runs, or is removing what it has made");
    }
}

void CheckPrograms(const std::vector<const Stage*>& stages, System& system) {
    for (const Stage* const stage : stages) {
        for (const Part& part : stage->parts) {
            if (!system.HasProgram(part.program)) {
                throw Refusal(std::string(part.program) +
                              " is not beside plenxkit.exe; plenxverify-" PLENXKIT_VERSION
                              "-win64.zip has all that is needed");
            }
        }
    }
}

std::string TextOf(const std::vector<Trace>& traces) {
    std::string text;
    for (const Trace& trace : traces) {
        text += "  " + trace.text + "\n";
    }
    return text;
}

}  // namespace PlenxVerify
