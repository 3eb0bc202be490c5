#include "system/host.h"

#include <algorithm>
#include <sstream>

#include "support/service_state.h"
#include "support/system_habits.h"

namespace PlenxTest {
namespace {

// A job of an unknown service leaves one line with its number and does nothing else.
constexpr unsigned kFirstSettle = 900000;

std::string SettleLine(unsigned number) {
    return Error("PLENXManager::StartFunc",
                 "plenx manager start service invalid service type svcType(" +
                     std::to_string(kFirstSettle + number) + ")");
}

bool IsOfSettle(const std::string& line) {
    return line.find("(9000") != std::string::npos;
}

std::vector<LogLine>::const_iterator FindLine(const std::vector<LogLine>& log,
                                              const std::string& text) {
    return std::find_if(log.begin(), log.end(),
                        [&](const LogLine& line) { return line.text == text; });
}

}  // namespace

Host::Host() {
    Control("");
    manager.RegisterPLENXServiceObserver(&observer);
}

Host::~Host() {
    manager.UnregisterPLENXServiceObserver(&observer);
}

void Host::Control(const std::string& tables) const {
    folder.SetServiceControl("log = '" + ServiceLogFile().string() + "'\n" + tables);
}

void Host::Init() {
    manager.Init(folder.Install(), folder.Data(), "third", true);
    ASSERT_TRUE(Settle());
}

bool Host::Start(ServiceType service) {
    const std::string outcome = "NotifyStatus(" + std::to_string(service) + ", group, 0, ";
    const auto told = [&] {
        const Lines calls = observer.Calls();
        return std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
            return call.compare(0, outcome.size(), outcome) == 0;
        });
    };
    const auto before = told();
    manager.Start(service, "group", "argument");
    EXPECT_TRUE(WaitFor([&] { return told() > before; }, 30000)) << "the start had no outcome";
    const Lines calls = observer.Calls();
    const auto last = std::find_if(calls.rbegin(), calls.rend(), [&](const std::string& call) {
        return call.compare(0, outcome.size(), outcome) == 0;
    });
    return last != calls.rend() && *last == outcome + "1)";
}

bool Host::Settle(DWORD milliseconds) {
    const unsigned number = ++settles_;
    manager.Start(static_cast<ServiceType>(kFirstSettle + number), "settle", "settle");
    const std::string line = SettleLine(number);
    return WaitFor(
        [&] {
            const std::vector<LogLine> log = ReadLibraryLog();
            const auto found = FindLine(log, line);
            if (found == log.end()) {
                return false;
            }
            worker_ = found->thread;
            return true;
        },
        milliseconds);
}

template <class Condition>
Lines Host::Between(Condition condition) const {
    const std::vector<LogLine> log = ReadLibraryLog();
    auto line = settles_ > 1 ? FindLine(log, SettleLine(settles_ - 1)) : log.begin();
    const auto end = FindLine(log, SettleLine(settles_));
    Lines lines;
    for (; line != end; ++line) {
        if (condition(line->thread) && !IsOfSettle(line->text)) {
            lines.push_back(line->text);
        }
    }
    return lines;
}

Lines Host::WorkerLines() const {
    return Between([this](DWORD thread) { return thread == worker_; });
}

Lines Host::OwnLines() const {
    return Between([](DWORD thread) { return thread == GetCurrentThreadId(); });
}

Lines Host::AllLines() const {
    return Between([](DWORD) { return true; });
}

Lines Host::LinesOf(const std::string& function) {
    const std::string ending = "(DistributedFs::" + function + ")";
    Lines lines;
    for (const LogLine& line : ReadLibraryLog()) {
        if (line.text.size() > ending.size() && !IsOfSettle(line.text) &&
            line.text.compare(line.text.size() - ending.size(), ending.size(), ending) == 0) {
            lines.push_back(line.text);
        }
    }
    return lines;
}

int Host::CountLines(const std::string& text) {
    const std::vector<LogLine> log = ReadLibraryLog();
    return static_cast<int>(std::count_if(log.begin(), log.end(),
                                          [&](const LogLine& line) { return line.text == text; }));
}

bool Host::LogComesToSay(const std::string& line, DWORD milliseconds) {
    return WaitFor([&] { return CountLines(line) != 0; }, milliseconds);
}

Lines Host::ServiceLines(const std::string& nickname, const std::string& beginning) const {
    constexpr std::size_t kTime = 24;
    const std::string name = nickname + " ";
    std::istringstream file(ReadFile(ServiceLogFile()));
    Lines lines;
    for (std::string line; std::getline(file, line);) {
        if (line.find(name + beginning) == kTime) {
            lines.push_back(line.substr(kTime + name.size()));
        }
    }
    return lines;
}

bool Host::ServiceComesToSay(const std::string& text, DWORD milliseconds) const {
    return WaitFor([&] { return ReadFile(ServiceLogFile()).find(text) != std::string::npos; },
                   milliseconds);
}

Lines LinesOfStatus(ServiceType service, unsigned kind, bool value) {
    const std::string function = "PLENXManager::NotifyStatus";
    return {
        Info(function, "plenx manager notify status invoked svcType:" + std::to_string(service) +
                           " sttsType:" + std::to_string(kind) + " value:" + std::to_string(value)),
        Info(function, "plenx manager notify status begin"),
        Info(function, "plenx manager notify status end")};
}

std::string StartIsInvoked(ServiceType service) {
    return Info("PLENXManager::StartFunc",
                "plenx manager start service svcType(" + std::to_string(service) + ") is invoked");
}

std::string StopIsInvoked(ServiceType service) {
    return Info("PLENXManager::StopFunc",
                "plenx manager stop service svcType(" + std::to_string(service) + ") is invoked");
}

Lines LinesOfStart(ServiceType service, const std::string& name) {
    const std::string type = std::to_string(service);
    return Lines{
               Info("PLENXManagerInner::Start", "plenx manager start service " + type),
               Error("KillServiceProcess", "kill service process 0"),
               Info("ServiceManager::StartServiceByIndex", "start service successful"),
               Info("ServiceManager::StartPlenxService",
                    "start plenx service " + name + " success"),
               Info("RpcManager::PingService", "rpc manager ping service No:0"),
               Info("RpcManager::SetStringConfig",
                    "rpc manager set string config svcType:" + type + " cfgType:1 cfgValue:en_US"),
               Info("RpcManager::SetInt64Config",
                    "rpc manager set int64 config svcType:" + type + " cfgType:0 cfgValue:0"),
               Info("RpcManager::SetInt64Config",
                    "rpc manager set int64 config svcType:" + type + " cfgType:2 cfgValue:0"),
               Info("RpcManager::CreateGroup", "rpc manager create group svcType:" + type),
           } +
           LinesOfStatus(service, 0, true);
}

Lines LinesOfDriverStart() {
    const Lines begin = {Error("KillServiceProcess", "kill service process 0")};
    if (DriverStarts()) {
        return begin +
               Lines{Info("ServiceManager::StartServiceByIndex", "start service successful"),
                     Info("ServiceManager::StartDokanService", "start dokan service success")};
    }
    const std::string code = CellOf(Habits::kStartOfTheDriver, ThisSystem());
    return begin +
           Lines{Error("ServiceManager::StartServiceByIndex", "start service error " + code),
                 Error("ServiceManager::StartDokanService", "start dokan service error 5")};
}

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

}  // namespace PlenxTest
