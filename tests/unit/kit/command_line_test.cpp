// Tests the program as a whole.

#include "command_line.h"

#include <gmock/gmock.h>

#include "outcome.h"

namespace PlenxKit {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kCommands[] = {"host", "doctor", "message", "trace", "scenario", "judge"};

TEST(CommandLine, HelpNamesEachCommand) {
    const Outcome outcome = OutcomeOf({"--help"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    for (const std::string command : kCommands) {
        EXPECT_THAT(outcome.out, HasSubstr("\n  " + command + " "));
    }
}

TEST(CommandLine, HelpOfACommandBeginsWithItsUsage) {
    for (const std::string command : kCommands) {
        const Outcome outcome = OutcomeOf({command, "--help"});
        EXPECT_EQ(outcome.code, 0) << command;
        EXPECT_THAT(outcome.out, HasSubstr("Usage: plenxkit " + command + " ")) << command;
    }
}

TEST(CommandLine, VersionIsPrinted) {
    const Outcome outcome = OutcomeOf({"--version"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, StartsWith("plenxkit 1"));
}

TEST(CommandLine, WithoutACommandOrWithAnUnknownOne_EndsWith2) {
    const std::string more = "\nRun with --help for more information.\n";
    EXPECT_EQ(OutcomeOf({}).code, 2);
    EXPECT_EQ(OutcomeOf({}).err, "A subcommand is required" + more);
    EXPECT_EQ(OutcomeOf({"doctro"}).code, 2);
    EXPECT_EQ(OutcomeOf({"doctro"}).out, "");
}

TEST(CommandLine, CommandThatNeedsWindows_SaysSoElsewhere) {
    const Outcome outcome = OutcomeOf({"scenario", "list"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "plenxkit scenario: this command needs Windows\n");
}

}  // namespace
}  // namespace PlenxKit
