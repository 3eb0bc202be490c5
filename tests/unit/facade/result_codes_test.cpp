// Tests that every result code of the library is reached. Where a host can get the code, a public
// operation reaches it, and its result, or its line and the observer, tells the code. Where a
// service gets it, the service's side reaches it. Otherwise the operation that returns it does.

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <string>

#include "facade/facade_fixture.h"
#include "rpc/manager_calls.h"
#include "rpc/rpc_message_reader.h"
#include "service/file_utils.h"
#include "service/service_manager.h"

using DistributedFs::FileUtils;
using DistributedFs::ServiceManager;

namespace {

constexpr std::int32_t kLastCode = 32;

/// The meaning of each number in the list; null when the number is not in use.
constexpr const char* kMeanings[kLastCode + 1] = {
    nullptr,
    "service control manager not opened",
    "service not opened",
    "service not created",
    "status query failed",
    "start failed, or running not reached",
    "stop refused",
    "service not deleted, or not stopped",
    nullptr,  // 8
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    "index outside the service table, or group name without '_'",  // 16
    nullptr,
    nullptr,
    "writing an argument failed",  // 19
    "reading an argument failed",
    "a check of a message reader or writer failed",
    "a reply could not be allocated",
    nullptr,  // 23
    "a driver file could not be replaced",
    nullptr,  // 25
    "empty string or path",
    "folder not made",
    "folder, file or listing not removed or read",
    nullptr,  // 29
    "path absent or not accessible",
    "no working folder",
    "service sub-folders not made",
};

class ResultCodes : public FreshFacade {
public:
    void Init() {
        Facade().Init("C:\\App", "C:\\Data", "third", true);
        EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    }
    void InitWithBothServicesRunning() {
        Init();
        scm.SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
        scm.SetStatus(L"PlenxPhoneSvc", SERVICE_RUNNING);
    }

    /// Returns the code of a failed start of the PC service, of which the observer hears.
    std::int32_t FailedStart() {
        EXPECT_EQ(Facade().Start(Type(1), "g", "a"), 0);
        EXPECT_TRUE(observer_.WaitFor("NotifyStatus(1, g, 0, false)"));
        return CodeOf("plenx manager start plenx service error ");
    }
    std::int32_t StartWithFailing(const char* function) {
        InitWithBothServicesRunning();
        platform.Faults().FailCallsFrom(function, 1, ERROR_ACCESS_DENIED);
        const std::int32_t code = FailedStart();
        platform.Faults().Reset();
        return code;
    }

    /// Returns the number after the text in the log, or -1 when there is no such line.
    static std::int32_t CodeOf(const std::string& text) {
        const std::string begin = "L4 [PLENXSDK] " + text;
        for (const std::string& line : RecordedLog::Get().Texts()) {
            if (line.compare(0, begin.size(), begin) == 0) {
                return std::stoi(line.substr(begin.size()));
            }
        }
        return -1;
    }

    /// Makes it impossible to remove anything from the folder.
    void Hold(const std::wstring& folder) {
        files.AddFile(folder + L"\\held");
        files.Give(folder + L"\\held", FileTrait::kHeldOpen);
    }

    void BlockDriverUpgrade() {
        files.AddFile(L"C:\\App\\upgrade\\dokan1.sys");
        files.AddFile(L"C:\\App\\dokan1.sys");
        files.Give(L"C:\\App\\dokan1.sys", FileTrait::kHeldOpen);
    }

