#include <windows.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "host/command.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/exit_code.h"
#include "host/output.h"
#include "host/run_limit.h"
#include "host/script_parser.h"
#include "host/script_runner.h"
#include "host/session.h"
#include "support/wide_text.h"

namespace PlenxHost {
namespace {

// The parts that every step of a run needs.
struct Surroundings {
    const HostOptions& options;
    const PlenxKit::StandardStreams& streams;
    Output& output;
};

// Tells people on the error stream, and tells programs in their own format as well.
void Complain(const std::string& text, const Surroundings& at) {
    if (at.options.look.json) {
        at.output.Write(Note{NoteKind::kError, text});
    }
    const Colours colours = ColoursOf(at.options.look, at.streams.ErrorsAreTerminal());
    std::fprintf(stderr, "%s\n", Paint(colours, Role::kBad, "plenxkit host: " + text).c_str());
    std::fflush(stderr);
}

void RunDialogue(const Surroundings& at, Session& session) {
    at.output.Write(Note{NoteKind::kText,
                         "plenxkit " PLENXKIT_VERSION
                         "; help lists the commands, Ctrl-Z or quit ends the run"});
    Console console(at.output);
    const auto read = [&](std::string& line) {
        return console.ReadLine(line, [&] { return session.HasEnded(); });
    };
    RunLines(read, [&](const std::string& text) { Complain(text, at); }, session);
}

void RunInput(const Surroundings& at, Session& session) {
    if (at.streams.InputIsConsole() && at.streams.OutputIsConsole() && !at.options.look.json) {
        RunDialogue(at, session);
    } else {
        RunLines([&](std::string& line) { return at.streams.ReadLine(line); }, nullptr, session);
    }
}

// Says where to look when something did not come as expected.
void PointToTheCauses() {
    const wchar_t* const log = _wgetenv(L"PLENX_LOG_FILE");
    const bool named = log != nullptr && *log != 0;
    const std::string place =
        named ? "the library's log, " + PlenxSupport::ToUtf8(log) + ", and " : "";
    std::fprintf(stderr, "plenxkit host: to find the cause, see %splenxkit doctor\n",
                 place.c_str());
    std::fflush(stderr);
}

int Conclude(const EndReport& report, const Surroundings& at) {
    at.output.Write(report);
    if (at.options.look.json && report.exitCode != kAllHeld) {
        std::fprintf(stderr, "%s\n", MakeTextFormat()->Format(Stamp(), report).c_str());
    }
    if (report.exitCode == kNotAllHeld && !report.failures.empty()) {
        PointToTheCauses();
    }
    return report.exitCode;
}

int RunSession(const Surroundings& at) {
    const HostOptions& options = at.options;
    const bool scripted = !options.script.empty();
    const std::vector<Step> steps = scripted ? LoadScript(options.script) : std::vector<Step>();
    Session session(options.init, at.output);
    const RunLimit limit(std::chrono::milliseconds(std::llround(options.timeout * 1000)), [&] {
        Complain("timeout at " + session.Current(), at);
        session.Interrupt();
    });
    session.Run(ParseStep("register main", ""));
    if (scripted) {
        RunSteps(steps, session);
    } else {
        RunInput(at, session);
    }
    return Conclude(session.Finish(limit.Expired()), at);
}

}  // namespace

int RunHost(const HostOptions& options, const PlenxKit::Streams& streams) {
    Output output(stdout, FormatOf(options.look, streams.process.OutputIsTerminal()));
    const Surroundings at{options, streams.process, output};
    try {
        return RunSession(at);
    } catch (const ScriptError& error) {
        Complain(error.what(), at);
        return PlenxKit::kWrongUsage;
    }
}

}  // namespace PlenxHost
