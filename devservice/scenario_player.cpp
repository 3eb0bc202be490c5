#include "scenario_player.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include "hostile.h"
#include "scenario_reader.h"
#include "support/file.h"
#include "support/wide_text.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

std::wstring ControlFolderOf(const Identity& identity) {
    wchar_t folder[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(L"PLENX_SERVICE_CONTROL", folder, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::wstring(folder, length) : identity.installFolder;
}

// A file that is just being replaced cannot be opened for a moment.
std::optional<std::string> ReadPatiently(const std::filesystem::path& file) {
    constexpr int kMostAttempts = 20;
    std::error_code error;
    for (int attempt = 0;; ++attempt) {
        std::optional<std::string> text = PlenxSupport::ReadWholeFile(file);
        if (text || attempt == kMostAttempts || !std::filesystem::exists(file, error)) {
            return text;
        }
        Sleep(5);
    }
}

// A service never hears of a stop that it does not accept, so its table has its turn at the start.
Moment TurnOf(const LifePart& part) {
    return part.values.Flag("accept", true) ? part.moment : Moment::kStart;
}

}  // namespace

const wchar_t kControlFileName[] = L"plenxservice.toml";

ScenarioPlayer::ScenarioPlayer(const Identity& identity, ServiceLog& log,
                               NotificationSender& sender)
    : log_(log), sender_(sender), folder_(ControlFolderOf(identity)) {
    part_.nickname = identity.nickname;
}

void ScenarioPlayer::Load(const std::wstring& scenario) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ReadControlFile();
    const std::wstring path = scenario.empty() ? Absolute(control_.Said().below) : scenario;
    if (!path.empty()) {
        LoadScenario(path);
    }
}

void ScenarioPlayer::LoadScenario(const std::wstring& path) {
    const std::string name = PlenxSupport::ToUtf8(path);
    const auto text = ReadPatiently(path);
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
    scenario_ = PlayedFile(std::move(read.scenario));
    CountRun();
    log_.Write("plays scenario " + PlenxWire::RenderText(scenario_.Said().title) + ", run " +
               std::to_string(part_.run));
    LogTurns(Moment::kStart);
}

void ScenarioPlayer::ReadControlFile() {
    const std::string text = ReadPatiently(folder_ + L"\\" + kControlFileName).value_or("");
    if (text == controlText_) {
        return;
    }
    controlText_ = text;
    ReadScenario read = ReadScenarioText(text, FileKind::kControl);
    // This counts in spite of mistakes, because people will look for the mistakes there.
    log_.SetSecondFile(Absolute(read.scenario.log));
    log_.Write("control file says " + PlenxWire::RenderText(text));
    for (const Mistake& mistake : read.mistakes) {
        log_.Write("control file line " + std::to_string(mistake.line) + ": " + mistake.text);
    }
    control_ = read.mistakes.empty() ? PlayedFile(std::move(read.scenario)) : PlayedFile();
    if (control_.Said().CountsRuns()) {
        CountRun();
    }
}

void ScenarioPlayer::CountRun() {
    if (part_.run != 0) {
        return;
    }
    const auto file = std::filesystem::path(folder_) / ("plenxservice." + part_.nickname + ".runs");
    std::ifstream(file) >> part_.run;
    std::ofstream(file) << ++part_.run << "\n";
}

std::wstring ScenarioPlayer::Absolute(const std::string& path) const {
    const std::wstring wide = PlenxSupport::ToWide(path);
    const bool absolute = wide.size() > 1 && (wide[1] == L':' || wide[0] == L'\\');
    return wide.empty() || absolute ? wide : folder_ + L"\\" + wide;
}

Values ScenarioPlayer::Life(Moment moment) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ReadControlFile();
    Values values = control_.Life(moment, part_);
    values.Add(scenario_.Life(moment, part_));
    return values;
}

void ScenarioPlayer::LogTurns(Moment moment) const {
    for (const LifePart& life : scenario_.Said().life) {
        if (part_.Has(life.scope) && TurnOf(life) == moment) {
            log_.Write(TurnOfLine(life.line));
        }
    }
}

Values ScenarioPlayer::StepFor(std::int32_t request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ReadControlFile();
    Values values;
    if (const Step* const step = control_.StepFor(request, part_)) {
        values = step->values;
    }
    if (const Step* const step = scenario_.StepFor(request, part_)) {
        log_.Write(TurnOfLine(step->line));
        values.Add(step->values);
    }
    return values;
}

void ScenarioPlayer::Begin(Moment moment, std::int32_t request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ReadControlFile();
    Schedule(control_, moment, request, false);
    Schedule(scenario_, moment, request, true);
}

void ScenarioPlayer::Schedule(const PlayedFile& file, Moment moment, std::int32_t request,
                              bool logged) const {
    for (const PlenxService::Schedule& schedule : file.Said().schedules) {
        const bool now = schedule.moment == moment &&
                         (moment != Moment::kRequest || schedule.request == request);
        if (!now || !part_.Has(schedule.scope)) {
            continue;
        }
        Notifications notifications =
            schedule.hostile ? HostileNotifications() : Notifications{schedule.notification};
        notifications.front().scenarioLine = logged ? schedule.line : 0;
        for (std::int64_t i = 0; i != schedule.times; ++i) {
            sender_.Enqueue(notifications,
                            static_cast<unsigned long>(schedule.after + i * schedule.every));
            notifications.front().scenarioLine = 0;
        }
    }
}

}  // namespace PlenxService
