#include "scenario/played.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "wire/catalog.h"

namespace PlenxScenario {
namespace {

using PlenxService::Moment;

std::string NameOf(std::optional<std::int32_t> request) {
    if (!request) {
        return "any request";
    }
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(*request);
    return shape ? shape->name : "request " + std::to_string(*request);
}

std::string NameOf(const PlenxService::Schedule& schedule) {
    switch (schedule.moment) {
    case Moment::kStart:
        return "start";
    case Moment::kStop:
        return "stop";
    case Moment::kRequest:
        break;
    }
    return NameOf(schedule.request);
}

// Tables that wait for the same event are listed together.
std::string TextOfLines(const std::vector<unsigned>& lines) {
    std::string text = lines.size() == 1 ? "line " : "lines ";
    for (std::size_t i = 0; i != lines.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == lines.size() ? " and " : ", ") + std::to_string(lines[i]);
    }
    return text;
}

}  // namespace

std::vector<Table> TablesOf(const PlenxService::Scenario& scenario) {
    std::vector<Table> tables;
    const auto add = [&](unsigned line, const std::string& what, const PlenxService::Scope& scope) {
        tables.push_back({line, scope.service.empty() ? what : what + " (" + scope.service + ")"});
    };
    for (const PlenxService::LifePart& part : scenario.life) {
        add(part.line, part.moment == Moment::kStart ? "[start]" : "[stop]", part.scope);
    }
    for (const PlenxService::Step& step : scenario.steps) {
        add(step.line, "[[on]] " + NameOf(step.request), step.scope);
    }
    for (const PlenxService::Schedule& schedule : scenario.schedules) {
        add(schedule.line, "[[notify]] on " + NameOf(schedule), schedule.scope);
    }
    return tables;
}

std::vector<Table> NotPlayed(const std::vector<Table>& tables, const std::string& serviceLog) {
    std::vector<Table> missing;
    std::copy_if(tables.begin(), tables.end(), std::back_inserter(missing),
                 [&](const Table& table) {
                     // The line end tells it from a host's text, which stands in quotes.
                     const std::string turn = " " + PlenxService::TurnOfLine(table.line) + "\n";
                     return serviceLog.find(turn) == std::string::npos;
                 });
    return missing;
}

std::string TextOfNotPlayed(const std::vector<Table>& notPlayed, std::size_t all) {
    std::vector<std::pair<std::string, std::vector<unsigned>>> groups;
    for (const Table& table : notPlayed) {
        const auto group = std::find_if(groups.begin(), groups.end(),
                                        [&](const auto& one) { return one.first == table.what; });
        if (group == groups.end()) {
            groups.push_back({table.what, {table.line}});
        } else {
            group->second.push_back(table.line);
        }
    }
    std::string text;
    for (const auto& [what, lines] : groups) {
        text += (text.empty() ? ": " : "; ") + what + ", " + TextOfLines(lines);
    }
    return notPlayed.empty() ? ""
                             : std::to_string(notPlayed.size()) + " of " + std::to_string(all) +
                                   " tables not played" + text;
}

}  // namespace PlenxScenario
