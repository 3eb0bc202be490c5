#include "scenario/report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "junit.h"

namespace PlenxScenario {
namespace {

constexpr int kNameWidth = 28;

std::string Tenths(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", seconds);
    return text;
}

std::ptrdiff_t Failures(const std::vector<Result>& results) {
    return std::count_if(results.begin(), results.end(),
                         [](const Result& result) { return !result.Passed(); });
}

// The scenario passed, but not all of it was played.
bool Partly(const Result& result) {
    return result.Passed() && !result.notPlayed.empty();
}

std::string Remark(const Result& result) {
    return result.Passed() ? TextOfNotPlayed(result.notPlayed, result.tables) : result.reason;
}

}  // namespace

std::string LineOf(const Result& result) {
    char line[96];
    std::snprintf(line, sizeof line, "%-5s %-*s %5s s", result.Passed() ? "ok" : "FAIL", kNameWidth,
                  result.name.c_str(), Tenths(result.seconds).c_str());
    const std::string remark = Remark(result);
    return remark.empty() ? line : line + ("  " + remark);
}

std::string SummaryOf(const std::vector<Result>& results) {
    const std::ptrdiff_t failures = Failures(results);
    const std::ptrdiff_t partly = std::count_if(results.begin(), results.end(), Partly);
    return std::to_string(static_cast<std::ptrdiff_t>(results.size()) - failures) + " passed, " +
           std::to_string(failures) + " failed" +
           (partly == 0 ? "" : "; " + std::to_string(partly) + " not played in full");
}

std::string JsonOf(const std::vector<Result>& results) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Result& result : results) {
        nlohmann::ordered_json notPlayed = nlohmann::ordered_json::array();
        for (const Table& table : result.notPlayed) {
            notPlayed.push_back({{"line", table.line}, {"table", table.what}});
        }
        all.push_back({{"name", result.name},
                       {"title", result.title},
                       {"passed", result.Passed()},
                       {"reason", result.reason},
                       {"seconds", result.seconds},
                       {"logs", result.logFolder},
                       {"tables", result.tables},
                       {"not_played", notPlayed},
                       {"observed", result.observed}});
    }
    return all.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string JunitOf(const std::vector<Result>& results) {
    std::vector<PlenxKit::JunitCase> cases;
    cases.reserve(results.size());
    for (const Result& result : results) {
        cases.push_back({result.name, result.seconds, result.reason,
                         TextOfNotPlayed(result.notPlayed, result.tables)});
    }
    return PlenxKit::JunitOf("plenxkit scenario", cases);
}

}  // namespace PlenxScenario
