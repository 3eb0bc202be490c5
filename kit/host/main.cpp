// plenxhost: a host application for the command line, to drive the library by hand, by a
// script, or by another program, and to see what it notifies; and a doctor for the system.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "console.h"
#include "doctor/doctor.h"
#include "exit_code.h"
#include "options.h"
#include "output.h"
#include "platform.h"
#include "run_limit.h"
#include "script_parser.h"
#include "script_runner.h"
#include "session.h"
#include "wide.h"

namespace PlenxHost {
namespace {

// What every step of a run needs.
struct Surroundings {
    const Options& options;
    const StandardStreams& streams;
    Output& output;
};

Colours ColoursOf(const Options& options, bool isTerminal) {
    return DecideColours(options.colour, isTerminal, std::getenv("NO_COLOR"));
}

// Tells people on the error stream, and programs in their own way as well.
void Complain(const std::string& text, const Surroundings& at) {
    if (at.options.json) {
        at.output.Write(Note{NoteKind::kError, text});
    }
    const Colours colours = ColoursOf(at.options, at.streams.ErrorsAreTerminal());
    std::fprintf(stderr, "%s\n", Paint(colours, Role::kBad, "plenxhost: " + text).c_str());
    std::fflush(stderr);
}

void RunDialogue(const Surroundings& at, Session& session) {
    at.output.Write(Note{NoteKind::kText, "plenxhost " PLENXHOST_VERSION
                                          "; help lists the commands, Ctrl-Z or quit ends"});
    Console console(at.output);
    const auto read = [&](std::string& line) {
        return console.ReadLine(line, [&] { return session.HasEnded(); });
    };
    RunLines(read, [&](const std::string& text) { Complain(text, at); }, session);
}

void RunInput(const Surroundings& at, Session& session) {
    if (at.streams.InputIsConsole() && at.streams.OutputIsConsole() && !at.options.json) {
        RunDialogue(at, session);
    } else {
        RunLines([&](std::string& line) { return at.streams.ReadLine(line); }, nullptr, session);
    }
}

// Where to look when something did not come as expected.
void PointToTheCauses() {
    const wchar_t* const log = _wgetenv(L"PLENX_LOG_FILE");
    const bool named = log != nullptr && *log != 0;
    std::fprintf(stderr, "plenxhost: for causes see %splenxhost doctor\n",
                 named ? ("the library's log, " + WideToUtf8(log) + ", and ").c_str() : "");
    std::fflush(stderr);
}

int Conclude(const EndReport& report, const Surroundings& at) {
    at.output.Write(report);
    if (at.options.json && report.exitCode != kAllHeld) {
        std::fprintf(stderr, "%s\n", MakeTextFormat()->Format(Stamp(), report).c_str());
    }
    if (report.exitCode == kNotAllHeld && !report.failures.empty()) {
        PointToTheCauses();
    }
    return report.exitCode;
}

int Run(const Surroundings& at) {
    const Options& options = at.options;
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

int RunDoctor(const Surroundings& at) {
    const Options& options = at.options;
    const Patient patient{options.init.install, options.init.data,
                          options.program.empty() ? ProgramFolder() : options.program};
    const std::unique_ptr<System> system = MakeSystem();
    const Diagnosis diagnosis =
        Examine(patient, *system, [&](const Check& check, const std::vector<Finding>& findings) {
            at.output.Write(CheckReport{check, findings});
        });
    const int exitCode = diagnosis.problems == 0 ? kAllHeld : kNotAllHeld;
    at.output.Write(DiagnosisReport{diagnosis, exitCode});
    return exitCode;
}

int Main(const std::vector<std::string>& arguments) {
    const StandardStreams streams;
    const ParsedOptions parsed = ParseOptions(arguments);
    if (parsed.over) {
        std::fputs(parsed.output.c_str(), stdout);
        std::fputs(parsed.error.c_str(), stderr);
        return parsed.exitCode;
    }
    const Options& options = parsed.options;
    Output output(stdout, options.json
                              ? MakeJsonFormat()
                              : MakeTextFormat(ColoursOf(options, streams.OutputIsTerminal())));
    const Surroundings at{options, streams, output};
    try {
        return options.doctor ? RunDoctor(at) : Run(at);
    } catch (const ScriptError& error) {
        Complain(error.what(), at);
        return kWrongUsage;
    }
}

}  // namespace
}  // namespace PlenxHost

extern "C" int wmain(int count, wchar_t** arguments) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(PlenxHost::WideToUtf8(arguments[i]));
    }
    return PlenxHost::Main(texts);
}
