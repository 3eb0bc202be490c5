#include "soak/soak_run.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "plenxsdk/plenx_manager.h"
#include "soak/closing_table.h"
#include "soak/complaints.h"
#include "soak/heap_bytes.h"
#include "soak/host_thread.h"
#include "soak/listener.h"
#include "soak/measure.h"
#include "soak/mender.h"
#include "soak/observers.h"
#include "soak/outcome_book.h"
#include "soak/rest_gate.h"
#include "soak/service_handles.h"
#include "soak/silence.h"
#include "soak/tally.h"
#include "soak/trouble.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/system_habits.h"

namespace PlenxSoak {

using namespace DistributedFs;

namespace {

namespace fs = std::filesystem;

constexpr unsigned kHostThreads = 4;
constexpr unsigned kMender = kHostThreads;  // the book of the calls that are made at rest
constexpr std::uint64_t kGuestStream = 1000000;
constexpr int kStuck = 2;
// Wine's pools fill with the work that is done, so on a busy machine seconds alone would not warm
// them up.
constexpr std::uint64_t kWarmUpCalls = 600;

std::uint64_t Number(const wchar_t* variable, std::uint64_t otherwise) {
    wchar_t text[32];
    const DWORD length = GetEnvironmentVariableW(variable, text, 32);
    return length != 0 && length < 32 ? std::wcstoull(text, nullptr, 0) : otherwise;
}

class SoakRun {
public:
    explicit SoakRun(const Plan& plan);
    int Execute();

private:
    void FillConnections();
    void Busy(HostThread& thread);
    void LetGuestsIn();
    void MakeTrouble();
    void MendServices();
    void Watch();

    void Rest();
    void ComeToRest();
    void StopServices();
    void MendListener();
    void NoteWhatCame();
    void LetCallsBreak();
    void ShowProgress(const Sample& sample) const;
    int Close();
    [[noreturn]] void GiveUp(const std::string& why);

    unsigned SecondsSinceStart() const;

