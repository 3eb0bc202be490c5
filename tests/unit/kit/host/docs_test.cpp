// The guide shows what the program prints.

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "doctor/doctor.h"
#include "host/commands.h"

namespace PlenxHost {
namespace {

using testing::HasSubstr;

std::string Page(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Returns the text as the page shows output, with four blanks in front of each line.
std::string Indented(const std::string& text) {
    std::string lines = "    ";
    for (const char letter : text) {
        lines += letter;
        lines += letter == '\n' ? "    " : "";
    }
    return lines + "\n";
}

TEST(DocsPage, ShowsTheHelpAsItIs) {
    EXPECT_THAT(Page(HOST_PAGE),
                HasSubstr("    plenx> help start\n" + Indented(CommandHelp("start"))));
}

TEST(DocsPage, ShowsEachCheckOfTheDoctor) {
    const std::string page = Page(DOCTOR_PAGE);
    for (const Check& check : Checks()) {
        EXPECT_THAT(page, HasSubstr("\n    " + std::string(check.title) + "\n"));
        EXPECT_THAT(page, HasSubstr("\n| " + std::string(check.name) + " | "));
    }
    for (const std::string& text : NotLookedAt()) {
        EXPECT_THAT(page, HasSubstr("      " + text + "\n"));
    }
}

}  // namespace
}  // namespace PlenxHost
