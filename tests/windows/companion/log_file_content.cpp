#include "companion/log_file_content.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

namespace PlenxTest {
namespace {

// The pattern matches only the short front, because std::regex recurses for each character.
LogLine ParseLine(const std::string& line) {
    static const std::regex kFront(
        R"((\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}) \[([^\]]+)\] \[(\d+)\] )");
    std::smatch parts;
    if (!std::regex_search(line, parts, kFront, std::regex_constants::match_continuous)) {
        ADD_FAILURE() << "not a log line: " << line;
        return {};
    }
    return {parts[1], parts[2], std::stoul(parts[3]), parts.suffix()};
}

}  // namespace

std::vector<LogLine> ReadLogLines(const std::filesystem::path& file) {
    std::vector<LogLine> lines;
    std::ifstream stream(file, std::ios::binary);
    std::string line;
    while (std::getline(stream, line)) {
        EXPECT_FALSE(stream.eof()) << "no line end: " << line;
        lines.push_back(ParseLine(line));
    }
    return lines;
}

}  // namespace PlenxTest
