// The facade on a fake machine, with a registered observer.

#ifndef UNIT_FACADE_FACADE_FIXTURE_H
#define UNIT_FACADE_FACADE_FIXTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "companion/fake_file_manager.h"
#include "companion/recorded_log.h"
#include "facade/fake_machine.h"
#include "facade/recording_observer.h"
#include "rpc/fake_rpc.h"

inline DistributedFs::PLENXManager& Facade() {
    return DistributedFs::PLENXManager::GetInstance();
}

inline DistributedFs::ServiceType Type(std::uint32_t number) {
    return static_cast<DistributedFs::ServiceType>(number);
}

inline DistributedFs::ConfigType Key(std::uint32_t number) {
    return static_cast<DistributedFs::ConfigType>(number);
}

/// Returns "L3 [PLENXSDK] plenx manager ", the text and the function's name.
inline std::string Info(const std::string& text, const std::string& function) {
    return "L3 [PLENXSDK] plenx manager " + text + "(DistributedFs::PLENXManager::" + function +
           ")";
}
inline std::string Error(const std::string& text, const std::string& function) {
    return "L4 [PLENXSDK] plenx manager " + text + "(DistributedFs::PLENXManager::" + function +
           ")";
}

/// Returns the three lines of a status that one observer handles.
inline std::vector<std::string> StatusLines(const std::string& values) {
    return {Info("notify status invoked " + values, "NotifyStatus"),
            Info("notify status begin", "NotifyStatus"), Info("notify status end", "NotifyStatus")};
}

/// Waits until every earlier job is done. Leaves lines of DeviceNameChanged and a request with id 4
/// behind.
inline void WaitForJobs() {
    static int marks = 0;
    const std::string mark = "mark " + std::to_string(++marks);
    Facade().DeviceNameChanged(mark);
    EXPECT_TRUE(FakeRpc::Get().WaitForMessage(MessageOf({StringArg(mark)})));
}

/// Returns the lines of the facade alone, without those of WaitForJobs.
inline std::vector<std::string> FacadeTexts() {
    std::vector<std::string> texts = TextsOfClass("PLENXManager");
    texts.erase(std::remove_if(texts.begin(), texts.end(),
                               [](const std::string& text) {
                                   return text.find("::DeviceNameChanged") != std::string::npos;
                               }),
                texts.end());
    return texts;
}

inline std::vector<ServiceCall> RequestsWithoutNameChanged() {
    std::vector<ServiceCall> calls = FakeRpc::Get().ServiceCalls();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [](const ServiceCall& call) { return call.msgType == 4; }),
                calls.end());
    return calls;
}

/// The facade before Init.
class FreshFacade : public testing::Test {
protected:
    FreshFacade() {
        Facade().RegisterPLENXServiceObserver(&observer_);
        RecordedLog::Get().Clear();
    }
    ~FreshFacade() override {
        Facade().UnregisterPLENXServiceObserver(&observer_);
        FakeFileManager::Get().SetHook(nullptr);
    }

    FakeMachine machine_;
    RecordingObserver observer_;
};

/// The facade after Init, with both services running and all records cleared.
class ReadyFacade : public FreshFacade {
protected:
    ReadyFacade() {
        Facade().Init("C:\\App", "C:\\Data", "third", true);
        EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
        FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
        FakePlatform::Get().Scm().SetStatus(L"PlenxPhoneSvc", SERVICE_RUNNING);
        ForgetAll();
    }
    static void ForgetAll() {
        RecordedLog::Get().Clear();
        FakeRpc::Get().ClearRecord();
        FakeFileManager::Get().ClearRecord();
        FakePlatform::Get().ForgetCalls();
    }
};

#endif  // UNIT_FACADE_FACADE_FIXTURE_H
