// Tests arguments that cannot be used. The call does nothing, its result says so, and
// plenx_last_error names the argument.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "arguments.h"
#include "c_fixture.h"

namespace {

using testing::IsEmpty;

struct TextArgument {
    const char* function;
    const char* name;
    std::function<plenx_result(const char*, std::size_t)> call;
};

void PrintTo(const TextArgument& argument, std::ostream* out) {
    *out << argument.function << ' ' << argument.name;
}

plenx_result OfficeDir(const char* group, std::size_t groupLength, const char* device,
                       std::size_t deviceLength, const char* relative, std::size_t relativeLength) {
    char text[64];
    std::int32_t code = 0;
    return plenx_get_office_dir(group, groupLength, device, deviceLength, relative, relativeLength,
                                text, sizeof(text), nullptr, &code);
}

const TextArgument kTextArguments[] = {
    {"plenx_init", "install",
     [](const char* text, std::size_t length) {
         return plenx_init(text, length, PLENX_TEXT("C:\\Data"), PLENX_TEXT(""), 0);
     }},
    {"plenx_init", "data",
     [](const char* text, std::size_t length) {
         return plenx_init(PLENX_TEXT("C:\\App"), text, length, PLENX_TEXT(""), 0);
     }},
    {"plenx_init", "third",
     [](const char* text, std::size_t length) {
         return plenx_init(PLENX_TEXT("C:\\App"), PLENX_TEXT("C:\\Data"), text, length, 0);
     }},
    {"plenx_set_string", "value",
     [](const char* text, std::size_t length) { return plenx_set_string(1, 1, text, length); }},
    {"plenx_start", "group",
     [](const char* text, std::size_t length) {
         return plenx_start(1, text, length, PLENX_TEXT("a"));
     }},
    {"plenx_start", "argument",
     [](const char* text, std::size_t length) {
         return plenx_start(1, PLENX_TEXT("g"), text, length);
     }},
    {"plenx_stop", "group",
     [](const char* text, std::size_t length) { return plenx_stop(1, text, length); }},
    {"plenx_local_device_online", "group",
     [](const char* text, std::size_t length) {
         return plenx_local_device_online(1, text, length, PLENX_TEXT("d"), nullptr, 0);
     }},
    {"plenx_local_device_online", "device",
     [](const char* text, std::size_t length) {
         return plenx_local_device_online(1, PLENX_TEXT("g"), text, length, nullptr, 0);
     }},
    {"plenx_remote_device_online", "group",
     [](const char* text, std::size_t length) {
         return plenx_remote_device_online(1, text, length, PLENX_TEXT("d"));
     }},
    {"plenx_remote_device_online", "device",
     [](const char* text, std::size_t length) {
         return plenx_remote_device_online(1, PLENX_TEXT("g"), text, length);
     }},
    {"plenx_local_device_offline", "group",
     [](const char* text, std::size_t length) {
         return plenx_local_device_offline(1, text, length, PLENX_TEXT("d"), 0);
     }},
    {"plenx_local_device_offline", "device",
     [](const char* text, std::size_t length) {
         return plenx_local_device_offline(1, PLENX_TEXT("g"), text, length, 0);
     }},
    {"plenx_remote_device_offline", "group",
     [](const char* text, std::size_t length) {
         return plenx_remote_device_offline(1, text, length, PLENX_TEXT("d"), 0);
     }},
    {"plenx_remote_device_offline", "device",
     [](const char* text, std::size_t length) {
         return plenx_remote_device_offline(1, PLENX_TEXT("g"), text, length, 0);
     }},
    {"plenx_device_name_changed", "name",
     [](const char* text, std::size_t length) { return plenx_device_name_changed(text, length); }},
    {"plenx_recv_remote_message", "message",
     [](const char* text, std::size_t length) {
         return plenx_recv_remote_message(1, 2, text, length);
     }},
    {"plenx_get_office_dir", "group",
     [](const char* text, std::size_t length) {
         return OfficeDir(text, length, PLENX_TEXT("d"), PLENX_TEXT("r"));
     }},
    {"plenx_get_office_dir", "device",
     [](const char* text, std::size_t length) {
         return OfficeDir(PLENX_TEXT("g"), text, length, PLENX_TEXT("r"));
     }},
    {"plenx_get_office_dir", "relative",
     [](const char* text, std::size_t length) {
         return OfficeDir(PLENX_TEXT("g"), PLENX_TEXT("d"), text, length);
     }},
    {"plenx_queue_set_link_status", "group",
     [](const char* text, std::size_t length) {
         const OpenQueue queue;
         RecordedLog::Get().Clear();
         return plenx_queue_set_link_status(queue.Get(), 1, text, length, 2, 3);
     }},
};

class EveryTextArgument : public testing::TestWithParam<TextArgument> {
protected:
    EveryTextArgument() { RecordedLog::Get().Clear(); }

