// A hostile service answers the library's requests. Each request must come to the end that its
// answer deserves, in the log and for the observers, and the library must serve the honest services
// all the while.

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>

#include "hostile/footprint.h"
#include "hostile/hostile_service.h"
#include "hostile/scale.h"
#include "hostile/tally_observer.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

constexpr auto kTrigger = DistributedFs::TriggerType{1};
constexpr unsigned kRequestsToOneOfWork = 20;

/// A request to the PC service, as a host makes it.
struct Request {
    const char* function;   // a member of RpcManager
    const char* firstLine;  // the first line that the function logs
    int statusWhenFailed;   // -1 when there is none
    void (*make)(DistributedFs::PLENXManager& manager, const std::string& name);
};

const Request kRequests[] = {
    {"NameChanged", "rpc manager name changed svcType:1", -1,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.DeviceNameChanged(name);
     }},
    {"RecvRemoteMessage", "rpc manager receive remote message svcType:1", -1,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{3}, 1, name);
     }},
    {"DeviceOnline", "rpc manager device online svcType:1", 2,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.LocalDeviceOnline(kPcService, name, "here", 0, nullptr);
     }},
    {"DeviceOnline", "rpc manager device online svcType:1", 2,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.RemoteDeviceOnline(kPcService, name, "there");
     }},
    {"DeviceOffline", "rpc manager device offline svcType:1", 3,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.LocalDeviceOffline(kPcService, name, "here", kTrigger);
     }},
    {"DeviceOffline", "rpc manager device offline svcType:1", 3,
     [](DistributedFs::PLENXManager& manager, const std::string& name) {
         manager.RemoteDeviceOffline(kPcService, name, "there", kTrigger);
     }},
};

const Request& RequestOf(unsigned number) {
    return kRequests[number % std::size(kRequests)];
}

/// The lines of RpcManager, with the reader's lines apart from them.
Lines LinesOfRequest(const Request& request, const ServiceReply& reply) {
    const std::string function = std::string("RpcManager::") + request.function;
    const std::string outcome = std::to_string(reply.Outcome());
    Lines lines = {Info(function, request.firstLine)};
    if (reply.exception != 0 || reply.result != 0) {
        const std::string what = reply.exception != 0 ? "exception " : "error ";
        lines.push_back(
            Error("RpcManager::SendRpcMessage", "send service message " + what + outcome));
        lines.push_back(Error(function, "send rpc message error ret:" + outcome));
    } else if (!reply.number) {
        lines.push_back(Error(function, "read ret error"));
    }
    return lines;
}

class ReplyStorm : public Host {
protected:
    ReplyStorm() { manager.RegisterPLENXServiceObserver(&tally); }
    ~ReplyStorm() override { manager.UnregisterPLENXServiceObserver(&tally); }

    /// Starts the phone service, which is honest.
    void Begin();
    /// Makes that many requests to a hostile PC service.
    void Rage(std::uint32_t seed, unsigned requests);

    TallyObserver tally;

private:
    /// Sends the phone service one request, which it answers with a notification.
    void Work(const std::string& name);
    static Lines LinesOfPcRequests(std::size_t from);

    Tally expected_;
};

void ReplyStorm::Begin() {
    Init();
    ASSERT_TRUE(Start(kPhoneService));
    ASSERT_TRUE(observer.WaitFor("NotifyStatus(2, group, 100, 1)"));
    // The observer keeps everything that it hears.
    manager.UnregisterPLENXServiceObserver(&observer);
    tally.TakeHeard();
}

void ReplyStorm::Work(const std::string& name) {
    EXPECT_EQ(manager.RemoteDeviceOnline(kPhoneService, name, "there"), 0);
    ++expected_["NotifyReconnect(2, " + name + ")"];
}

// A runtime that compares sizes refuses a reply with one of two codes; here it is always the one.
std::string WithOneCodeOfRefusal(std::string line) {
    for (const std::string before : {"exception ", "ret:"}) {
        const std::size_t at = line.find(before + "1734(");
        if (RuntimeComparesSizes() && at != std::string::npos) {
            line.replace(at + before.size(), 4, "1783");
        }
    }
    return line;
}

