// hello-host is a small but complete host. It starts the PC service, waits for the outcome, stops
// the service again, and ends.
//
//     hello-host INSTALL_FOLDER DATA_FOLDER
//
// It returns 0 when the service started and is gone again, 1 when not, and 2 when the command line
// is wrong.

#include <plenxsdk/plenx_manager.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <optional>
#include <string>

using namespace DistributedFs;

namespace {

const std::string kGroup = "home";
constexpr auto kPatience = std::chrono::seconds(60);

// The library calls the observer on its own threads, one call at a time. Each call prints, notes
// down what it heard, and returns at once.
class Observer : public PLENXServiceObserver {
public:
    // Brings the outcomes of our own calls and the reports of the services.
    int NotifyStatus(ServiceType service, const std::string& group, unsigned int kind,
                     bool value) override {
        std::printf("NotifyStatus     service %u, group %s, kind %u, %s\n", unsigned{service},
                    group.c_str(), kind, value ? "true" : "false");
        if (service == kPcService && group == kGroup && kind <= kStatusStop) {
            const std::lock_guard<std::mutex> lock(mutex_);
            (kind == kStatusStart ? started_ : stopped_) = value;
            heard_.notify_all();
        }
        return 0;
    }
    int NotifyConnect(ServiceType service, const std::string& group) override {
        return Print("NotifyConnect", service, group);
    }
    int NotifyDisconnect(ServiceType service, const std::string& group) override {
        return Print("NotifyDisconnect", service, group);
    }
    int NotifyReconnect(ServiceType service, const std::string& group) override {
        return Print("NotifyReconnect", service, group);
    }
    int QueryLinkStatus(ServiceType service, const std::string& group, unsigned int,
                        std::int32_t& linkStatus) override {
        linkStatus = 0;  // the service gets this as its answer
        return Print("QueryLinkStatus", service, group);
    }
    int SendLocalMessage(PLENXMessageType type, unsigned int, const std::string& message) override {
        std::printf("SendLocalMessage type %d, %zu bytes\n", int{type}, message.size());
        return 0;
    }
    int NotifyError(int code) override {
        std::printf("NotifyError      code %d\n", code);
        return 0;
    }
    int NotifyDiskName(const std::string& disk) override {
        std::printf("NotifyDiskName   %s\n", disk.c_str());
        return 0;
    }

    // Call these on a thread of the host, never inside a notification. They return nullopt when
    // no outcome comes in time.
    std::optional<bool> WaitForStart() { return WaitFor(started_); }
    std::optional<bool> WaitForStop() { return WaitFor(stopped_); }

private:
    static int Print(const char* what, ServiceType service, const std::string& group) {
        std::printf("%-16s service %u, group %s\n", what, unsigned{service}, group.c_str());
        return 0;
    }

    std::optional<bool> WaitFor(const std::optional<bool>& outcome) {
        std::unique_lock<std::mutex> lock(mutex_);
        heard_.wait_for(lock, kPatience, [&] { return outcome.has_value(); });
        return outcome;
    }

    std::mutex mutex_;
    std::condition_variable heard_;
    std::optional<bool> started_;
    std::optional<bool> stopped_;
};

// Starts and stops the PC service. Returns true when the start succeeded and the service is gone
// after the stop.
bool Run(PLENXManager& manager, Observer& observer, const char* installFolder,
         const char* dataFolder) {
    // These calls return at once; the library does the work later, in this order.
    manager.Init(installFolder, dataFolder, "", false);
    manager.SetConfig(kPcService, kLocaleConfig, std::string("en_GB"));
    if (manager.Start(kPcService, kGroup, "argument of the group") != kAccepted) {
        return false;
    }

    // 0 only meant that the library took the call. NotifyStatus tells whether it worked.
    const std::optional<bool> started = observer.WaitForStart();
    if (!started) {
        std::puts("No outcome of the start has come in time.");
        return false;
    }
    std::puts(*started ? "The PC service runs." : "The PC service did not start: see the log.");

    // The outcome of a stop is always false, so only its arrival counts.
    manager.Stop(kPcService, kGroup);
    if (!observer.WaitForStop()) {
        std::puts("The stop has had no outcome.");
        return false;
    }
    const bool isGone = manager.GetInt64Config(kPcService, kServiceNotRunningConfig) == 1;
    std::puts(isGone ? "The PC service is stopped." : "The PC service still runs.");
    return *started && isGone;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: hello-host INSTALL_FOLDER DATA_FOLDER\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IONBF, 0);

    Observer observer;
    PLENXManager& manager = PLENXManager::GetInstance();
    manager.RegisterPLENXServiceObserver(&observer);  // before Init, which may already notify
    const bool done = Run(manager, observer, argv[1], argv[2]);
    manager.UnregisterPLENXServiceObserver(&observer);  // after this it may be deleted
    return done ? 0 : 1;  // when the process ends, the library uninstalls its services
}
