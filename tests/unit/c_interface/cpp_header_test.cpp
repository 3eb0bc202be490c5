// Tests plenx.hpp: its handles close themselves, and it gives results as values and as exceptions.

#include "plenxsdk/plenx.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "c_fixture.h"

namespace {

using testing::ElementsAre;

const plenx::Library kSdk = plenx::Library::linked();

class CppHeader : public ReadyFacade {};

TEST_F(CppHeader, FailureIsAValueWithItsWords) {
    const plenx::Result result = plenx::Library::linked().start(1, {nullptr, 0}, "a");
    EXPECT_FALSE(result);
    EXPECT_EQ(result.code(), PLENX_INVALID_PARAMETER);
    EXPECT_EQ(result.words(), "A text that must not be empty is empty.");
    const auto queue = kSdk.open_queue(0);
    EXPECT_FALSE(queue);
    EXPECT_EQ(queue.result().code(), PLENX_E_ARGUMENT);
    EXPECT_EQ(queue.result().words(), "plenx_queue_open: capacity is 0");
}

TEST_F(CppHeader, FailureIsAnExceptionForThoseWhoAsk) {
    try {
        kSdk.open_queue(0).or_throw();
        FAIL() << "nothing was thrown";
    } catch (const plenx::Error& error) {
        EXPECT_EQ(error.code(), PLENX_E_ARGUMENT);
        EXPECT_STREQ(error.what(), "plenx_queue_open: capacity is 0");
    }
    EXPECT_THROW(kSdk.stop(1, "").or_throw(), plenx::Error);
    kSdk.stop(0, "g").or_throw();
}

TEST_F(CppHeader, OperationsAreThoseOfTheLibrary) {
    EXPECT_TRUE(kSdk.open());
    EXPECT_TRUE(kSdk.init("C:\\App", "C:\\Data", "third", true));
    EXPECT_TRUE(kSdk.destroy());
    EXPECT_EQ(kSdk.get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING).or_throw(), 0);
    EXPECT_EQ(kSdk.get_string(1, 1).or_throw(), "");
    EXPECT_TRUE(kSdk.set_int64(3, 0, 5));
    EXPECT_TRUE(kSdk.set_string(3, 1, "de_DE"));
    EXPECT_TRUE(kSdk.start(0, "g", "a"));
    EXPECT_TRUE(kSdk.local_device_online(0, "g", "d", std::string_view("\1\2", 2)));
    EXPECT_TRUE(kSdk.remote_device_online(0, "g", "d"));
    EXPECT_TRUE(kSdk.local_device_offline(0, "g", "d", 1));
    EXPECT_TRUE(kSdk.remote_device_offline(0, "g", "d", 1));
    EXPECT_TRUE(kSdk.device_name_changed("name"));
    EXPECT_TRUE(kSdk.recv_remote_message(1, 2, "m"));
    EXPECT_TRUE(kSdk.stop(0, "g"));
    WaitForJobs();
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                ElementsAre("UninstallPackages()", "Start()", "LocalDeviceOnline(g, d, 1, 0102, 2)",
                            "RemoteDeviceOnline(g, d)", "LocalDeviceOffline(g, d)",
                            "RemoteDeviceOffline(g, d)", "Stop()"));
}

TEST_F(CppHeader, LongFolderComesInOnePiece) {
    const std::string dir(5000, 'd');
    FakeFileManager::Get().SetNeighbourDir(dir);
    FakeFileManager::Get().SetResult("GetGroupNeighborDistributedDir", 17);
    const auto [code, folder] = kSdk.get_office_dir("g", "d", "r").or_throw();
    EXPECT_EQ(code, 17);
    EXPECT_EQ(folder, dir + "\\r");
}

TEST_F(CppHeader, QueueIsClosedInTheEndAndCanBeMoved) {
    plenx_queue* handle = nullptr;
    {
        plenx::Queue queue = kSdk.open_queue(10).or_throw();
        handle = queue.handle();
        plenx::Queue moved = std::move(queue);
        EXPECT_EQ(moved.handle(), handle);
        Connect("g");
        const plenx::Event event = moved.next(0).or_throw();
        ASSERT_TRUE(event);
        EXPECT_EQ(event.kind(), PLENX_EVENT_CONNECT);
        EXPECT_EQ(event.service(), 1U);
        EXPECT_EQ(event.text(), "g");
        EXPECT_FALSE(moved.next(0).or_throw());
        EXPECT_TRUE(moved.set_link_status(1, "g", 2, 3));
        EXPECT_EQ(moved.wait_handle(), nullptr);
        EXPECT_TRUE(moved.cancel());
        EXPECT_EQ(moved.next(0).result().code(), PLENX_E_CANCELLED);
    }
    EXPECT_EQ(plenx_queue_cancel(handle), PLENX_E_HANDLE);
}

TEST_F(CppHeader, AssigningAnEventFreesTheFormerOne) {
    plenx::Queue queue = kSdk.open_queue(10).or_throw();
    Connect("a");
    Connect("b");
    plenx::Event event = queue.next(0).or_throw();
    event = queue.next(0).or_throw();
    EXPECT_EQ(event.text(), "b");
}

