#include "command_line.h"

#include <CLI/CLI.hpp>

#include <functional>

#include "completion/candidates.h"
#include "doctor/command.h"
#include "ending.h"
#include "host/command.h"
#include "judge/command.h"
#include "message/command.h"
#include "scenario/command.h"
#include "trace/command.h"
#include "verify/command.h"

namespace PlenxKit {
namespace {

struct Options {
    PlenxHost::HostOptions host;
    PlenxHost::DoctorOptions doctor;
    PlenxMessage::Options message;
    PlenxTrace::Request trace;
    PlenxScenario::Options scenario;
    PlenxJudge::Options judge;
    PlenxJudge::CallerOptions judgeCaller;
    PlenxVerify::Options verify;
    PlenxVerify::WatcherOptions verifyWatcher;
};

struct Command {
    const CLI::App& app;
    std::function<int()> run;
};

// This command is for the scripts of the shells, not for people. It takes all words after its name
// as they are.
CLI::App& DeclareCompletion(CLI::App& app) {
    CLI::App& command = *app.add_subcommand("complete")->group("")->prefix_command();
    command.set_help_flag();
    return command;
}

int Complete(const CLI::App& app, const Streams& streams) {
    for (const std::string& word : Candidates(app, app.get_subcommand("complete")->remaining())) {
        streams.out << word << "\n";
    }
    return 0;
}

std::vector<Command> Declare(CLI::App& app, Options& options, const Streams& streams) {
    app.set_version_flag("--version", "plenxkit " PLENXKIT_VERSION);
    app.require_subcommand(1);
    app.footer("plenxkit COMMAND --help explains a command.");
    return {
        {DeclareCompletion(app), [&] { return Complete(app, streams); }},
        {PlenxHost::DeclareHost(app, options.host),
         [&] { return PlenxHost::RunHost(options.host, streams); }},
        {PlenxHost::DeclareDoctor(app, options.doctor),
         [&] { return PlenxHost::RunDoctor(options.doctor, streams); }},
        {PlenxMessage::Declare(app, options.message),
         [&] { return PlenxMessage::Run(options.message, streams); }},
        {PlenxTrace::Declare(app, options.trace),
         [&] { return PlenxTrace::Run(options.trace, streams); }},
        {PlenxScenario::Declare(app, options.scenario),
         [&] { return PlenxScenario::Run(options.scenario, streams); }},
        {PlenxJudge::Declare(app, options.judge),
         [&] { return PlenxJudge::Run(options.judge, streams); }},
        {PlenxJudge::DeclareCaller(app, options.judgeCaller),
         [&] { return PlenxJudge::RunCaller(options.judgeCaller, streams); }},
        {PlenxVerify::Declare(app, options.verify),
         [&] { return PlenxVerify::Run(options.verify, streams); }},
        {PlenxVerify::DeclareWatcher(app, options.verifyWatcher),
         [&] { return PlenxVerify::RunWatcher(options.verifyWatcher, streams); }},
    };
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const Streams& streams) {
    CLI::App app("One program with all tools that come with plenxsdk", "plenxkit");
    Options options;
    const std::vector<Command> commands = Declare(app, options, streams);
    try {
        // The parser expects the arguments in reverse order.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        for (const Command& command : commands) {
            if (app.got_subcommand(&command.app)) {
                return command.run();
            }
        }
    } catch (const CLI::ParseError& error) {
        return app.exit(error, streams.out, streams.err) == 0 ? 0 : kWrongUsage;
    }
    return kWrongUsage;
}

}  // namespace PlenxKit
