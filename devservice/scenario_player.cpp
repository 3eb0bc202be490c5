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

Values ScenarioPlayer::StepFor(std::int32_t request) {
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
    return first ? first->values : Values();
}

void ScenarioPlayer::Begin(Moment moment, std::int32_t request) const {
    for (const Schedule& schedule : scenario_.schedules) {
        const bool now = schedule.moment == moment &&
                         (moment != Moment::kRequest || schedule.request == request);
        if (!now || !Covers(schedule.scope)) {
            continue;
        }
        const Notifications notifications =
            schedule.hostile ? HostileNotifications() : Notifications{schedule.notification};
        for (std::int64_t i = 0; i != schedule.times; ++i) {
            sender_.Enqueue(notifications,
                            static_cast<unsigned long>(schedule.after + i * schedule.every));
        }
    }
}

}  // namespace PlenxService
