#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "companion/recorded_log.h"
#include "platform/call_text.h"
#include "platform/fake_platform.h"
#include "rpc/manager_calls.h"

using DistributedFs::RpcManager;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Not;

namespace {

// The codes are 24, 1, 2, 20, 4 and 0.
const Bytes kDefaultReply = FromHex("18000000 01000000 02000000 14000000 04000000 00000000");

constexpr char kComputerFolder[] = "shell:::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";

// Returns event, flags and path, such as "100 5 E:\".
std::vector<std::string> Notifications() {
    std::vector<std::string> texts;
    for (const FakeShell::Notification& each : FakePlatform::Get().Shell().Notifications()) {
        char numbers[32];
        std::snprintf(numbers, sizeof(numbers), "%x %x ", each.event, each.flags);
        texts.push_back(numbers + Narrow(each.path) + (each.hasSecondItem ? " and another" : ""));
    }
    return texts;
}

std::vector<std::string> Lines(const std::string& letter, int type) {
    const std::string function = "(DistributedFs::RpcManager::FlushExplorer)";
    return {"L3 [PLENXSDK] update device status invoked cLetter:" + letter +
                " expFlushType:" + std::to_string(type) + function,
            "L3 [PLENXSDK] sh change notify begin" + function,
            "L3 [PLENXSDK] sh change notify end" + function};
}

void Flush(char letter, std::int32_t type) {
    RpcManager::GetInstance().FlushExplorer(letter, type);
}

TEST(FlushExplorer, Type0ReportsTheDriveAndRefreshesTheComputerFolder) {
    Flush('e', 0);
    EXPECT_THAT(Notifications(),
                ElementsAre("100 5 E:\\", std::string("1000 5 ") + kComputerFolder));
    EXPECT_EQ(RecordedLog::Get().Texts(), Lines("e", 0));
}

TEST(FlushExplorer, Type1DoesTheSameAsType0) {
    Flush('Z', 1);
    EXPECT_THAT(Notifications(),
                ElementsAre("100 5 Z:\\", std::string("1000 5 ") + kComputerFolder));
    EXPECT_EQ(RecordedLog::Get().Texts(), Lines("Z", 1));
}

TEST(FlushExplorer, Type2RefreshesTheDrive) {
    Flush('a', 2);
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 A:\\"));
    EXPECT_EQ(RecordedLog::Get().Texts(), Lines("a", 2));
}

TEST(FlushExplorer, LinesStandAroundTheNotifications) {
    std::vector<std::size_t> notificationsAtLine;
    RecordedLog::Get().SetHook([&notificationsAtLine](const std::string&) {
        notificationsAtLine.push_back(FakePlatform::Get().Shell().Notifications().size());
    });
    Flush('e', 0);
    EXPECT_THAT(notificationsAtLine, ElementsAre(0U, 0U, 2U));

    notificationsAtLine.clear();
    FakePlatform::Get().Shell().Reset();
    Flush('e', 2);
    EXPECT_THAT(notificationsAtLine, ElementsAre(0U, 0U, 1U));
    RecordedLog::Get().SetHook(nullptr);
}

TEST(FlushExplorer, OtherTypesNotifyNobody) {
    for (const std::int32_t type : {3, -1, 256}) {
        RecordedLog::Get().Clear();
        Flush('E', type);
        EXPECT_EQ(RecordedLog::Get().Texts(), Lines("E", type));
    }
    EXPECT_THAT(Notifications(), IsEmpty());
}

TEST(FlushExplorer, OtherCharactersThanLettersStopItAfterTheFirstLine) {
    for (const char letter : {'1', '@', '[', '`', '{', ' ', '\xE4', '\x00'}) {
        RecordedLog::Get().Clear();
        Flush(letter, 0);
        EXPECT_EQ(RecordedLog::Get().Lines().size(), 1U);
    }
    EXPECT_THAT(Notifications(), IsEmpty());
}

TEST(FlushExplorer, EveryLetterIsTakenInBothCases) {
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        Flush(letter, 2);
        Flush(static_cast<char>(letter - 'a' + 'A'), 2);
    }
    const std::vector<std::string> notifications = Notifications();
    ASSERT_EQ(notifications.size(), 52U);
    for (std::size_t i = 0; i != 52; ++i) {
        EXPECT_EQ(notifications[i],
                  std::string("1000 5 ") + static_cast<char>('A' + i / 2) + ":\\");
    }
}

// The tests below are for id 18.

void ExpectDefault(const ManagerReply& reply) {
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.bytes, kDefaultReply);
    EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
}

