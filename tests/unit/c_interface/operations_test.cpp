// Each operation does the same as that of the class, with every argument in its place.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "c_fixture.h"

namespace {

using testing::Contains;

const std::string kWithNul("a\0b", 3);

// The same call in both languages. Its lines tell an operation that queues nothing from one that
// does.
struct Pair {
    const char* name;
    std::function<int()> inC;
    std::function<int()> inCpp;
};

void PrintTo(const Pair& pair, std::ostream* out) {
    *out << pair.name;
}

const unsigned char kBlock[] = {1, 2, 3};

const Pair kPairs[] = {
    {"Start",
     [] { return plenx_start(1, kWithNul.data(), kWithNul.size(), PLENX_TEXT("argument")); },
     [] { return Facade().Start(Type(1), kWithNul, "argument"); }},
    {"StartOffice", [] { return plenx_start(0, PLENX_TEXT("g"), PLENX_TEXT("a")); },
     [] { return Facade().Start(Type(0), "g", "a"); }},
    {"StartOfNoService", [] { return plenx_start(7, PLENX_TEXT("g"), PLENX_TEXT("a")); },
     [] { return Facade().Start(Type(7), "g", "a"); }},
    {"StartWithoutAGroup", [] { return plenx_start(1, PLENX_TEXT(""), PLENX_TEXT("a")); },
     [] { return Facade().Start(Type(1), "", "a"); }},
    {"StartUpToTheNul", [] { return plenx_start(1, PLENX_TEXT("g\0x"), PLENX_TEXT("a")); },
     [] { return Facade().Start(Type(1), "g", "a"); }},
    {"Stop", [] { return plenx_stop(2, PLENX_TEXT("g")); },
     [] { return Facade().Stop(Type(2), "g"); }},
    {"StopWithoutAGroup", [] { return plenx_stop(2, nullptr, 0); },
     [] { return Facade().Stop(Type(2), ""); }},
    {"LocalDeviceOnline",
     [] {
         return plenx_local_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d"), kBlock,
                                          sizeof(kBlock));
     },
     [] { return Facade().LocalDeviceOnline(Type(1), "g", "d", sizeof(kBlock), kBlock); }},
    {"LocalDeviceOnlineOffice",
     [] {
         return plenx_local_device_online(0, PLENX_TEXT("g"), PLENX_TEXT("d"), kBlock,
                                          sizeof(kBlock));
     },
     [] { return Facade().LocalDeviceOnline(Type(0), "g", "d", sizeof(kBlock), kBlock); }},
    {"LocalDeviceOnlineWithoutABlock",
     [] { return plenx_local_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d"), nullptr, 0); },
     [] { return Facade().LocalDeviceOnline(Type(1), "g", "d", 0, nullptr); }},
    {"RemoteDeviceOnline",
     [] { return plenx_remote_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d")); },
     [] { return Facade().RemoteDeviceOnline(Type(1), "g", "d"); }},
    {"LocalDeviceOffline",
     [] { return plenx_local_device_offline(1, PLENX_TEXT("g"), PLENX_TEXT("d"), -5); },
     [] {
         return Facade().LocalDeviceOffline(Type(1), "g", "d",
                                            static_cast<DistributedFs::TriggerType>(-5));
     }},
    {"RemoteDeviceOffline",
     [] { return plenx_remote_device_offline(2, PLENX_TEXT("g"), PLENX_TEXT("d"), 9); },
     [] {
         return Facade().RemoteDeviceOffline(Type(2), "g", "d",
                                             static_cast<DistributedFs::TriggerType>(9));
     }},
    {"DeviceNameChanged", [] { return plenx_device_name_changed(PLENX_TEXT("name")); },
     [] { return Facade().DeviceNameChanged("name"); }},
    {"RecvRemoteMessage",
     [] { return plenx_recv_remote_message(-4, 4000000000U, PLENX_TEXT("m")); },
     [] {
         return Facade().RecvRemoteMessage(static_cast<DistributedFs::PLENXMessageType>(-4),
                                           4000000000U, "m");
     }},
    {"SetInt64", [] { return plenx_set_int64(3, 2, -9000000000); },
     [] {
         Facade().SetConfig(Type(3), Key(2), std::int64_t{-9000000000});
         return 0;
     }},
    {"SetString", [] { return plenx_set_string(3, 1, PLENX_TEXT("de_DE")); },
     [] {
         Facade().SetConfig(Type(3), Key(1), std::string("de_DE"));
         return 0;
     }},
    {"Destroy", [] { return plenx_destroy(); },
     [] {
         Facade().Destroy();
         return 0;
     }},
};

class EveryOperation : public ReadyFacade, public testing::WithParamInterface<Pair> {
protected:
    struct Seen {
        int result;
        std::vector<std::string> lines;
        std::vector<std::string> companionCalls;
        std::vector<ServiceCall> requests;
    };

    static Seen See(const std::function<int()>& call) {
        ForgetAll();
        Seen seen;
        seen.result = call();
        WaitForJobs();
        seen.lines = FacadeTexts();
        // The worker's lines may come before the caller's next one.
        std::sort(seen.lines.begin(), seen.lines.end());
        seen.companionCalls = FakeFileManager::Get().Calls();
        seen.requests = RequestsWithoutNameChanged();
        return seen;
    }
};

TEST_P(EveryOperation, DoesTheSameAsThatOfTheClass) {
    See(GetParam().inCpp);  // makes everything that is made only once
    const Seen expected = See(GetParam().inCpp);
    const Seen seen = See(GetParam().inC);
    EXPECT_EQ(seen.result, expected.result);
    EXPECT_EQ(seen.lines, expected.lines);
    EXPECT_EQ(seen.companionCalls, expected.companionCalls);
    ASSERT_EQ(seen.requests.size(), expected.requests.size());
    for (std::size_t i = 0; i != seen.requests.size(); ++i) {
        EXPECT_EQ(seen.requests[i].msgType, expected.requests[i].msgType);
        EXPECT_EQ(seen.requests[i].msg, expected.requests[i].msg);
    }
}

INSTANTIATE_TEST_SUITE_P(, EveryOperation, testing::ValuesIn(kPairs),
                         [](const testing::TestParamInfo<Pair>& pair) {
                             return std::string(pair.param.name);
                         });

class Operations : public ReadyFacade {};

TEST_F(FreshFacade, CInitHandsOnItsFourArguments) {
    EXPECT_EQ(plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"), PLENX_TEXT("third"), -1),
              0);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
    EXPECT_THAT(FakeFileManager::Get().Calls(),
                Contains("DistributedFileManager(C:\\App, C:\\Data, third, true)"));
    EXPECT_EQ(LayerProcess::pins, 1);
}

// While it lives, the system has no room for the stack of a further thread.
class NoFurtherThreads {
public:
    NoFurtherThreads() {
        pthread_getattr_default_np(&before_);
        pthread_attr_t larger = before_;
        pthread_attr_setstacksize(&larger, std::size_t{1} << 47);  // all of the address space
        EXPECT_EQ(pthread_setattr_default_np(&larger), 0);
    }
    ~NoFurtherThreads() { pthread_setattr_default_np(&before_); }
    NoFurtherThreads(const NoFurtherThreads&) = delete;
    NoFurtherThreads& operator=(const NoFurtherThreads&) = delete;

private:
    pthread_attr_t before_{};
};

TEST_F(FreshFacade, CInitThatCannotMakeItsWorkerFailsAndCanBeRepeated) {
    const auto init = [] {
        return plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"), PLENX_TEXT(""), 0);
    };
    {
        const NoFurtherThreads none;
        EXPECT_EQ(init(), PLENX_E_FAILED);
        EXPECT_EQ(LastError(), "plenx_init: Resource temporarily unavailable");
    }
    EXPECT_EQ(init(), 0);
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
}

TEST_F(Operations, NotRunningIsTheAnswerOfTheClass) {
    std::int64_t value = -1;
    EXPECT_EQ(plenx_get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING, &value), 0);
    EXPECT_EQ(value, 0);
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_STOPPED);
    EXPECT_EQ(plenx_get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING, &value), 0);
    EXPECT_EQ(value, 1);
}

