#include "report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace PlenxScenario {
namespace {

constexpr int kNameWidth = 28;

std::string Seconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", seconds);
    return text;
}

std::ptrdiff_t Failures(const std::vector<Result>& results) {
    return std::count_if(results.begin(), results.end(),
                         [](const Result& result) { return !result.Passed(); });
}

// For an attribute. Characters that XML does not have become a question mark.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char letter : text) {
        switch (letter) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += static_cast<unsigned char>(letter) < 0x20 ? '?' : letter;
        }
    }
    return escaped;
}

}  // namespace

std::string LineOf(const Result& result) {
    char line[96];
    std::snprintf(line, sizeof line, "%-5s %-*s %5s s", result.Passed() ? "ok" : "FAIL", kNameWidth,
                  result.name.c_str(), Seconds(result.seconds).c_str());
    return result.Passed() ? line : line + ("  " + result.reason);
}

std::string SummaryOf(const std::vector<Result>& results) {
    const std::ptrdiff_t failures = Failures(results);
    return std::to_string(static_cast<std::ptrdiff_t>(results.size()) - failures) + " passed, " +
           std::to_string(failures) + " failed";
}

std::string JsonOf(const std::vector<Result>& results) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Result& result : results) {
        all.push_back({{"name", result.name},
                       {"title", result.title},
                       {"passed", result.Passed()},
                       {"reason", result.reason},
                       {"seconds", result.seconds},
                       {"logs", result.logFolder},
                       {"observed", result.observed}});
    }
    return all.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string JunitOf(const std::vector<Result>& results) {
    double seconds = 0;
    std::string cases;
    for (const Result& result : results) {
        seconds += result.seconds;
        cases += "  <testcase classname=\"plenxscenario\" name=\"" + Escaped(result.name) +
                 "\" time=\"" + Seconds(result.seconds) + "\"";
        cases += result.Passed() ? "/>\n"
                                 : ">\n    <failure message=\"" + Escaped(result.reason) +
                                       "\"/>\n  </testcase>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"plenxscenario\" "
           "tests=\"" +
           std::to_string(results.size()) + "\" failures=\"" + std::to_string(Failures(results)) +
           "\" time=\"" + Seconds(seconds) + "\">\n" + cases + "</testsuite>\n";
}

}  // namespace PlenxScenario
