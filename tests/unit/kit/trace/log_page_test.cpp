// Compares the tool's table with the page of all log lines, which is itself compared with the
// sources. Otherwise the library could write a text that the tool does not know.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "story.h"

namespace PlenxTrace {
namespace {

const std::string kFullNames = "DistributedFs::";

std::string Contents(const std::filesystem::path& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> AllMatches(const std::string& text, const char* shape) {
    const std::regex regex(shape);
    std::vector<std::string> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        matches.push_back((*match)[1]);
    }
    return matches;
}

struct Row {
    std::string text;  // with its tag, and with each value as {value}
    std::string level;
    std::vector<std::string> pieces;  // the texts between the values
};

std::vector<Row> RowsOfThePage() {
    const std::regex shape(R"(^\| `(\[(?:PLENXSDK|RPCMANAGER)\] [^`]*)` \| (info|error) \|.*)");
    std::ifstream page(LOG_LINES_PAGE);
    std::vector<Row> rows;
    std::smatch match;
    for (std::string line; std::getline(page, line);) {
        if (std::regex_match(line, match, shape)) {
            rows.push_back({match[1], match[2], AllMatches(match[1], R"((?:^|\})([^{}]+))")});
        }
    }
    return rows;
}

std::string WithSampleValues(std::string text) {
    text = std::regex_replace(text, std::regex(R"(\{name\})"), "PlenxPcSvc");
    text = std::regex_replace(text, std::regex(R"(\{(path|file)\})"), R"(\a (b)\c.sys)");
    text = std::regex_replace(text, std::regex(R"(\{(letter|diskName)\})"), "X");
    return std::regex_replace(text, std::regex(R"(\{[^{}]*\})"), "7");
}

/// One of the library's source files. Its functions are named in full.
class Source {
public:
    explicit Source(std::string text)
        : text_(std::move(text)), names_(AllMatches(text_, R"re("(DistributedFs::[^"]*)")re")) {
        static const std::regex call(R"re(Log(?:Info|Error)\(\s*([\w.]+|"[^"]*"),([^;]*)\);)re");
        for (std::sregex_iterator match(text_.begin(), text_.end(), call), end; match != end;
             ++match) {
            const std::string function =
                FunctionNamed((*match)[1], static_cast<std::size_t>(match->position()));
            writings_.push_back({AllMatches((*match)[2], R"re("([^"]*)")re"), function});
        }
    }

    /// Returns whether this file may write the row.
    bool Has(const Row& row) const {
        return std::all_of(row.pieces.begin(), row.pieces.end(), [&](const std::string& piece) {
            return text_.find('"' + piece + '"') != std::string::npos;
        });
    }

    /// Returns the functions that write the row directly, so that the writing names them.
    std::vector<std::string> Writers(const Row& row) const {
        std::vector<std::string> functions;
        for (const Writing& writing : writings_) {
            if (!writing.function.empty() && writing.pieces == row.pieces) {
                functions.push_back(writing.function);
            }
        }
        return functions;
    }

    /// Returns all functions of the file. Any of them may write a row through a helper.
    const std::vector<std::string>& Names() const { return names_; }

private:
    struct Writing {
        std::vector<std::string> pieces;
        std::string function;  // empty when a parameter holds the name
    };

    // Returns the function's name. The argument is a name in quotes, or a constant that is defined
    // before, perhaps with a member.
    std::string FunctionNamed(const std::string& argument, std::size_t position) const {
        if (argument[0] == '"') {
            return argument.substr(1, argument.size() - 2);
        }
        const std::string constant = argument.substr(0, argument.find('.'));
        for (std::size_t at = text_.rfind(constant, position); at != std::string::npos && at != 0;
             at = text_.rfind(constant, at - 1)) {
            const std::size_t quote = text_.find_first_of("\";", at);
            if (quote != std::string::npos &&
                text_.compare(quote + 1, kFullNames.size(), kFullNames) == 0) {
                return text_.substr(quote + 1, text_.find('"', quote + 1) - quote - 1);
            }
        }
        return "";
    }

    std::string text_;
    std::vector<std::string> names_;
    std::vector<Writing> writings_;
};

std::vector<Source> LibrarySources() {
    std::vector<Source> sources;
    for (const auto& file : std::filesystem::recursive_directory_iterator(SOURCES)) {
        if (file.path().extension() == ".cpp") {
            sources.emplace_back(Contents(file.path()));
        }
    }
    return sources;
}

Event Sample(const Row& row, const std::string& function) {
    return Classified({At(0) + " [" + row.level + "] [36] " + WithSampleValues(row.text) + "(" +
                       function + ")"})[0];
}

bool Touches(const Event& event, Lane lane) {
    return lane != Lane::kNoLane && (event.from == lane || event.to == lane);
}

// The facade's lines may stand in the worker's lane too. The lines of RpcManager, such as those of
// notifications, may stand in the facade's lane.
bool IsDrawnWhereItBelongs(const Event& event, const std::string& name) {
    const Lane lane = LaneOfClass(name);
    return Touches(event, lane) || (lane == Lane::kFacade && Touches(event, Lane::kWorker)) ||
           (name.rfind("RpcManager::", 0) == 0 && Touches(event, Lane::kFacade));
}

bool IsUnderstood(const Row& row, const std::string& function) {
    const Event event = Sample(row, function);
    const bool isKnown = event.kind != Kind::kUnknown && event.kind != Kind::kForeign;
    return isKnown && !event.label.empty() &&
           IsDrawnWhereItBelongs(event, function.substr(kFullNames.size()));
}

TEST(PageOfLogLines, EachLineIsKnown_InTheLaneOfWhoWritesIt) {
    const std::vector<Row> rows = RowsOfThePage();
    const std::vector<Source> sources = LibrarySources();
    std::size_t direct = 0;
    for (const Row& row : rows) {
        std::size_t files = 0;
        for (const Source& source : sources) {
            const auto writers = source.Writers(row);
            for (const std::string& function : writers) {
                EXPECT_TRUE(IsUnderstood(row, function)) << row.text << ' ' << function;
            }
            direct += writers.size();
            if (writers.empty() && source.Has(row)) {
                EXPECT_TRUE(std::any_of(
                    source.Names().begin(), source.Names().end(),
                    [&](const std::string& function) { return IsUnderstood(row, function); }))
                    << row.text;
            }
            files += source.Has(row) ? 1 : 0;
        }
        EXPECT_GE(files, 1u) << row.text;
    }
    EXPECT_GE(rows.size(), 187u) << "this test does not read the page in the form that it has";
    EXPECT_GT(direct, rows.size() / 2)
        << "this test does not read the sources in the form that they have";
}

// This is about lines of level error. Those that are usual with one code only have another code
// here.
TEST(PageOfLogLines, OnlyTheseAreUsualWhateverTheirValues) {
    const std::vector<Source> sources = LibrarySources();
    std::set<std::string> usual;
    for (const Row& row : RowsOfThePage()) {
        for (const Source& source : sources) {
            for (const std::string& function : source.Writers(row)) {
                const Event event = Sample(row, function);
                EXPECT_TRUE(row.level == "info" || event.failure) << row.text << ' ' << function;
                if (event.usual) {
                    usual.insert(row.text);
                }
            }
        }
    }
    EXPECT_EQ(usual, (std::set<std::string>{"[PLENXSDK] kill service process {pid}",
                                            "[PLENXSDK] open file{path} error"}));
}

}  // namespace
}  // namespace PlenxTrace
