#include "kit/scenario/page.h"

#include <algorithm>
#include <sstream>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

constexpr char kIndent[] = "      ";
constexpr char kCode[] = "    ";

std::string SectionOf(const std::string& scenario) {
    const std::string page =
        ReadFile(std::filesystem::path(ProgramFolder()) / "scenarios" / "page.md");
    const std::size_t begin = page.find("\n### " + scenario + ": ");
    return begin == std::string::npos ? ""
                                      : page.substr(begin, page.find("\n#", begin + 1) - begin);
}

// Returns the lines that begin with this text, each without it.
std::vector<std::string> LinesBehind(const std::string& text, const std::string& begin) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.compare(0, begin.size(), begin) == 0 && line[begin.size()] != ' ') {
            lines.push_back(line.substr(begin.size()));
        }
    }
    return lines;
}

}  // namespace

Shown ShownOnPage(const std::string& scenario) {
    Shown shown;
    shown.lines = LinesBehind(SectionOf(scenario), std::string(kCode) + kIndent);
    const auto more = std::find(shown.lines.begin(), shown.lines.end(), "...");
    if (more != shown.lines.end()) {
        shown.lines.erase(more);
        shown.shortened = true;
    }
    return shown;
}

std::vector<std::string> ObservedLines(const std::string& output) {
    return LinesBehind(output, kIndent);
}

}  // namespace PlenxTest
