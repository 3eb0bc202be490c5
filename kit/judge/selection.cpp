#include "judge/selection.h"

#include <algorithm>
#include <sstream>

namespace PlenxJudge {
namespace {

std::string Trimmed(const std::string& text) {
    constexpr char kBlanks[] = " \t\r";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos
               ? std::string()
               : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::vector<std::string> SplitAtCommas(const std::vector<std::string>& words) {
    std::vector<std::string> parts;
    for (const std::string& word : words) {
        std::istringstream stream(word);
        for (std::string part; std::getline(stream, part, ',');) {
            parts.push_back(Trimmed(part));
        }
    }
    return parts;
}

bool Fits(const Check& check, const std::string& word) {
    return check.number == word || AreaOf(check) == word;
}

void CheckThatItFits(const std::string& word) {
    const std::vector<Check>& all = Checks();
    if (std::none_of(all.begin(), all.end(),
                     [&](const Check& check) { return Fits(check, word); })) {
        throw UsageError("there is no check \"" + word + "\"; --list shows them all");
    }
}

}  // namespace

std::vector<const Check*> Selected(const std::vector<std::string>& words) {
    const std::vector<std::string> parts = SplitAtCommas(words);
    std::for_each(parts.begin(), parts.end(), CheckThatItFits);
    std::vector<const Check*> selected;
    for (const Check& check : Checks()) {
        if (parts.empty() || std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
                return Fits(check, part);
            })) {
            selected.push_back(&check);
        }
    }
    return selected;
}

std::set<std::string> KnownFailures(const std::string& text) {
    std::set<std::string> known;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        const std::string number = Trimmed(line.substr(0, line.find('#')));
        if (number.empty()) {
            continue;
        }
        const std::vector<Check>& all = Checks();
        if (std::none_of(all.begin(), all.end(),
                         [&](const Check& check) { return check.number == number; })) {
            throw UsageError("the list of known failures names \"" + number +
                             "\", which is not a check");
        }
        known.insert(number);
    }
    return known;
}

}  // namespace PlenxJudge