    static void ExpectRefused(const char* text, std::size_t length, const std::string& why) {
        EXPECT_EQ(GetParam().call(text, length), PLENX_E_ARGUMENT);
        EXPECT_EQ(LastError(),
                  std::string(GetParam().function) + ": " + GetParam().name + " " + why);
        EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
    }
};

TEST_P(EveryTextArgument, NullWithALengthIsRefused) {
    ExpectRefused(nullptr, 1, "is null, but its length is not 0");
}

TEST_P(EveryTextArgument, NullUpToItsNulIsRefused) {
    ExpectRefused(nullptr, PLENX_SIZE_TO_NUL, "is null, but its length is not 0");
}

TEST_P(EveryTextArgument, LengthAbove2GiBIsRefusedUnread) {
    ExpectRefused("x", std::size_t{1} << 31, "is longer than 2^31 - 1 bytes");
    ExpectRefused("x", static_cast<std::size_t>(-2), "is longer than 2^31 - 1 bytes");
}

TEST_P(EveryTextArgument, NullWithLength0IsTheEmptyText) {
    EXPECT_NE(GetParam().call(nullptr, 0), PLENX_E_ARGUMENT);
    EXPECT_EQ(GetParam().call(nullptr, 0), GetParam().call("", 0));
}

INSTANTIATE_TEST_SUITE_P(, EveryTextArgument, testing::ValuesIn(kTextArguments),
                         [](const testing::TestParamInfo<TextArgument>& argument) {
                             return std::string(argument.param.function) + "_" +
                                    argument.param.name;
                         });

struct BadCall {
    const char* name;
    std::function<plenx_result()> call;
    std::string error;
};

void PrintTo(const BadCall& call, std::ostream* out) {
    *out << call.name;
}

plenx_result ObserveWithSize(std::uint32_t size) {
    plenx_observer observer{};
    observer.size = size;
    plenx_subscription* subscription = nullptr;
    return plenx_observe(&observer, &subscription);
}

const BadCall kBadCalls[] = {
    {"Int64WithoutAValue", [] { return plenx_get_int64(1, 5, nullptr); },
     "plenx_get_int64: value is null"},
    {"StringWithoutABuffer", [] { return plenx_get_string(1, 1, nullptr, 1, nullptr); },
     "plenx_get_string: text is null, but its capacity is not 0"},
    {"BlockWithoutBytes",
     [] { return plenx_local_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d"), nullptr, 1); },
     "plenx_local_device_online: data is null, but its size is not 0"},
    {"BlockAbove2GiB",
     [] {
         return plenx_local_device_online(1, PLENX_TEXT("g"), PLENX_TEXT("d"), "x",
                                          std::uint64_t{1} << 31);
     },
     "plenx_local_device_online: size is above 2^31 - 1"},
    {"OfficeDirWithoutABuffer",
     [] {
         std::int32_t code = 0;
         return plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT("r"), nullptr, 1,
                                     nullptr, &code);
     },
     "plenx_get_office_dir: text is null, but its capacity is not 0"},
    {"OfficeDirWithoutACode",
     [] {
         char text[64];
         return plenx_get_office_dir(PLENX_TEXT("g"), PLENX_TEXT("d"), PLENX_TEXT("r"), text,
                                     sizeof(text), nullptr, nullptr);
     },
     "plenx_get_office_dir: code is null"},
    {"QueueWithoutAPlaceForIt", [] { return plenx_queue_open(1, nullptr); },
     "plenx_queue_open: queue is null"},
    {"QueueOfNothing",
     [] {
         plenx_queue* queue = nullptr;
         return plenx_queue_open(0, &queue);
     },
     "plenx_queue_open: capacity is 0"},
    {"NextWithoutAPlaceForIt",
     [] {
         const OpenQueue queue;
         RecordedLog::Get().Clear();
         return plenx_queue_next(queue.Get(), 0, nullptr);
     },
     "plenx_queue_next: event is null"},
    {"ObserverIsNull",
     [] {
         plenx_subscription* subscription = nullptr;
         return plenx_observe(nullptr, &subscription);
     },
     "plenx_observe: observer is null"},
    {"ObserverWithoutAPlaceForIt",
     [] {
         plenx_observer observer{};
         observer.size = sizeof(observer);
         return plenx_observe(&observer, nullptr);
     },
     "plenx_observe: subscription is null"},
    {"ObserverWithoutASize", [] { return ObserveWithSize(0); },
     "plenx_observe: observer has a size that no version of the struct has"},
    {"ObserverThatIsTooSmall", [] { return ObserveWithSize(sizeof(plenx_observer) - 1); },
     "plenx_observe: observer has a size that no version of the struct has"},
    {"ObserverOfGarbage", [] { return ObserveWithSize(4097); },
     "plenx_observe: observer has a size that no version of the struct has"},
};

class EveryBadCall : public testing::TestWithParam<BadCall> {
protected:
    EveryBadCall() { RecordedLog::Get().Clear(); }
};

TEST_P(EveryBadCall, IsRefusedWithTheReasonAndDoesNothing) {
    EXPECT_EQ(GetParam().call(), PLENX_E_ARGUMENT);
    EXPECT_EQ(LastError(), GetParam().error);
    EXPECT_THAT(RecordedLog::Get().Texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, EveryBadCall, testing::ValuesIn(kBadCalls),
                         [](const testing::TestParamInfo<BadCall>& call) {
                             return std::string(call.param.name);
                         });

TEST(Block, MayHave2GiBLessOneByte) {
    EXPECT_EQ(PlenxC::BlockSize("x", INT32_MAX), std::uint64_t{INT32_MAX});
}

TEST(LastError, IsEmptyBeforeAnythingHasFailed) {
    EXPECT_EQ(LastError(), "");
}

TEST(LastError, StaysWhenACallSucceeds) {
    plenx_get_int64(1, 5, nullptr);
    std::int64_t value = 0;
    EXPECT_EQ(plenx_get_int64(1, 5, &value), 0);
    EXPECT_EQ(LastError(), "plenx_get_int64: value is null");
}

TEST(LastError, IsOfTheCallingThread) {
    plenx_get_int64(1, 5, nullptr);
    std::string ofAnother = "not asked";
    std::thread([&] { ofAnother = LastError(); }).join();
    EXPECT_EQ(ofAnother, "");
    EXPECT_EQ(LastError(), "plenx_get_int64: value is null");
}

TEST(LastError, ItsOwnFailureDoesNotHideTheOneAskedFor) {
    plenx_get_int64(1, 5, nullptr);
    const std::string error = "plenx_get_int64: value is null";
    std::size_t length = 0;
    EXPECT_EQ(plenx_last_error(nullptr, 1, &length), PLENX_E_ARGUMENT);
    EXPECT_EQ(plenx_last_error(nullptr, 0, &length), PLENX_E_BUFFER);
    EXPECT_EQ(length, error.size());
    std::vector<char> text(length, 'x');
    EXPECT_EQ(plenx_last_error(text.data(), text.size(), &length), PLENX_E_BUFFER);
    EXPECT_EQ(text.front(), 'x');
    text.push_back('x');
    EXPECT_EQ(plenx_last_error(text.data(), text.size(), nullptr), 0);
    EXPECT_EQ(std::string(text.data()), error);
}

TEST(Open, TakesItsOwnAndOlderHeaders) {
    EXPECT_EQ(plenx_abi(), PLENX_ABI);
    EXPECT_EQ(plenx_open(PLENX_ABI), 0);
    EXPECT_EQ(plenx_open(0), 0);
}

TEST(Open, RefusesANewerHeaderInWords) {
    EXPECT_EQ(plenx_open(PLENX_ABI + 1), PLENX_E_ABI);
    EXPECT_EQ(LastError(),
              "plenx_open: plenx.h of the host is newer than plenxsdk_c.dll; ship the DLLs of the "
              "package that the header is from");
}

TEST(ResultText, HasASentenceOfItsOwnForEachResult) {
    std::set<std::string> sentences;
    for (std::int32_t result = PLENX_E_FAILED; result <= 0; ++result) {
        sentences.insert(plenx_result_text(result));
    }
    sentences.insert(plenx_result_text(PLENX_INVALID_PARAMETER));
    EXPECT_EQ(sentences.size(), 11U);
    EXPECT_EQ(sentences.count(plenx_result_text(25)), 0U);
    EXPECT_STREQ(plenx_result_text(PLENX_E_FAILED - 1), plenx_result_text(25));
}

}  // namespace
