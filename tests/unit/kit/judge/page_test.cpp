// Tests that the page on the wire protocol names each check beside its rule, and that the judge has
// each check that the page names.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "judge/check.h"

namespace PlenxJudge {
namespace {

// Returns the anchor that a heading has on the page: "## The reply" becomes "the-reply".
std::string AnchorOf(const std::string& heading) {
    std::string anchor;
    for (const char letter : heading.substr(heading.find(' ') + 1)) {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        } else if (letter == ' ' || letter == '-') {
            anchor += '-';
        }
    }
    return anchor;
}

// Returns the numbers of the checks on the page, each with the anchors of the sections that name
// it.
std::map<std::string, std::set<std::string>> ChecksOnThePage() {
    std::map<std::string, std::set<std::string>> checks;
    std::ifstream page(WIRE_PAGE);
    const std::regex number("`([a-z0-9-]+/[0-9]+)`");
    std::string anchor;
    bool code = false;
    for (std::string line; std::getline(page, line);) {
        code = code != (line.compare(0, 3, "```") == 0);
        if (!code && line.compare(0, 2, "##") == 0) {
            anchor = AnchorOf(line);
        }
        for (std::sregex_iterator next(line.begin(), line.end(), number), end; next != end;
             ++next) {
            if (!anchor.empty()) {  // the text before the first section explains the marks
                checks[(*next)[1]].insert(anchor);
            }
        }
    }
    return checks;
}

TEST(WirePage, NamesEachCheckInTheSectionThatTheCheckNames) {
    const auto onThePage = ChecksOnThePage();
    for (const Check& check : Checks()) {
        const auto found = onThePage.find(check.number);
        ASSERT_NE(found, onThePage.end()) << check.number << " is not on the page";
        EXPECT_EQ(found->second.count(check.section), 1u)
            << check.number << " is not in " << check.section << ", but in "
            << *found->second.begin();
    }
}

TEST(WirePage, NamesNoCheckThatTheJudgeDoesNotHave) {
    std::set<std::string> numbers;
    for (const Check& check : Checks()) {
        EXPECT_TRUE(numbers.insert(check.number).second) << check.number << " is listed twice";
    }
    for (const auto& [number, anchors] : ChecksOnThePage()) {
        EXPECT_EQ(numbers.count(number), 1u) << number << " in " << *anchors.begin();
    }
}

TEST(Table, HasASentenceForEachCheck) {
    for (const Check& check : Checks()) {
        const std::string sentence = check.sentence;
        EXPECT_EQ(sentence.back(), '.') << check.number;
        EXPECT_NE(check.run, nullptr) << check.number;
    }
}

}  // namespace
}  // namespace PlenxJudge