ManagerReply ExploreFlush(const std::string& disk, std::int32_t type) {
    return CallManager(18, MessageOf({StringArg(disk), Int32Arg(type)}));
}

TEST(ExploreFlushNotify, UpperCaseLetterFlushesItsDrive) {
    ExpectDefault(ExploreFlush("E:", 2));
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 E:\\"));
    EXPECT_EQ(RecordedLog::Get().Texts(), Lines("E", 2));
}

TEST(ExploreFlushNotify, EveryUpperCaseLetterIsADrive) {
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        ExploreFlush(std::string(1, letter), 2);
    }
    EXPECT_EQ(Notifications().size(), 26U);
}

TEST(ExploreFlushNotify, OnlyTheFirstByteCounts) {
    ExpectDefault(ExploreFlush("Zebra", 2));
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 Z:\\"));
}

TEST(ExploreFlushNotify, OtherDisksAreIgnoredWithoutALine) {
    for (const char* const disk : {"", "e:", "a", "@", "[", "1", "\xC1"}) {
        ExpectDefault(ExploreFlush(disk, 0));
    }
    EXPECT_THAT(Notifications(), IsEmpty());
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

TEST(ExploreFlushNotify, FailureIsLoggedAndNeverSeenByTheService) {
    ExpectDefault(CallManager(18, MessageOf({Int32Arg(1)})));
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre("L4 [PLENXSDK] Invalid Args rpcReqArgType:2"
                            "(DistributedFs::RpcMessageReader::ReadString)",
                            "L4 [PLENXSDK] read disk error"
                            "(DistributedFs::RpcManager::ExploreFlushNotify)"));
    EXPECT_THAT(Notifications(), IsEmpty());
}

// The tests below are for id 17.

