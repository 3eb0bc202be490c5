#include <algorithm>
#include <chrono>
#include <filesystem>

#include "bar.h"
#include "judge/bring_up.h"
#include "judge/command.h"
#include "judge/report.h"
#include "judge/runner.h"
#include "judge/selection.h"
#include "message/columns.h"
#include "text_file.h"

namespace PlenxJudge {
namespace {

namespace fs = std::filesystem;

using PlenxKit::kAsExpected;

constexpr std::size_t kNumberWidth = 26;
constexpr std::size_t kLevelWidth = 8;

const char* const kRoles[] = {"office", "pc", "phone"};
const char* const kEndpoints[] = {"PLENXOfficeService", "PLENXPCService", "PLENXPhoneService"};

int RoleNamed(const std::string& name) {
    return static_cast<int>(std::find(std::begin(kRoles), std::end(kRoles), name) -
                            std::begin(kRoles));
}

// The name of one of the system's endpoints already says which role it is for.
int RoleOf(const Options& options) {
    const auto* const found =
        std::find(std::begin(kEndpoints), std::end(kEndpoints), options.endpoint);
    return found == std::end(kEndpoints) ? RoleNamed(options.role)
                                         : static_cast<int>(found - std::begin(kEndpoints));
}

Way WayOf(const Options& options) {
    Way way;
    way.role = RoleOf(options);
    way.work = options.work;
    way.patience = std::chrono::milliseconds(static_cast<int>(options.patience * 1000));
    if (!options.service.empty()) {
        way.kind = Way::Kind::kService;
        way.target = options.service;
    } else if (!options.console.empty()) {
        way.kind = Way::Kind::kConsole;
        way.target = options.console;
    } else {
        way.target = options.endpoint;
    }
    return way;
}

std::string Described(const Way& way) {
    switch (way.kind) {
    case Way::Kind::kService:
        return way.target + " as " + kRoles[way.role] + " service";
    case Way::Kind::kConsole:
        return way.target + " at " + way.Endpoint();
    case Way::Kind::kEndpoint:
        break;
    }
    return "whoever serves " + way.Endpoint();
}

std::string ReadText(const std::string& file) {
    return PlenxKit::ReadText(fs::u8path(file));
}

std::string LineOf(const Check& check, const std::string& remark) {
    return PlenxMessage::Hanging(PlenxMessage::PadRight(check.number, kNumberWidth) +
                                     PlenxMessage::PadRight(NameOf(check.level), kLevelWidth),
                                 check.sentence + remark);
}

int List(const std::vector<const Check*>& checks, std::ostream& out) {
    for (const Check* const check : checks) {
        out << LineOf(*check, "");
    }
    return kAsExpected;
}

int DryRun(const Way& way, const Options& options, const std::vector<const Check*>& checks,
           std::ostream& out) {
    out << "would judge " << Described(way) << "\n";
    for (const Check* const check : checks) {
        const std::string why =
            WhyNotRun(*check, way.kind == Way::Kind::kService, options.soak != 0);
        out << LineOf(*check, why.empty() ? "" : " Not judged: " + why + ".");
    }
    return kAsExpected;
}

// Prints each area when it is done, and on a console a bar while it runs.
class Progress {
public:
    Progress(const RunRecord& run, const std::vector<const Check*>& checks, std::ostream& out,
             bool isConsole)
        : run_(run), checks_(checks), out_(out), bar_(out, isConsole) {}

    Listener AsListener() {
        return {[this](const Check& check, std::size_t index) { Begin(check, index); },
                [this](const Record& record) { pending_.push_back(record); }};
    }
    void Finish() {
        bar_.Remove();
        PrintArea();
    }

private:
    void Begin(const Check& check, std::size_t index) {
        bar_.Remove();
        if (!pending_.empty() && pending_.front().Area() != AreaOf(check)) {
            PrintArea();
        }
        bar_.Show(index, checks_.size(), check.number);
    }
    void PrintArea() {
        if (!pending_.empty()) {
            out_ << AreaText(run_, pending_) << std::flush;
            pending_.clear();
        }
    }

    const RunRecord& run_;
    const std::vector<const Check*>& checks_;
    std::ostream& out_;
    PlenxKit::Bar bar_;
    std::vector<Record> pending_;
};

RunRecord Judge(const Way& way, const Options& options, const std::vector<const Check*>& checks,
                const PlenxKit::Streams& streams) {
    const std::set<std::string> known =
        options.known.empty() ? std::set<std::string>() : KnownFailures(ReadText(options.known));
    RunRecord run{Described(way), PLENXKIT_VERSION, options.strict};
    PlenxSupport::Interruption& interruption = PlenxSupport::InterruptionOfThisProcess();
    const std::unique_ptr<Program> program = BringUp(way, interruption);
    streams.out << "plenxkit judge: " << run.program << "\n" << std::flush;
    Trial trial(*program, std::chrono::seconds(options.soak), interruption);
    Progress progress(run, checks, streams.out, streams.process.OutputIsConsole());
    run.records = RunChecks(checks, trial, known, progress.AsListener());
    progress.Finish();
    run.interrupted = interruption.IsRaised();
    run.leftBehind = program->CleanUp();
    streams.out << SummaryText(run) << std::flush;
    return run;
}

int CodeOf(const RunRecord& run) {
    if (!run.leftBehind.empty()) {
        return PlenxKit::kLeftBehind;
    }
    if (run.interrupted) {
        return PlenxKit::kInterrupted;
    }
    const bool fails = std::any_of(run.records.begin(), run.records.end(),
                                   [&](const Record& record) { return run.Fails(record); });
    return fails ? PlenxKit::kFailed : kAsExpected;
}

int JudgeAndReport(const Options& options, const PlenxKit::Streams& streams) {
    const std::vector<const Check*> checks = Selected(options.only);
    if (options.list) {
        return List(checks, streams.out);
    }
    std::vector<RunRecord> runs;
    runs.reserve(options.with.size() + 1);
    for (const std::string& file : options.with) {
        runs.push_back(RunFromJson(ReadText(file), file));
    }
    const Way way = WayOf(options);
    int code = kAsExpected;
    if (!way.target.empty()) {
        if (options.dryRun) {
            return DryRun(way, options, checks, streams.out);
        }
        runs.push_back(Judge(way, options, checks, streams));
        code = CodeOf(runs.back());
        PlenxKit::WriteWanted(options.json, JsonOf(runs.back()));
        PlenxKit::WriteWanted(options.junit, JunitOf(runs.back()));
    } else if (runs.empty() || options.html.empty()) {
        throw UsageError("give --endpoint, --service or --console, or --with and --html");
    }
    PlenxKit::WriteWanted(options.html, HtmlOf(runs));
    return code;
}

}  // namespace

std::string Way::Endpoint() const {
    return kind == Kind::kEndpoint ? target : kEndpoints[role];
}

int Run(const Options& options, const PlenxKit::Streams& streams) {
    return PlenxKit::Concluded("judge", streams.err,
                               [&] { return JudgeAndReport(options, streams); });
}

}  // namespace PlenxJudge