class Listening : public plenx::Observer {
public:
    std::vector<std::string> heard;

    std::int32_t send_local_message(std::int32_t type, std::uint32_t msgLen,
                                    std::string_view message) override {
        return Hear("message", message, type, msgLen);
    }
    std::int32_t notify_connect(std::uint32_t service, std::string_view group) override {
        if (group == "throw") {
            throw std::runtime_error("not for others");
        }
        return Hear("connect", group, service);
    }
    std::int32_t notify_disconnect(std::uint32_t service, std::string_view group) override {
        return Hear("disconnect", group, service);
    }
    std::int32_t notify_reconnect(std::uint32_t service, std::string_view group) override {
        return Hear("reconnect", group, service);
    }
    std::int32_t query_link_status(std::uint32_t service, std::string_view group,
                                   std::uint32_t link, std::int32_t& status) override {
        status = 8;
        return Hear("link", group, service, link);
    }
    std::int32_t notify_status(std::uint32_t service, std::string_view group, std::uint32_t kind,
                               bool value) override {
        return Hear("status", group, service, kind, value);
    }
    std::int32_t notify_error(std::int32_t code) override { return Hear("error", "", code); }
    std::int32_t notify_disk_name(std::string_view name) override { return Hear("disk", name); }

private:
    template <class... Numbers>
    std::int32_t Hear(const char* name, std::string_view text, Numbers... numbers) {
        std::string line = std::string(name) + " " + std::string(text);
        ((line += " " + std::to_string(numbers)), ...);
        heard.push_back(line);
        return 0;
    }
};

TEST_F(CppHeader, ObserverHearsEverythingUntilItsSubscriptionGoes) {
    Listening listening;
    {
        const plenx::Subscription subscription = kSdk.observe(listening).or_throw();
        CallManager(9, MessageOf({Int32Arg(4), Int32Arg(5), StringArg("m")}));
        Connect("g");
        CallManager(11, MessageOf({StringArg("g_2")}));
        CallManager(12, MessageOf({StringArg("g_1")}));
        EXPECT_EQ(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)})).bytes,
                  Int32Message(8));
        CallManager(14, MessageOf({StringArg("g_1"), Int32Arg(3), Int32Arg(1)}));
        CallManager(15, MessageOf({Int32Arg(-9)}));
        CallManager(16, MessageOf({StringArg("P:")}));
    }
    Connect("later");
    EXPECT_THAT(listening.heard,
                ElementsAre("message m 4 5", "connect g 1", "disconnect g 2", "reconnect g 1",
                            "link g 1 2", "status g 1 3 1", "error  -9", "disk P:"));
}

TEST_F(CppHeader, ExceptionOfAnObserverStaysOnItsOwnSideAndIsLogged) {
    Listening listening;
    const plenx::Subscription subscription = kSdk.observe(listening).or_throw();
    RecordedLog::Get().Clear();
    Connect("throw");
    EXPECT_THAT(RecordedLog::Get().Texts(),
                testing::Contains(Error("notify connect error -9", "NotifyConnect")));
    EXPECT_EQ(listening.heard.size(), 0U);
}

// Runs the action inside each notification of a connection.
class Acting : public plenx::Observer {
public:
    explicit Acting(std::function<void()> action) : action_(std::move(action)) {}

    std::int32_t notify_connect(std::uint32_t, std::string_view) override {
        action_();
        return 0;
    }

private:
    std::function<void()> action_;
};

TEST_F(CppHeader, QueueThatIsDestroyedInsideAnObserverStaysOpen) {
    std::optional<plenx::Queue> queue = kSdk.open_queue(10).or_throw();
    plenx_queue* const handle = queue->handle();
    Acting destroying([&] { queue.reset(); });
    {
        const plenx::Subscription subscription = kSdk.observe(destroying).or_throw();
        Connect("g");
    }
    ASSERT_FALSE(queue);
    EXPECT_EQ(plenx_queue_close(handle), 0);
}

TEST_F(CppHeader, QueueMayBeMovedOverAnotherInsideAnObserver) {
    plenx::Queue target = kSdk.open_queue(10).or_throw();
    plenx::Queue source = kSdk.open_queue(10).or_throw();
    plenx_queue* const former = target.handle();
    plenx_queue* const moved = source.handle();
    Acting moving([&] { target = std::move(source); });
    {
        const plenx::Subscription subscription = kSdk.observe(moving).or_throw();
        Connect("g");
    }
    EXPECT_EQ(target.handle(), moved);
    EXPECT_TRUE(target.next(0).or_throw());
    {
        const plenx::Queue loser = std::move(source);
        EXPECT_EQ(loser.handle(), former);
    }
    EXPECT_EQ(plenx_queue_close(former), PLENX_E_HANDLE);
}

TEST_F(CppHeader, ObserverThatWantsNothingHandlesEverything) {
    plenx::Observer nothing;
    const plenx::Subscription subscription = kSdk.observe(nothing).or_throw();
    EXPECT_EQ(CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(2)})).bytes, Int32Message(0));
}

}  // namespace