    const Plan plan_;
    const ULONGLONG start_ = GetTickCount64();
    // It is in use until the process ends, so the test program removes it.
    PlenxTest::InstallFolder& folder_ = *new PlenxTest::InstallFolder(L"plenx-soak");
    PLENXManager& manager_ = PLENXManager::GetInstance();
    Tally tally_;
    Complaints complaints_;
    std::vector<OutcomeBook> books_{kHostThreads + 1};
    BookKeeper bookKeeper_{books_, tally_, complaints_};
    Trouble trouble_{plan_.seed, folder_.InstallPath(), tally_};
    Mender mender_{tally_};
    std::vector<std::unique_ptr<HostThread>> hosts_;
    RestGate gate_{kHostThreads + 3};
    std::vector<Sample> samples_;
    Sample first_;
    struct GoodStarts {
        std::uint64_t pc;
        std::uint64_t phone;
    };
    std::vector<GoodStarts> goodStarts_;
    Silence silence_;
    std::mutex givingUp_;
};

SoakRun::SoakRun(const Plan& plan) : plan_(plan) {
    for (unsigned i = 0; i != kHostThreads; ++i) {
        hosts_.push_back(std::make_unique<HostThread>(
            plan.seed, i, folder_.Install(), folder_.Data(), books_[i], tally_, complaints_));
    }
}

unsigned SoakRun::SecondsSinceStart() const {
    return static_cast<unsigned>((GetTickCount64() - start_) / 1000);
}

int SoakRun::Execute() {
    std::printf("soak: %u s with seed %llu\n", plan_.seconds,
                static_cast<unsigned long long>(plan_.seed));
    std::fflush(stdout);
    CountHeapBytes();
    CountServiceHandles();
    manager_.RegisterPLENXServiceObserver(&bookKeeper_);
    manager_.Init(folder_.Install(), folder_.Data(), "third", true);

    std::vector<std::thread> threads;
    for (const auto& host : hosts_) {
        threads.emplace_back([&] { Busy(*host); });
    }
    threads.emplace_back([&] { LetGuestsIn(); });
    threads.emplace_back([&] { MakeTrouble(); });
    threads.emplace_back([&] { MendServices(); });
    std::thread([this] { Watch(); }).detach();

    // A rest takes some seconds. But it also heals what is broken, and anything broken slows
    // everything down.
    const unsigned busySeconds = std::clamp(plan_.seconds / 24, 3u, 20u);
    const unsigned showEvery = std::clamp(plan_.seconds / 12, 10u, 60u);
    unsigned nextShow = 0;
    samples_.reserve(plan_.seconds);
    goodStarts_.reserve(plan_.seconds);
    Rest();
    first_ = samples_.front();
    const auto beBusy = [&] {
        gate_.Open();
        Sleep(busySeconds * 1000);
        Rest();
    };
    FillConnections();
    while (tally_.Total("calls") < kWarmUpCalls) {
        beBusy();
    }
    samples_.clear();
    // On a slow machine the run goes on until there are enough samples for a judgement.
    while (!silence_.TooLong() &&
           (SecondsSinceStart() < plan_.seconds || samples_.size() < kFewestSamples)) {
        beBusy();
        if (SecondsSinceStart() >= nextShow) {
            ShowProgress(samples_.back());
            nextShow = SecondsSinceStart() + showEvery;
        }
    }
    LetCallsBreak();
    gate_.EndAll();
    for (std::thread& thread : threads) {
        thread.join();
    }
    manager_.UnregisterPLENXServiceObserver(&bookKeeper_);
    return Close();
}

// Wine keeps a connection to the service manager for each thread that was ever there while others
// were. Chance decides when that first happens, so this makes it happen here.
void SoakRun::FillConnections() {
    constexpr int kThreads = 6;
    constexpr int kQueries = 100;
    std::vector<std::thread> threads;
    for (int i = 0; i != kThreads; ++i) {
        threads.emplace_back([] {
            for (int query = 0; query != kQueries; ++query) {
                PlenxTest::StateOf(L"PlenxPcSvc");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void SoakRun::Busy(HostThread& thread) {
    while (gate_.Pass()) {
        if (!thread.Round()) {
            GiveUp("the outcomes of a round have not come");
        }
    }
}

// Observers that have left are kept for a while, so that the run notices when they are called all
// the same.
void SoakRun::LetGuestsIn() {
    constexpr std::size_t kRemembered = 16;
    Dice dice(plan_.seed, kGuestStream);
    std::deque<std::unique_ptr<Guest>> gone;
    std::uint64_t number = kGuestStream;
    while (gate_.Pass()) {
        auto guest = std::make_unique<Guest>(plan_.seed, ++number, complaints_);
        manager_.RegisterPLENXServiceObserver(guest.get());
        Sleep(static_cast<DWORD>(dice.Below(100)));
        manager_.UnregisterPLENXServiceObserver(guest.get());
        guest->HasLeft();
        tally_.Count("guests", "guests");
        gone.push_back(std::move(guest));
        if (gone.size() > kRemembered) {
            gone.pop_front();
        }
    }
}

void SoakRun::MakeTrouble() {
    while (gate_.Pass()) {
        Sleep(trouble_.Next());
    }
}

void SoakRun::MendServices() {
    while (gate_.Pass()) {
        mender_.MendDead();
        Sleep(500);
    }
}

// A thread cannot see by itself that its own call does not return.
void SoakRun::Watch() {
    for (;;) {
        Sleep(1000);
        for (const auto& host : hosts_) {
            const std::uint64_t since = host->callSince;
            if (since != 0 && GetTickCount64() > since + std::uint64_t{kPatienceSeconds} * 1000) {
                GiveUp(std::string("a call does not return: ") + host->call.load());
            }
        }
    }
}

// Nothing is under way, no service runs, and every setting is as it was at the beginning.
void SoakRun::Rest() {
    ComeToRest();
    mender_.Kill(samples_.size());
    StopServices();
    mender_.EndAll();
    MendListener();
    for (const wchar_t* service : {L"pc", L"phone"}) {
        std::error_code ignored;
        fs::remove(folder_.WorkingFolder() / service / L"service.log", ignored);
    }
    samples_.push_back(MeasureAtRest(first_.threads));
    NoteWhatCame();
}

// Now that no client is left, a healthy server waits for the next one.
void SoakRun::MendListener() {
    constexpr const wchar_t* kNotifications = L"Manager";
    if (!IsUsual(PlenxTest::Habits::kEndpointIsAPipe, "there") ||
        TakesConnections(kNotifications)) {
        return;
    }
    for (std::size_t i = ReviveListener(kNotifications); i != 0; --i) {
        tally_.Count("revived", "between two rests");
    }
    if (!TakesConnections(kNotifications)) {
        complaints_.Add("nobody can notify the library any more, after " +
                        std::to_string(SecondsSinceStart()) + " s");
    }
}

void SoakRun::NoteWhatCame() {
    Tally::Names outcomes = tally_.Of("outcomes");
    const GoodStarts starts = {outcomes["start 1 true"], outcomes["start 2 true"]};
    goodStarts_.push_back(starts);
    silence_.AtRest(starts.pc + starts.phone, tally_.Total("notifications"));
    if (silence_.TooLong()) {
        complaints_.Add("services were started, but no notification came for " +
                        std::to_string(Silence::kMostRests) + " rests; ended after " +
                        std::to_string(SecondsSinceStart()) + " s");
    }
}

// This is the last part of the run. Its remainder is not measured, but everything gets an answer.
void SoakRun::LetCallsBreak() {
    trouble_.LetCallsBreak();
    gate_.Open();
    Sleep(std::clamp(plan_.seconds / 20, 5u, 60u) * 1000);
    ComeToRest();
}

void SoakRun::ComeToRest() {
    if (!gate_.Close(std::chrono::seconds(2 * kPatienceSeconds))) {
        GiveUp("a thread does not come to rest");
    }
    trouble_.Rest();
}

void SoakRun::StopServices() {
    const std::string group = kGroupPrefix + std::to_string(kMender);
    OutcomeBook& book = books_[kMender];
    // The text is too long to lie inside a string object, so the setting gives its old memory back.
    manager_.SetConfig(kCombinedService, kLocaleConfig, std::string(64, 'r'));
    for (const ServiceType service : {kPcService, kPhoneService, kOfficeService}) {
        book.Expect({service, group, kStatusStop}, OutcomeBook::kCertain);
        book.Expect({kCombinedService, group, kStatusStop}, OutcomeBook::kPossible);
        manager_.Stop(service, group);
    }
    if (!book.WaitForAll(std::chrono::seconds(kPatienceSeconds))) {
        GiveUp("the stops before a rest have no outcome");
    }
    manager_.Destroy();
}

void SoakRun::ShowProgress(const Sample& sample) const {
    std::printf(
        "%5u s  %8llu calls  %8llu outcomes  %9llu notifications  %6.1f MiB private"
        "  %6.2f MiB heap  %4llu handles  %3llu threads  %5llu Wine's\n",
        SecondsSinceStart(), static_cast<unsigned long long>(tally_.Total("calls")),
        static_cast<unsigned long long>(tally_.Total("outcomes")),
        static_cast<unsigned long long>(tally_.Total("notifications")),
        static_cast<double>(sample.privateBytes) / (1024 * 1024),
        static_cast<double>(sample.heapBytes) / (1024 * 1024),
        static_cast<unsigned long long>(sample.handles),
        static_cast<unsigned long long>(sample.threads),
        static_cast<unsigned long long>(sample.wineRecords));
    std::fflush(stdout);
}

int SoakRun::Close() {
    std::vector<std::string> failures = complaints_.All();
    for (const std::string& grown : Judge(samples_)) {
        if (IsOpen(PlenxTest::Habits::kGrowthInASoak)) {
            std::printf("recorded, not judged: %s\n", grown.c_str());
        } else {
            failures.push_back(grown);
        }
    }
    // A run whose services no longer start has tested nothing since then. In a short run a single
    // service may have had bad luck.
    constexpr std::size_t kManySamples = 24;
    const GoodStarts& middle = goodStarts_[goodStarts_.size() / 2];
    const GoodStarts& end = goodStarts_.back();
    const bool pcIsDead = end.pc == middle.pc;
    const bool phoneIsDead = end.phone == middle.phone;
    if ((pcIsDead && phoneIsDead) ||
        (samples_.size() >= kManySamples && (pcIsDead || phoneIsDead))) {
        failures.push_back("a service was not started in the second half");
    }
    PrintClosingTable(first_, samples_, tally_);
    for (const std::string& failure : failures) {
        std::printf("FAILED: %s\n", failure.c_str());
    }
    std::printf("soak: %s, seed %llu\n", failures.empty() ? "all held" : "failed",
                static_cast<unsigned long long>(plan_.seed));
    std::fflush(stdout);
    return failures.empty() ? 0 : 1;
}

// A hanging call would also hang the end of the process, so whoever comes first ends the process at
// once.
void SoakRun::GiveUp(const std::string& why) {
    givingUp_.lock();
    std::string text = "STUCK after " + std::to_string(SecondsSinceStart()) + " s with seed " +
                       std::to_string(plan_.seed) + ": " + why + "\n";
    for (unsigned i = 0; i != books_.size(); ++i) {
        const bool inCall = i < hosts_.size() && hosts_[i]->callSince != 0;
        text += " thread " + std::to_string(i) +
                (inCall ? std::string(" is inside ") + hosts_[i]->call.load() : " is in no call") +
                "\n" + books_[i].Missing();
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), kStuck);
    std::abort();
}

}  // namespace

Plan PlanFromEnvironment() {
    const Plan usual;
    return {static_cast<unsigned>(Number(L"PLENX_SOAK_SECONDS", usual.seconds)),
            Number(L"PLENX_SOAK_SEED", usual.seed)};
}

int Run(const Plan& plan) {
    // It is never destroyed, because its members may be in use until the process ends.
    return (new SoakRun(plan))->Execute();
}

}  // namespace PlenxSoak
