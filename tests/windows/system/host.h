// A host of the library, with a folder of its own, an observer, and an eye on the log.

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

    /// Tells the services how to behave: the tables of their control file.
    void Control(const std::string& tables) const;

    /// Init with the folder and the observer registered; returns once the worker is done with it.
    void Init();
    /// Starts a service with group "group" and waits for the outcome. @return the outcome.
    bool Start(ServiceType service);

    /// Waits until the worker has done all that was queued. @return false when it hangs.
    bool Settle(DWORD milliseconds = 30000);

    /// The worker's lines since the last Settle but one, that is: settle, act, settle, compare.
    Lines WorkerLines() const;
    /// The same of this thread, and of all threads.
    Lines OwnLines() const;
    Lines AllLines() const;
    /// All lines from the beginning on that come from one function.
    static Lines LinesOf(const std::string& function);
    static int CountLines(const std::string& line);
    /// Waits until the line is there.
    static bool LogComesToSay(const std::string& line, DWORD milliseconds = 15000);

    /// What the observer was told by the worker, and by the services.
    Lines ToldByWorker() const { return observer.CallsOn(worker_); }
    Lines ToldByServices() const { return observer.CallsNotOn(worker_); }

    /// What a service has logged that begins so, without time and name.
    Lines ServiceLines(const std::string& nickname, const std::string& beginning) const;
    bool ServiceComesToSay(const std::string& text, DWORD milliseconds = 15000) const;

    // In use until this process ends; the parent removes it.
    InstallFolder& folder = *new InstallFolder(L"plenx-system");
    RecordingObserver observer;
    DistributedFs::PLENXManager& manager = DistributedFs::PLENXManager::GetInstance();

private:
    template <class Condition>
    Lines Between(Condition condition) const;

    DWORD worker_ = 0;
    unsigned settles_ = 0;
};

/// The line with which the worker begins a start, and a stop.
std::string StartIsInvoked(ServiceType service);
std::string StopIsInvoked(ServiceType service);
/// The start of a service that finds everything in order, as the worker logs it.
Lines LinesOfStart(ServiceType service, const std::string& name);
Lines LinesOfStatus(ServiceType service, unsigned kind, bool value);
Lines operator+(Lines left, const Lines& right);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_HOST_H
