// The command line.

#include "options.h"

#include <gmock/gmock.h>

#include "exit_code.h"

namespace PlenxHost {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(Options, OfARun) {
    const ParsedOptions parsed =
        ParseOptions({"--install", "C:\\a b", "--data", "C:\\d", "--third", "t", "--flag", "--json",
                      "--timeout", "1.5", "--script", "s", "--color", "never"});
    ASSERT_FALSE(parsed.over);
    const Options& options = parsed.options;
    EXPECT_EQ(options.init.install, "C:\\a b");
    EXPECT_EQ(options.init.data, "C:\\d");
    EXPECT_EQ(options.init.third, "t");
    EXPECT_TRUE(options.init.flag);
    EXPECT_TRUE(options.json);
    EXPECT_EQ(options.timeout, 1.5);
    EXPECT_EQ(options.script, "s");
    EXPECT_EQ(options.colour, ColourWish::kNever);
    EXPECT_FALSE(options.doctor);
}

TEST(Options, OfTheDoctor) {
    const ParsedOptions parsed = ParseOptions(
        {"doctor", "--install", "C:\\a", "--data", "C:\\d", "--program", "C:\\p", "--json"});
    ASSERT_FALSE(parsed.over);
    EXPECT_TRUE(parsed.options.doctor);
    EXPECT_TRUE(parsed.options.json);
    EXPECT_EQ(parsed.options.init.install, "C:\\a");
    EXPECT_EQ(parsed.options.init.data, "C:\\d");
    EXPECT_EQ(parsed.options.program, "C:\\p");
    EXPECT_EQ(parsed.options.colour, ColourWish::kAuto);
}

TEST(Options, WrongOnesAreTold) {
    const auto error = [](const std::vector<std::string>& arguments) {
        const ParsedOptions parsed = ParseOptions(arguments);
        EXPECT_TRUE(parsed.over);
        EXPECT_EQ(parsed.exitCode, kWrongUsage);
        EXPECT_EQ(parsed.output, "");
        return parsed.error;
    };
    const std::string more = "\nRun with --help for more information.\n";
    EXPECT_EQ(error({"doctor", "--install", "C:\\a"}), "--data is required" + more);
    EXPECT_EQ(error({"--color", "pink"}), "--color: pink not in {auto,always,never}" + more);
    EXPECT_EQ(error({"--timeout", "-1"}),
              "--timeout: Value -1 not in range 0.000000 to 86400.000000" + more);
    EXPECT_EQ(error({"doctro"}), "The following argument was not expected: doctro" + more);
}

TEST(Options, HelpShowsWhatThereIs) {
    const ParsedOptions all = ParseOptions({"--help"});
    EXPECT_TRUE(all.over);
    EXPECT_EQ(all.exitCode, kAllHeld);
    EXPECT_EQ(all.error, "");
    for (const char* part :
         {"--install DIR ", "--script FILE ", "--timeout SECONDS ", "--color auto|always|never ",
          "doctor ", "Exit codes: 0 all expectations held", "Examples:"}) {
        EXPECT_THAT(all.output, HasSubstr(part));
    }
    const ParsedOptions doctor = ParseOptions({"doctor", "--help"});
    EXPECT_EQ(doctor.exitCode, kAllHeld);
    EXPECT_THAT(doctor.output, HasSubstr("--program DIR "));
    EXPECT_THAT(doctor.output, HasSubstr("It changes nothing."));
}

TEST(Options, VersionIsTold) {
    const ParsedOptions parsed = ParseOptions({"--version"});
    EXPECT_EQ(parsed.exitCode, kAllHeld);
    EXPECT_THAT(parsed.output, StartsWith("plenxhost "));
}

}  // namespace
}  // namespace PlenxHost
