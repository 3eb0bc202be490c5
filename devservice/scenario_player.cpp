#include "scenario_player.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "hostile.h"
#include "scenario_reader.h"
#include "text/text.h"
#include "text_file.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

std::int64_t CountRun(const std::filesystem::path& file) {
    std::int64_t run = 0;
    std::ifstream(file) >> run;
    std::ofstream(file) << run + 1 << "\n";
    return run + 1;
}

// Nobody tells a service of a stop that it does not accept, so that counts from the start.
Moment TurnOf(const LifePart& part) {
    const auto accept = part.values.find("accept_stop");
    return accept != part.values.end() && accept->second == "no" ? Moment::kStart : part.moment;
}

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Identity& identity, ServiceLog& log,
                               NotificationSender& sender)
    : identity_(identity), log_(log), sender_(sender) {}

void ScenarioPlayer::Load(const std::wstring& path, const std::wstring& folderOfRuns) {
    const std::string name = PlenxText::ToUtf8(path);
    const auto text = ReadTextFile(path);
    if (!text) {
        log_.Write("cannot read scenario " + PlenxWire::RenderText(name));
        return;
    }
    ReadScenario read = ReadScenarioText(*text);
    for (const Mistake& mistake : read.mistakes) {
        log_.Write("scenario " + Located(name, mistake));
    }
    if (!read.mistakes.empty()) {
        log_.Write("does not play a scenario with mistakes");
        return;
    }
    scenario_ = std::move(read.scenario);
    seen_.assign(scenario_.steps.size(), 0);
    run_ = CountRun(std::filesystem::path(folderOfRuns) /
                    ("plenxservice." + identity_.nickname + ".runs"));
    log_.Write("plays scenario " + PlenxWire::RenderText(scenario_.title) + ", run " +
               std::to_string(run_));
    PlayLife(Moment::kStart);
}

Values ScenarioPlayer::Life() const {
    Values values;
    for (const LifePart& part : scenario_.life) {
        if (Covers(part.scope)) {
            values.insert(part.values.begin(), part.values.end());
        }
    }
    return values;
}

void ScenarioPlayer::PlayLife(Moment moment) const {
    for (const LifePart& part : scenario_.life) {
        if (Covers(part.scope) && TurnOf(part) == moment) {
            log_.Write(TurnOfLine(part.line));
        }
    }
}

Values ScenarioPlayer::StepFor(std::int32_t request) {
    const Step* const step = FirstFor(request);
    if (!step) {
        return {};
    }
    log_.Write(TurnOfLine(step->line));
    return step->values;
}

const Step* ScenarioPlayer::FirstFor(std::int32_t request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const Step* first = nullptr;
    for (std::size_t i = 0; i != scenario_.steps.size(); ++i) {
        const Step& step = scenario_.steps[i];
        if (!Covers(step.scope) || (step.request && *step.request != request)) {
            continue;
        }
        const std::int64_t before = seen_[i]++;
        if (!first && before >= step.skip && before - step.skip < step.times) {
            first = &step;
        }
    }
    return first;
}

void ScenarioPlayer::Begin(Moment moment, std::int32_t request) const {
    for (const Schedule& schedule : scenario_.schedules) {
        const bool now = schedule.moment == moment &&
                         (moment != Moment::kRequest || schedule.request == request);
        if (!now || !Covers(schedule.scope)) {
            continue;
        }
        Notifications notifications =
            schedule.hostile ? HostileNotifications() : Notifications{schedule.notification};
        notifications.front().scenarioLine = schedule.line;
        for (std::int64_t i = 0; i != schedule.times; ++i) {
            sender_.Enqueue(notifications,
                            static_cast<unsigned long>(schedule.after + i * schedule.every));
            notifications.front().scenarioLine = 0;
        }
    }
}

}  // namespace PlenxService
