// Tests the command line of host and doctor.

#include <gmock/gmock.h>
#include <CLI/CLI.hpp>

#include "doctor/command.h"
#include "ending.h"
#include "host/command.h"
#include "outcome.h"

namespace PlenxHost {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

template <class Options>
Options Parsed(CLI::App& (*declare)(CLI::App&, Options&), const std::vector<std::string>& words) {
    CLI::App app;
    Options options;
    declare(app, options);
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    return options;
}

TEST(Options, OfARunAreParsed) {
    const HostOptions options = Parsed(
        DeclareHost, {"host", "--install", "C:\\a b", "--data", "C:\\d", "--third", "t", "--flag",
                      "--json", "--timeout", "1.5", "--script", "s", "--color", "never"});
    EXPECT_EQ(options.init.install, "C:\\a b");
    EXPECT_EQ(options.init.data, "C:\\d");
    EXPECT_EQ(options.init.third, "t");
    EXPECT_TRUE(options.init.flag);
    EXPECT_TRUE(options.look.json);
    EXPECT_EQ(options.timeout, 1.5);
    EXPECT_EQ(options.script, "s");
    EXPECT_EQ(options.look.colour, ColourWish::kNever);
}

TEST(Options, OfTheDoctorAreParsed) {
    const DoctorOptions options = Parsed(DeclareDoctor, {"doctor", "--install", "C:\\a", "--data",
                                                         "C:\\d", "--program", "C:\\p", "--json"});
    EXPECT_TRUE(options.look.json);
    EXPECT_EQ(options.install, "C:\\a");
    EXPECT_EQ(options.data, "C:\\d");
    EXPECT_EQ(options.program, "C:\\p");
    EXPECT_EQ(options.look.colour, ColourWish::kAuto);
}

TEST(Options, WrongOnesAreReported) {
    const auto error = [](const std::vector<std::string>& arguments) {
        const PlenxKit::Outcome outcome = PlenxKit::OutcomeOf(arguments);
        EXPECT_EQ(outcome.code, PlenxKit::kWrongUsage);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    };
    const std::string more = "\nRun with --help for more information.\n";
    EXPECT_EQ(error({"doctor", "--install", "C:\\a"}), "--data is required" + more);
    EXPECT_EQ(error({"host", "--color", "pink"}),
              "--color: pink not in {auto,always,never}" + more);
    // The versions of CLI11 write the two ends of a range differently.
    EXPECT_THAT(error({"host", "--timeout", "-1"}),
                AllOf(StartsWith("--timeout: Value -1 not in range "), EndsWith(more)));
    EXPECT_EQ(error({"host", "doctro"}), "The following argument was not expected: doctro" + more);
}

TEST(Options, HelpShowsTheOptions) {
    const PlenxKit::Outcome host = PlenxKit::OutcomeOf({"host", "--help"});
    EXPECT_EQ(host.code, 0);
    EXPECT_EQ(host.err, "");
    for (const char* part :
         {"--install DIR ", "--script FILE ", "--timeout SECONDS ", "--color auto|always|never ",
          "Exit codes: 0 all expectations held", "Examples:"}) {
        EXPECT_THAT(host.out, HasSubstr(part));
    }
    const PlenxKit::Outcome doctor = PlenxKit::OutcomeOf({"doctor", "--help"});
    EXPECT_EQ(doctor.code, 0);
    EXPECT_THAT(doctor.out, HasSubstr("--program DIR "));
    EXPECT_THAT(doctor.out, HasSubstr("It changes nothing."));
}

}  // namespace
}  // namespace PlenxHost
