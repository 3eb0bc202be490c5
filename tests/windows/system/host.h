// A host of the library, with a folder of its own and an observer; it also reads the log.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_HOST_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_HOST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "plenxsdk/plenx_manager.h"
#include "support/install_folder.h"
#include "support/wait.h"
#include "system/library_log.h"
#include "system/own_process.h"
#include "system/recording_observer.h"

namespace PlenxTest {

using DistributedFs::kCombinedService;
using DistributedFs::kOfficeService;
using DistributedFs::kPcService;
using DistributedFs::kPhoneService;
using DistributedFs::ServiceType;

class Host : public HostTest {
protected:
    Host();
    ~Host() override;

    /// Tells the services how to behave, by the tables of their control file.
    void Control(const std::string& tables) const;

    /// Calls Init with the folder and with the observer registered. Returns once the worker has
    /// finished it.
    void Init();
    /// Starts a service with group "group" and waits for the outcome. @return the outcome.
    bool Start(ServiceType service);

    /// Waits until the worker has done everything that was queued. @return false when it hangs.
    bool Settle(DWORD milliseconds = 30000);

    /// Returns the worker's lines between the last two calls of Settle. A test settles, acts,
    /// settles and compares.
    Lines WorkerLines() const;
    /// Returns the same of this thread, and of all threads.
    Lines OwnLines() const;
    Lines AllLines() const;
    /// Returns all lines of one function from the beginning on.
    static Lines LinesOf(const std::string& function);
    static int CountLines(const std::string& line);
    /// Waits until the log has the line.
    static bool LogComesToSay(const std::string& line, DWORD milliseconds = 15000);

    /// Returns the calls that the observer received from the worker, and from the services.
    Lines ToldByWorker() const { return observer.CallsOn(worker_); }
    Lines ToldByServices() const { return observer.CallsNotOn(worker_); }

    /// Returns the lines of a service's log that begin in this way, without time and name.
    Lines ServiceLines(const std::string& nickname, const std::string& beginning) const;
    bool ServiceComesToSay(const std::string& text, DWORD milliseconds = 15000) const;

    // It is in use until this process ends, so the parent removes it.
    InstallFolder& folder = *new InstallFolder(L"plenx-system");
    RecordingObserver observer;
    DistributedFs::PLENXManager& manager = DistributedFs::PLENXManager::GetInstance();

private:
    template <class Condition>
    Lines Between(Condition condition) const;

    DWORD worker_ = 0;
    unsigned settles_ = 0;
};

/// Returns the line with which the worker begins a start, or a stop.
std::string StartIsInvoked(ServiceType service);
std::string StopIsInvoked(ServiceType service);
/// Returns the worker's lines for the start of a service that finds everything in order.
Lines LinesOfStart(ServiceType service, const std::string& name);
Lines LinesOfStatus(ServiceType service, unsigned kind, bool value);
/// Returns the worker's lines for the start of the driver, which this system may refuse.
Lines LinesOfDriverStart();
Lines operator+(Lines left, const Lines& right);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_HOST_H
