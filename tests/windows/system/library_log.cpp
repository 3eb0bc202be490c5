#include "system/library_log.h"

#include <fstream>

#include "system/own_process.h"

namespace PlenxTest {
namespace {

std::string Line(const char* level, const std::string& function, const std::string& text) {
    return level + (" [PLENXSDK] " + text + "(DistributedFs::" + function + ")");
}

// A line looks like "2026-01-31 12:34:56.789 [info] [1234] text".
bool Parse(const std::string& line, LogLine& parsed) {
    constexpr std::size_t kLevel = 25;
    const std::size_t levelEnd = line.find("] [", kLevel);
    const std::size_t threadEnd =
        levelEnd == std::string::npos ? levelEnd : line.find("] ", levelEnd + 3);
    if (threadEnd == std::string::npos) {
        return false;
    }
    parsed.thread = std::stoul(line.substr(levelEnd + 3, threadEnd - levelEnd - 3));
    parsed.text = line.substr(kLevel, levelEnd - kLevel) + " " + line.substr(threadEnd + 2);
    return true;
}

}  // namespace

std::string Info(const std::string& function, const std::string& text) {
    return Line("info", function, text);
}

std::string Error(const std::string& function, const std::string& text) {
    return Line("error", function, text);
}

std::string NumberBehind(const std::string& text, const Lines& lines) {
    for (const std::string& line : lines) {
        const std::size_t at = line.find(text);
        if (at != std::string::npos) {
            const std::size_t begin = at + text.size();
            return line.substr(begin, line.find_first_not_of("0123456789", begin) - begin);
        }
    }
    return "0";
}

std::vector<LogLine> ReadLibraryLog(std::size_t from) {
    std::ifstream file(LibraryLogFile(), std::ios::binary);
    file.seekg(static_cast<std::streamoff>(from));
    std::vector<LogLine> lines;
    LogLine parsed;
    for (std::string line; std::getline(file, line);) {
        if (Parse(line, parsed)) {
            lines.push_back(parsed);
        }
    }
    return lines;
}

}  // namespace PlenxTest
