// plenxhost: a host application for the command line, to drive the library by hand, by a
// script, or by another program, and to see what it notifies.

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "exit_code.h"
#include "output.h"
#include "platform.h"
#include "run_limit.h"
#include "script_parser.h"
#include "script_runner.h"
#include "session.h"
#include "wide.h"

namespace PlenxHost {
namespace {

struct Options {
    InitArguments init;
    std::string script;
    bool json = false;
    double timeout = 0;
};

void Declare(CLI::App& app, Options& options) {
    app.add_option("--install", options.init.install, "Install folder, for init");
    app.add_option("--data", options.init.data, "Data folder, for init; see below");
    app.add_option("--third", options.init.third, "Third argument of init");
    app.add_flag("--flag", options.init.flag, "Last argument of init");
    app.add_option("--script", options.script, "Run the commands of this file");
    app.add_flag("--json", options.json, "Print one JSON object per line");
    app.add_option("--timeout", options.timeout, "Longest time of the whole run, in seconds")
        ->check(CLI::Range(0.0, 86400.0));
    app.set_version_flag("--version", "plenxhost " PLENXHOST_VERSION);
    app.footer(
        "Commands come from the script, or else from the input; the command help lists\n"
        "them. Exit codes: 0 all expectations held, 1 not all did, 2 wrong usage, 3 timeout.\n"
        "The data folder's sub-folders plenx, plenx0 ... plenx99 are DELETED by init.");
}

// Tells people on the error stream, and programs in their own way as well.
void Complain(const std::string& text, bool json, Output& output) {
    if (json) {
        output.Write(Note{NoteKind::kError, text});
    }
    std::fprintf(stderr, "plenxhost: %s\n", text.c_str());
    std::fflush(stderr);
}

void RunInput(const Options& options, const StandardStreams& streams, Output& output,
              Session& session) {
    const bool dialogue = streams.InputIsConsole() && !options.json;
    const auto read = [&](std::string& line) {
        if (dialogue) {
            std::fputs("plenx> ", stdout);
            std::fflush(stdout);
        }
        return streams.ReadLine(line);
    };
    if (dialogue) {
        RunLines(
            read, [&](const std::string& text) { Complain(text, false, output); }, session);
    } else {
        RunLines(read, nullptr, session);
    }
}

int Conclude(const EndReport& report, const Options& options, Output& output) {
    output.Write(report);
    if (options.json && report.exitCode != kAllHeld) {
        std::fprintf(stderr, "%s\n", MakeTextFormat()->Format(Stamp(), report).c_str());
    }
    return report.exitCode;
}

int Run(const Options& options, const StandardStreams& streams, Output& output) {
    const bool scripted = !options.script.empty();
    const std::vector<Step> steps = scripted ? LoadScript(options.script) : std::vector<Step>();
    Session session(options.init, output);
    const RunLimit limit(std::chrono::milliseconds(std::llround(options.timeout * 1000)), [&] {
        Complain("timeout at " + session.Current(), options.json, output);
        session.Interrupt();
    });
    session.Run(ParseStep("register main", ""));
    if (scripted) {
        RunSteps(steps, session);
    } else {
        RunInput(options, streams, output, session);
    }
    return Conclude(session.Finish(limit.Expired()), options, output);
}

int Main(std::vector<std::string> arguments) {
    const StandardStreams streams;
    CLI::App app("Drives plenxsdk.dll from the command line", "plenxhost");
    Options options;
    Declare(app, options);
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllHeld : kWrongUsage;
    }
    Output output(stdout, options.json ? MakeJsonFormat() : MakeTextFormat());
    try {
        return Run(options, streams, output);
    } catch (const ScriptError& error) {
        Complain(error.what(), options.json, output);
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
    return PlenxHost::Main(std::move(texts));
}