TEST_F(Operations, StringSettingIsEmptyAndNeedsRoomForItsNul) {
    char text[2] = {'x', 'x'};
    std::size_t length = 9;
    EXPECT_EQ(plenx_get_string(1, 1, text, 0, &length), PLENX_E_BUFFER);
    EXPECT_EQ(LastError(), "plenx_get_string: capacity is too small for the text and its NUL");
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(plenx_get_string(1, 1, nullptr, 0, &length), PLENX_E_BUFFER);
    EXPECT_EQ(text[0], 'x');
    EXPECT_EQ(plenx_get_string(1, 1, text, 1, nullptr), 0);
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(text[1], 'x');
}

TEST_F(Operations, OfficeDirFillsABufferThatIsJustLargeEnough) {
    FakeFileManager::Get().SetNeighbourDir("P:\\tablet");
    FakeFileManager::Get().SetResult("GetGroupNeighborDistributedDir", 17);
    const std::string expected = "P:\\tablet\\docs";
    std::vector<char> text(expected.size() + 2, 'x');
    std::size_t length = 0;
    std::int32_t code = 0;
    EXPECT_EQ(plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT("docs"),
                                   text.data(), expected.size() + 1, &length, &code),
              0);
    EXPECT_EQ(code, 17);
    EXPECT_EQ(length, expected.size());
    EXPECT_EQ(std::string(text.data()), expected);
    EXPECT_EQ(text.back(), 'x');
}