    FakePlatform& platform = FakePlatform::Get();
    FakeScm& scm = platform.Scm();
    FakeFiles& files = platform.Files();
    RecordingObserver& Observer() { return observer_; }
};

struct Row {
    std::int32_t code;
    const char* how;
    std::function<std::int32_t(ResultCodes&)> reach;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.code << " by " << row.how;
}

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = {
        {1, "Start", [](ResultCodes& test) { return test.StartWithFailing("OpenSCManagerW"); }},
        {2, "Start", [](ResultCodes& test) { return test.StartWithFailing("OpenServiceW"); }},
        {3, "Init",
         [](ResultCodes& test) {
             test.platform.Faults().FailCallsFrom("CreateServiceW", 1, ERROR_ACCESS_DENIED);
             test.Init();
             test.platform.Faults().Reset();
             return test.CodeOf("create service PlenxPcSvc error ");
         }},
        {4, "Start",
         [](ResultCodes& test) { return test.StartWithFailing("QueryServiceStatusEx"); }},
        {5, "Start",
         [](ResultCodes& test) {
             test.Init();
             test.scm.RefuseStart(L"PlenxPcSvc", ERROR_SERVICE_DISABLED);
             return test.FailedStart();
         }},
        {6, "Stop",
         [](ResultCodes& test) {
             test.InitWithBothServicesRunning();
             test.scm.RefuseStop(L"PlenxPcSvc", ERROR_ACCESS_DENIED);
             EXPECT_EQ(Facade().Stop(Type(1), "g"), 0);
             EXPECT_TRUE(test.Observer().WaitFor("NotifyStatus(1, g, 1, false)"));
             return test.CodeOf("plenx manager stop plenx service error ");
         }},
        {7, "DeleteServiceByIndex",
         [](ResultCodes& test) {
             ServiceManager manager(L"C:\\App", L"C:\\Data");
             test.scm.SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
             return manager.DeleteServiceByIndex(1);
         }},
        {16, "Start of a service outside the table",
         [](ResultCodes& test) {
             test.BlockDriverUpgrade();  // the table stays empty
             test.Init();
             return test.FailedStart();
         }},
        {16, "NotifyConnect of a service without '_'",
         [](ResultCodes&) { return CallManager(10, MessageOf({StringArg("group")})).result; }},
        {19, "LocalDeviceOnline of more than a message holds",
         [](ResultCodes& test) {
             test.InitWithBothServicesRunning();
             const unsigned char byte = 1;  // nothing is read with a negative length
             EXPECT_EQ(Facade().LocalDeviceOnline(Type(1), "g", "d", 0x80000000U, &byte), 0);
             EXPECT_TRUE(test.Observer().WaitFor("NotifyStatus(1, g, 2, false)"));
             return test.CodeOf("plenx manager inner local device online error ");
         }},
        {20, "ErrorNotify of a service without its argument",
         [](ResultCodes&) { return CallManager(15, {}).result; }},
        {21, "RpcMessageReader",
         [](ResultCodes&) {
             const Bytes message = MessageOf({StringArg("text")});
             DistributedFs::RpcMessageReader reader(message.data(),
                                                    static_cast<std::int32_t>(message.size()));
             std::int32_t number = 0;
             return reader.ReadInt32(0, &number);
         }},
        {22, "any call of a service",
         [](ResultCodes&) {
             FakeRpc::Get().SetAllocationFails(true);
             const std::int32_t code = CallManager(100, {}).result;
             FakeRpc::Get().SetAllocationFails(false);
             return code;
         }},
        {24, "UpgradeDriver",
         [](ResultCodes& test) {
             test.BlockDriverUpgrade();
             return ServiceManager::UpgradeDriver(L"C:\\App");
         }},
        {26, "Start", [](ResultCodes&) { return Facade().Start(Type(1), "", "a"); }},
        {26, "FileExists", [](ResultCodes&) { return FileUtils::FileExists(L""); }},
        {27, "MakeDirectory",
         [](ResultCodes&) { return FileUtils::MakeDirectory(L"C:\\missing\\folder"); }},
        {28, "ForceRemoveDirectory",
         [](ResultCodes& test) {
             test.Hold(L"C:\\Data\\plenx");
             return FileUtils::ForceRemoveDirectory(L"C:\\Data\\plenx");
         }},
        {30, "FileExists", [](ResultCodes&) { return FileUtils::FileExists(L"C:\\missing"); }},
        {31, "MakeSourcePath",
         [](ResultCodes&) {
             std::wstring out;
             return ServiceManager::MakeSourcePath(L"C:\\missing", out);
         }},
        {32, "MakeServicePath",
         [](ResultCodes&) { return ServiceManager::MakeServicePath(L"C:\\missing"); }},
    };
    return rows;
}

class EveryResultCode : public ResultCodes, public testing::WithParamInterface<Row> {};

TEST_P(EveryResultCode, IsReached) {
    EXPECT_EQ(GetParam().reach(*this), GetParam().code) << kMeanings[GetParam().code];
}

INSTANTIATE_TEST_SUITE_P(List, EveryResultCode, testing::ValuesIn(Rows()));

TEST(ResultCodeList, HasARowForEachCodeInUseAndForNoOther) {
    for (std::int32_t code = 1; code <= kLastCode; ++code) {
        const bool hasRow = std::any_of(Rows().begin(), Rows().end(),
                                        [&](const Row& row) { return row.code == code; });
        EXPECT_EQ(hasRow, kMeanings[code] != nullptr) << code;
    }
}

}  // namespace
