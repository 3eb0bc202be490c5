#include "host/session.h"

#include <exception>
#include <utility>

#include "host/exit_code.h"
#include "host/script_parser.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxHost {
namespace {

using DistributedFs::PLENXManager;

constexpr const char* kNullObserver = "null";
constexpr std::size_t kMostLeftovers = 20;

std::string Shorten(const std::string& text) {
    constexpr std::size_t kMost = 200;
    return text.size() <= kMost ? text : text.substr(0, kMost) + "...";
}

// Whether the command leaves a result that expect-result can check.
bool IsAnswer(const Outcome& outcome) {
    return !outcome.held && (outcome.number || outcome.text);
}

}  // namespace

Session::Session(InitArguments init, Output& output) : init_(std::move(init)), output_(output) {}

void Session::Run(const Step& step) {
    using std::chrono::steady_clock;
    SetCurrent(step.place + (step.place.empty() ? "" : ": ") + Shorten(step.text));
    const auto began = std::chrono::system_clock::now();
    const auto start = steady_clock::now();
    const Outcome outcome = Perform(step);
    const auto took =
        std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
    if (!outcome.silent) {
        output_.Write(CommandReport{step.place, step.name, step.text, outcome, began, took});
    }
    Judge(outcome);
    SetCurrent("the input");
}

Outcome Session::Perform(const Step& step) {
    try {
        return step.action(*this);
    } catch (const ScriptError& error) {
        throw ScriptError((step.place.empty() ? "" : step.place + ": ") + error.what());
    } catch (const std::exception& error) {
        Outcome outcome;
        outcome.held = false;
        outcome.remark = std::string("exception: ") + error.what();
        return outcome;
    }
}

void Session::Judge(const Outcome& outcome) {
    if (IsAnswer(outcome)) {
        last_ = outcome;
    }
    if (!outcome.held || (!*outcome.held && inbox_.Interrupted())) {
        return;
    }
    ++expectations_;
    if (!*outcome.held) {
        failures_.push_back(Current() + ": " + outcome.remark);
    }
}

EndReport Session::Finish(bool timedOut) {
    UnregisterAll();
    const int exitCode = timedOut             ? kTimedOut
                         : !failures_.empty() ? kNotAllHeld
                                              : quitCode_.value_or(kAllHeld);
    EndReport report{exitCode, expectations_, failures_, {}};
    for (const Notification& notification : inbox_.Left()) {
        if (report.leftovers.size() == kMostLeftovers) {
            report.leftovers.push_back("and more");
            break;
        }
        report.leftovers.push_back(ToText(notification));
    }
    return report;
}

void Session::UnregisterAll() {
    behaviour_.EndDelays();
    while (!registered_.empty()) {
        Unregister(std::string(*registered_.begin()));
    }
}

void Session::Interrupt() {
    behaviour_.EndDelays();
    inbox_.Interrupt();
}

std::string Session::Current() const {
    const std::lock_guard<std::mutex> lock(currentMutex_);
    return current_;
}

void Session::SetCurrent(const std::string& text) {
    const std::lock_guard<std::mutex> lock(currentMutex_);
    current_ = text;
}

void Session::Say(const std::string& text) {
    output_.Write(Note{NoteKind::kText, text});
}

void Session::Register(const std::string& observer) {
    registered_.insert(observer);
    PLENXManager::GetInstance().RegisterPLENXServiceObserver(Observer(observer));
}

void Session::Unregister(const std::string& observer) {
    PLENXManager::GetInstance().UnregisterPLENXServiceObserver(Observer(observer));
    registered_.erase(observer);
}

HostObserver* Session::Observer(const std::string& name) {
    if (name == kNullObserver) {
        return nullptr;
    }
    std::unique_ptr<HostObserver>& observer = observers_[name];
    if (observer == nullptr) {
        observer = std::make_unique<HostObserver>(name, behaviour_, inbox_, output_);
    }
    return observer.get();
}

}  // namespace PlenxHost