Bytes BytesOf(const std::wstring& text) {
    Bytes bytes(text.size() * sizeof(wchar_t));
    std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

ManagerReply UpdateExplore(const Bytes& path) {
    return CallManager(
        17, MessageOf({Int32Arg(static_cast<std::int32_t>(path.size())), ArrayArg(path)}));
}

TEST(UpdateWindowsExplore, HandsThePathToTheShellUnchanged) {
    ExpectDefault(UpdateExplore(BytesOf(std::wstring(L"E:\\t\x00E4st\0", 8))));
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 E:\\t\xC3\xA4st"));
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

TEST(UpdateWindowsExplore, PathWithoutATerminatorIsTerminated) {
    for (std::size_t length = 1; length != 9; ++length) {
        FakePlatform::Get().Shell().Reset();
        const std::wstring path(length, L'p');
        ExpectDefault(UpdateExplore(BytesOf(path)));
        EXPECT_THAT(Notifications(), ElementsAre("1000 5 " + Narrow(path)));
    }
}

TEST(UpdateWindowsExplore, OddLastByteIsPaddedWithZeros) {
    for (std::size_t more = 1; more != sizeof(wchar_t); ++more) {
        FakePlatform::Get().Shell().Reset();
        Bytes bytes = BytesOf(L"E");
        bytes.push_back('F');
        bytes.resize(sizeof(wchar_t) + more);
        ExpectDefault(UpdateExplore(bytes));
        EXPECT_THAT(Notifications(), ElementsAre("1000 5 EF"));
    }
}

TEST(UpdateWindowsExplore, LengthBelow1FailsWith20) {
    for (const std::int32_t length : {0, -1, static_cast<std::int32_t>(0x80000000U)}) {
        RecordedLog::Get().Clear();
        const ManagerReply reply = CallManager(17, MessageOf({Int32Arg(length), ArrayArg({1, 2})}));
        EXPECT_EQ(reply.result, 20);
        EXPECT_FALSE(reply.hasBlock);
        EXPECT_THAT(RecordedLog::Get().Texts(),
                    ElementsAre("L4 [PLENXSDK] read msgLen error"
                                "(DistributedFs::RpcManager::UpdateWindowsExplore)"));
    }
    EXPECT_THAT(Notifications(), IsEmpty());
}

TEST(UpdateWindowsExplore, LengthThatIsNotTheArraysFailsWith20) {
    const ManagerReply reply = CallManager(17, MessageOf({Int32Arg(0x7FFFFFFF), ArrayArg({1, 2})}));
    EXPECT_EQ(reply.result, 20);
    EXPECT_THAT(RecordedLog::Get().Texts(),
                ElementsAre("L4 [PLENXSDK] Invalid Args offset:36 rpcReqArgSize:2 "
                            "rpcMsgSize_:38 argLen:2147483647"
                            "(DistributedFs::RpcMessageReader::ReadInt8Array)",
                            "L4 [PLENXSDK] read update path error"
                            "(DistributedFs::RpcManager::UpdateWindowsExplore)"));
    EXPECT_THAT(Notifications(), IsEmpty());
}

// The first request loads the shell library. (Each test runs in a process of its own.)

TEST(ShellLibrary, IsLoadedOnceAndFromTheSystemFolderOnly) {
    EXPECT_THAT(FakePlatform::Get().Calls(), IsEmpty());
    Flush('E', 0);
    UpdateExplore(BytesOf(L"E:\\"));
    ExploreFlush("E:", 2);
    EXPECT_EQ(Notifications().size(), 4U);
    EXPECT_THAT(FakePlatform::Get().CallsWithout({"SHChangeNotify"}),
                ElementsAre("LoadLibraryExW(\"shell32.dll\", 0x800)",
                            "GetProcAddress(\"SHChangeNotify\")"));
}

// Lets ten threads make their first request. The platform answers nobody until all have come about
// as far as the question for the library, so most or all of them find it not yet loaded.
void FlushOnTenThreadsAtOnce() {
    std::vector<std::thread> threads;
    {
        const std::lock_guard<std::recursive_mutex> busy(FakePlatform::Get().Mutex());
        for (int i = 0; i != 10; ++i) {
            threads.emplace_back([] { EXPECT_EQ(ExploreFlush("E:", 2).bytes, kDefaultReply); });
        }
        EXPECT_TRUE(RecordedLog::Get().WaitFor(Lines("E", 2)[1], std::chrono::seconds(20), 10));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // from that line to the call
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ShellLibrary, FirstRequestsOfTenThreadsAllNotify) {
    FlushOnTenThreadsAtOnce();
    EXPECT_EQ(Notifications(), std::vector<std::string>(10, "1000 5 E:\\"));
    EXPECT_THAT(FakePlatform::Get().Shell().Loads(), AllOf(Ge(1), Le(10)));

    FakePlatform::Get().ForgetCalls();
    Flush('E', 2);
    EXPECT_THAT(FakePlatform::Get().CallsWithout({"SHChangeNotify"}), IsEmpty());
}

TEST(ShellLibrary, FirstRequestThatCannotLoadItDoesNotTakeItFromTheOthers) {
    FakePlatform::Get().Faults().FailCallsFrom("LoadLibraryExW", 2, ERROR_NOT_ENOUGH_MEMORY);
    FlushOnTenThreadsAtOnce();
    EXPECT_THAT(Notifications(), Not(IsEmpty()));

    FakePlatform::Get().ForgetCalls();
    FakePlatform::Get().Shell().Reset();
    Flush('E', 2);
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 E:\\"));
    EXPECT_THAT(FakePlatform::Get().CallsWithout({"SHChangeNotify"}), IsEmpty());
}

class ShellLibraryFault : public testing::TestWithParam<const char*> {};

TEST_P(ShellLibraryFault, OfEveryRequestLeavesTheReplyAndTheLines_AndTheNextRequestTriesAgain) {
    FakeFaults& faults = FakePlatform::Get().Faults();
    faults.FailCallsFrom(GetParam(), 1, ERROR_NOT_ENOUGH_MEMORY);
    for (const std::int32_t type : {0, 1, 2}) {
        RecordedLog::Get().Clear();
        ExpectDefault(ExploreFlush("E:", type));
        EXPECT_EQ(RecordedLog::Get().Texts(), Lines("E", type));
    }
    RecordedLog::Get().Clear();
    ExpectDefault(UpdateExplore(BytesOf(L"E:\\")));
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
    EXPECT_EQ(faults.Hits(), 6U);
    EXPECT_THAT(Notifications(), IsEmpty());
    EXPECT_EQ(FakePlatform::Get().Shell().Loads(), 0);

    faults.Reset();
    ExpectDefault(ExploreFlush("E:", 2));
    EXPECT_THAT(Notifications(), ElementsAre("1000 5 E:\\"));
}

TEST_P(ShellLibraryFault, OfOneCallLosesThatNotificationOnly) {
    FakePlatform::Get().Faults().FailCall(GetParam(), 1, ERROR_NOT_ENOUGH_MEMORY);
    ExpectDefault(ExploreFlush("E:", 0));
    EXPECT_THAT(Notifications(), ElementsAre(std::string("1000 5 ") + kComputerFolder));
    EXPECT_EQ(RecordedLog::Get().Texts(), Lines("E", 0));
}

INSTANTIATE_TEST_SUITE_P(Calls, ShellLibraryFault,
                         testing::Values("LoadLibraryExW", "GetProcAddress"),
                         [](const auto& call) { return call.param; });

}  // namespace
