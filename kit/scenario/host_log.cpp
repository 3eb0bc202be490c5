#include "scenario/host_log.h"

#include <cstdio>
#include <sstream>

namespace PlenxScenario {
namespace {

constexpr unsigned long kExpectationFailed = 1;
constexpr unsigned long kTimeout = 3;
constexpr unsigned long kLeastSystemCode = 0x80000000;

struct SystemCode {
    unsigned long code;
    const char* meaning;
};
// Windows ends a process with these codes.
constexpr SystemCode kSystemCodes[] = {
    {0xC0000005, "access violation"},
    {0xC0000135, "a DLL was not found"},
    {0xC0000139, "a DLL lacks a function"},
};

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

// plenxkit host ends with "2 failed, of 7 expectations:" and a line for each.
std::string FirstFailedExpectation(const std::vector<std::string>& lines) {
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        if (lines[i].find(" failed, of ") != std::string::npos) {
            const std::size_t begin = lines[i + 1].find_first_not_of(' ');
            return begin == std::string::npos ? "" : lines[i + 1].substr(begin);
        }
    }
    return {};
}

std::string Seconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

std::string TextOfCode(unsigned long code) {
    std::string text = std::to_string(code);
    if (code < kLeastSystemCode) {
        return text;
    }
    char hexadecimal[32];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%08lX", code);
    text += std::string(", ") + hexadecimal;
    for (const SystemCode& known : kSystemCodes) {
        if (known.code == code) {
            text += std::string(" (") + known.meaning + ")";
        }
    }
    return text;
}

std::string ReasonOfExitCode(unsigned long code, bool ownHost,
                             const std::vector<std::string>& lines) {
    if (!ownHost && code == kTimeout) {
        return "the host took too long";
    }
    std::string failed = ownHost ? "" : FirstFailedExpectation(lines);
    if (code == kExpectationFailed && !failed.empty()) {
        return failed;
    }
    return "the host ended with " + TextOfCode(code) +
           (lines.empty() ? " and printed nothing" : ", its last line: " + lines.back());
}

}  // namespace

std::vector<std::string> ObservedIn(const std::string& hostOutput) {
    std::vector<std::string> observed;
    for (const std::string& line : LinesOf(hostOutput)) {
        const std::size_t mark = line.find("] < ");
        if (mark != std::string::npos && line.find('[') < mark &&
            line.find_first_not_of(" 0123456789.[") == mark) {
            observed.push_back(line.substr(mark + 4));
        }
    }
    return observed;
}

std::string ReasonOfFailure(const Ending& ending, const std::string& hostOutput,
                            const std::string& serviceLog) {
    if (!ending.exitCode) {
        return "the host did not end within " + Seconds(ending.deadline);
    }
    if (*ending.exitCode != 0) {
        return ReasonOfExitCode(*ending.exitCode, ending.ownHost, LinesOf(hostOutput));
    }
    if (serviceLog.find(" plays scenario ") == std::string::npos) {
        return "no service was started from the install folder, %PLENX_INSTALL%";
    }
    return {};
}

}  // namespace PlenxScenario