TEST_F(Operations, OfficeDirInAShortBufferTellsLengthAndCodeAndLosesNothing) {
    FakeFileManager::Get().SetNeighbourDir("P:\\tablet");
    FakeFileManager::Get().SetResult("GetGroupNeighborDistributedDir", 17);
    char text[14] = "docs";  // holds the relative name, and has room for the whole one
    std::size_t length = 0;
    std::int32_t code = 0;
    const auto ask = [&](std::size_t capacity) {
        return plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT(text), text,
                                    capacity, &length, &code);
    };
    EXPECT_EQ(ask(sizeof(text)), PLENX_E_BUFFER);
    EXPECT_EQ(length, 14U);
    EXPECT_EQ(code, 17);
    EXPECT_STREQ(text, "docs");
    EXPECT_EQ(ask(0), PLENX_E_BUFFER);
    EXPECT_EQ(length, 14U);
}

TEST_F(Operations, OfficeDirMayBeWrittenOverItsRelativeName) {
    FakeFileManager::Get().SetNeighbourDir("P:");
    char text[32] = "docs";
    std::int32_t code = -1;
    EXPECT_EQ(plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT(text), text,
                                   sizeof(text), nullptr, &code),
              0);
    EXPECT_STREQ(text, "P:\\docs");
    EXPECT_EQ(code, 0);
}

TEST_F(Operations, ExceptionOfTheCompanionIsAResultWithItsWords) {
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call.find("GetGroupNeighborDistributedDir") == 0) {
            throw std::runtime_error("the companion is out of order");
        }
    });
    char text[32];
    std::int32_t code = 55;
    EXPECT_EQ(plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT(""), text,
                                   sizeof(text), nullptr, &code),
              PLENX_E_FAILED);
    EXPECT_EQ(LastError(), "plenx_get_office_dir: the companion is out of order");
    EXPECT_EQ(code, 55);
}

TEST_F(Operations, ExceptionOfNoKnownKindIsAResultToo) {
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call.find("UninstallPackages") == 0) {
            throw 5;
        }
    });
    EXPECT_EQ(plenx_destroy(), PLENX_E_FAILED);
    EXPECT_EQ(LastError(), "plenx_destroy: an exception that is not a std::exception was thrown");
}

TEST_F(Operations, WordsThatDoNotFitAreCutOff) {
    FakeFileManager::Get().SetHook([](const std::string& call) {
        if (call.find("UninstallPackages") == 0) {
            throw std::runtime_error(std::string(2000, 'w'));
        }
    });
    EXPECT_EQ(plenx_destroy(), PLENX_E_FAILED);
    EXPECT_EQ(LastError(), "plenx_destroy: " + std::string(512 - 15, 'w'));
}

}  // namespace