// Reads the lines that were logged after that byte.
Lines ReplyStorm::LinesOfPcRequests(std::size_t from) {
    const std::string kFunctions[] = {"NameChanged", "RecvRemoteMessage", "DeviceOnline",
                                      "DeviceOffline", "SendRpcMessage"};
    const std::vector<LogLine> log = ReadLibraryLog(from);
    Lines lines;
    for (const LogLine& line : log) {
        const std::string& text = line.text;
        const bool ofARequest = std::any_of(
            std::begin(kFunctions), std::end(kFunctions), [&](const std::string& function) {
                return text.find("(DistributedFs::RpcManager::" + function + ")") !=
                       std::string::npos;
            });
        if (ofARequest && text.find("svcType:2") == std::string::npos) {
            lines.push_back(WithOneCodeOfRefusal(text));
        }
    }
    return lines;
}

void ReplyStorm::Rage(std::uint32_t seed, unsigned requests) {
    const HostileService service(seed, requests);
    ASSERT_TRUE(service.Serves());
    const auto logged = static_cast<std::size_t>(fs::file_size(LibraryLogFile()));
    expected_.clear();
    ReplyMaker maker(seed);
    Lines lines;
    for (unsigned i = 0; i != requests; ++i) {
        const Request& request = RequestOf(i);
        const std::string name = "r" + std::to_string(i);
        request.make(manager, name);
        const ServiceReply reply = maker.Next();
        lines = std::move(lines) + LinesOfRequest(request, reply);
        if (reply.Outcome() != 0 && request.statusWhenFailed >= 0) {
            ++expected_["NotifyStatus(1, " + name + ", " +
                        std::to_string(request.statusWhenFailed) + ", 0)"];
        }
        if (i % kRequestsToOneOfWork == 0) {
            Work("w" + std::to_string(i));
        }
    }
    Work("last");
    EXPECT_TRUE(
        WaitFor([&] { return tally.Times("NotifyReconnect(2, last)") != 0; }, LongestStorm()))
        << "the last request had no effect";
    EXPECT_EQ(Difference(expected_, tally.TakeHeard()), "");
    const Lines logLines = LinesOfPcRequests(logged);
    for (std::size_t i = 0; i < std::max(lines.size(), logLines.size()); ++i) {
        ASSERT_EQ(i < logLines.size() ? logLines[i] : "the end",
                  i < lines.size() ? lines[i] : "the end")
            << "line " << i;
    }
}

HOST_TEST(ReplyStorm, EveryAnswer_EndsItsRequestAsItDeservesAndLeavesNothingBehind) {
    Begin();
    const std::uint32_t seed = HostileSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Rage(seed + 1, HostileMessages());  // makes everything that is made only once
    const Footprint before = MeasureFootprint();
    Rage(seed, HostileMessages());
    ExpectNothingMore(before);
    manager.RegisterPLENXServiceObserver(&observer);
    EXPECT_TRUE(Start(kPcService)) << "a start must work as always";
}

// The service process runs but serves nothing; the hostile one has its endpoint. A start goes on
// whatever the answers are, and only the answer about the group decides its outcome.
HOST_TEST(ReplyStorm, StartsOfAHostileService_EndAsItsLastAnswerSays) {
    constexpr int kMostPings = 26;
    constexpr int kSettings = 3;
    constexpr unsigned kStarts = 10;
    Control("[start]\nservice = 'pc'\nserve = false\n");
    Begin();
    const std::uint32_t seed = HostileSeed() + 2;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const HostileService service(seed, 1000000);
    ASSERT_TRUE(service.Serves());
    ReplyMaker maker(seed);
    Tally expected;
    for (unsigned i = 0; i != kStarts; ++i) {
        const std::string name = "s" + std::to_string(i);
        manager.Start(kPcService, name, "argument");
        for (int pings = 1; maker.Next().Outcome() != 0 && pings != kMostPings; ++pings) {
        }
        for (int settings = 0; settings != kSettings; ++settings) {
            maker.Next();
        }
        const bool started = maker.Next().Outcome() == 0;
        ++expected["NotifyStatus(1, " + name + (started ? ", 0, 1)" : ", 0, 0)")];
    }
    EXPECT_TRUE(Settle(LongestStorm()));
    EXPECT_EQ(Difference(expected, tally.TakeHeard()), "");
}

}  // namespace
}  // namespace PlenxTest
