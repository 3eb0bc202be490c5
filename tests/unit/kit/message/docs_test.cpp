// Tests that the program prints what the page shows.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tool.h"

namespace PlenxMessage {
namespace {

constexpr char kIndent[] = "    ";
constexpr char kPrompt[] = "$ ";

struct Example {
    std::string command;
    std::string output;
};

bool StartsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

void TrimEnd(std::string& output) {
    output.erase(output.find_last_not_of('\n') + 1);
}

// An example is an indented prompt with a command, and the indented lines after it.
std::vector<Example> ExamplesIn(std::istream& page) {
    std::vector<Example> examples;
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        const bool indented = StartsWith(line, kIndent);
        const std::string text = indented ? line.substr(sizeof kIndent - 1) : "";
        inside = inside && (indented || line.empty());
        if (StartsWith(text, kPrompt)) {
            examples.push_back({text.substr(sizeof kPrompt - 1), ""});
            inside = true;
        } else if (inside) {
            examples.back().output += text + "\n";
        }
    }
    return examples;
}

std::vector<std::string> WordsOf(const std::string& command) {
    std::istringstream stream(command);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    words.erase(words.begin(), words.begin() + 2);  // plenxkit message
    return words;
}

std::string OutputOf(const std::string& command) {
    const std::size_t pipe = command.find(" | ");
    if (pipe == std::string::npos) {
        return Tool(WordsOf(command)).out;
    }
    const std::string first = Tool(WordsOf(command.substr(0, pipe))).out;
    return Tool(WordsOf(command.substr(pipe + 3)), first).out;
}

TEST(Docs, EachExample_PrintsWhatThePageShows) {
    std::ifstream page(DOCS_PAGE);
    std::vector<Example> examples = ExamplesIn(page);
    EXPECT_EQ(examples.size(), 4u);
    for (Example& example : examples) {
        std::string output = OutputOf(example.command);
        TrimEnd(output);
        TrimEnd(example.output);
        EXPECT_EQ(output, example.output) << example.command;
    }
}

}  // namespace
}  // namespace PlenxMessage
