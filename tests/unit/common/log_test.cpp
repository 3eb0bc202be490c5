#include "common/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <locale>
#include <numeric>
#include <ostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "companion/recorded_log.h"
#include "plenxsdk/plenx_manager.h"

using DistributedFs::LogError;
using DistributedFs::LogInfo;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kFunction[] = "DistributedFs::Room::Operation";

std::vector<std::string> Texts() {
    return RecordedLog::Get().Texts();
}

std::wstring OnlyText() {
    const std::vector<RecordedLine> lines = RecordedLog::Get().Lines();
    return lines.size() == 1 ? lines[0].text : L"not exactly one line";
}

TEST(Log, LineIsTextThenValuesThenFunctionInParentheses) {
    LogInfo("DistributedFs::PLENXManager::Start", "[PLENXSDK] plenx manager start service (", 1,
            ") is pushed into thread pool");
    EXPECT_THAT(Texts(), ElementsAre("L3 [PLENXSDK] plenx manager start service (1) is pushed "
                                     "into thread pool(DistributedFs::PLENXManager::Start)"));
}

TEST(Log, TextAloneIsFollowedByTheFunctionWithoutABlank) {
    LogInfo("DistributedFs::PLENXManager::Init", "[PLENXSDK] plenx manager Init");
    EXPECT_THAT(Texts(),
                ElementsAre("L3 [PLENXSDK] plenx manager Init(DistributedFs::PLENXManager::Init)"));
}

TEST(Log, ErrorLinesHaveLevel4) {
    LogError(kFunction, "text ", 5);
    EXPECT_THAT(Texts(), ElementsAre("L4 text 5(DistributedFs::Room::Operation)"));
}

TEST(Log, NumbersAreDecimalToTheirLimits) {
    LogInfo(kFunction, std::numeric_limits<std::int32_t>::min(), " ",
            std::numeric_limits<std::int64_t>::min(), " ", std::numeric_limits<std::int64_t>::max(),
            " ", std::numeric_limits<std::uint64_t>::max(), " ",
            std::numeric_limits<std::uint32_t>::max(), " ", 0, " ", -1);
    EXPECT_THAT(Texts(), ElementsAre("L3 -2147483648 -9223372036854775808 9223372036854775807 "
                                     "18446744073709551615 4294967295 0 -1"
                                     "(DistributedFs::Room::Operation)"));
}

TEST(Log, BoolIsOneOrZero) {
    LogInfo(kFunction, true, false);
    EXPECT_THAT(Texts(), ElementsAre("L3 10(DistributedFs::Room::Operation)"));
}

TEST(Log, EnumIsItsNumberWithTheSignOfItsType) {
    LogInfo(kFunction, static_cast<DistributedFs::ServiceType>(0xFFFFFFFFU), " ",
            static_cast<DistributedFs::TriggerType>(-7), " ", DistributedFs::kPhoneService);
    EXPECT_THAT(Texts(), ElementsAre("L3 4294967295 -7 2(DistributedFs::Room::Operation)"));
}

TEST(Log, CharIsOneCharacter) {
    LogInfo(kFunction, "cLetter:", 'E', " type:", 2);
    EXPECT_THAT(Texts(), ElementsAre("L3 cLetter:E type:2(DistributedFs::Room::Operation)"));
}

TEST(Log, CharAbove127IsOneCharacterToo) {
    LogInfo(kFunction, '\xE4');
    EXPECT_EQ(OnlyText(), std::wstring(1, wchar_t{0xE4}) + L"(DistributedFs::Room::Operation)");
}

TEST(Log, NarrowTextIsUtf8) {
    LogInfo(kFunction, std::string("gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_EQ(OnlyText(), std::wstring(L"gr\x00FC\x00DF \x20AC ") + wchar_t{0xD83D} +
                              wchar_t{0xDE00} + L"(DistributedFs::Room::Operation)");
}

TEST(Log, WideTextGoesInAsItIs) {
    const std::wstring name = std::wstring(L"\x00FC") + wchar_t{0xD83D};  // half a pair
    LogInfo(kFunction, "service ", name, " success");
    EXPECT_EQ(OnlyText(), L"service " + name + L" success(DistributedFs::Room::Operation)");
}

TEST(Log, EmbeddedNulIsKept) {
    LogInfo(kFunction, std::string("a\0b", 3), std::wstring(L"c\0d", 3));
    EXPECT_EQ(OnlyText(), std::wstring(L"a\0bc\0d(DistributedFs::Room::Operation)",
                                       6 + sizeof("(DistributedFs::Room::Operation)") - 1));
}

struct Malformed {
    std::string bytes;
    std::wstring shown;
};

void PrintTo(const Malformed& value, std::ostream* out) {
    *out << "Bytes";
    for (const char byte : value.bytes) {
        *out << '.' << static_cast<int>(static_cast<unsigned char>(byte));
    }
}

class LogOfMalformedUtf8 : public testing::TestWithParam<Malformed> {};

TEST_P(LogOfMalformedUtf8, ShowsAReplacementForEachMalformedByte) {
    LogInfo(kFunction, GetParam().bytes);
    EXPECT_EQ(OnlyText(), GetParam().shown + L"(DistributedFs::Room::Operation)");
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, LogOfMalformedUtf8,
    testing::Values(Malformed{"a\x80z", L"a\xFFFDz"},  // stray continuation
                    Malformed{"a\xC3", L"a\xFFFD"},    // cut off at the end
                    Malformed{"a\xE2\x82", L"a\xFFFD\xFFFD"},
                    Malformed{"a\xF0\x9F\x98", L"a\xFFFD\xFFFD\xFFFD"},
                    Malformed{"\xC3(", L"\xFFFD("},  // cut off in the middle
                    Malformed{"\xE2\x82(", L"\xFFFD\xFFFD("},
                    Malformed{"\xC0\x80", L"\xFFFD\xFFFD"},  // too long
                    Malformed{"\xE0\x80\x80", L"\xFFFD\xFFFD\xFFFD"},
                    Malformed{"\xF0\x80\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"},
                    Malformed{"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},  // surrogate
                    Malformed{"\xF4\x90\x80\x80",
                              L"\xFFFD\xFFFD\xFFFD\xFFFD"},  // above the last point
                    Malformed{"\xFF\xFE", L"\xFFFD\xFFFD"},
                    Malformed{"\xC3\xC3\xBC", std::wstring(L"\xFFFD\x00FC")}));  // starts anew

TEST(Log, ErrnoIsKept) {
    errno = ENOENT;
    LogError(kFunction, std::string(10000, 'x'));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(Texts().size(), 1U);
}

class GroupedDigits : public std::numpunct<wchar_t> {
    wchar_t do_thousands_sep() const override { return L','; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Log, HostsLocaleDoesNotDecideHowNumbersLook) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    LogError(kFunction, "timeout (", 5000, " ms)");
    std::locale::global(before);
    EXPECT_THAT(Texts(), ElementsAre("L4 timeout (5000 ms)(DistributedFs::Room::Operation)"));
}

std::string Letters(std::size_t length) {
    std::string text(length, 'a');
    for (std::size_t i = 0; i != length; ++i) {
        text[i] = static_cast<char>('a' + i % 26);
    }
    return text;
}

// Tries lengths around the room for a line. The number counts as 20 characters, so 460 characters
// are the most that need no allocation.
TEST(Log, LinesOfEveryLengthAreWhole) {
    std::vector<std::size_t> lengths(70);
    std::iota(lengths.begin(), lengths.end(), std::size_t{0});
    lengths.insert(lengths.end(), {459, 460, 461, 462, 479, 480, 481, 5000, 3});
    for (const std::size_t length : lengths) {
        RecordedLog::Get().Clear();
        LogInfo(kFunction, Letters(length), 7);
        EXPECT_THAT(Texts(),
                    ElementsAre("L3 " + Letters(length) + "7(DistributedFs::Room::Operation)"));
    }
}

TEST(Log, OddCharacterIsFoundAtEveryPlace) {
    for (std::size_t length = 2; length != 40; ++length) {
        for (std::size_t place = 0; place + 1 < length; ++place) {
            RecordedLog::Get().Clear();
            const std::string letters = Letters(length);
            const std::string front = letters.substr(0, place);
            const std::string back = letters.substr(place + 2);
            const std::wstring expected = std::wstring(front.begin(), front.end()) + L"\xE4" +
                                          L"\xFFFD" + std::wstring(back.begin(), back.end());
            LogInfo(kFunction, front + "\xC3\xA4\xFF" + back);
            EXPECT_EQ(OnlyText(), expected + L"(DistributedFs::Room::Operation)");
        }
    }
}

TEST(Log, LoggerMayLogItself) {
    bool isInside = false;
    RecordedLog::Get().SetWatcher([&isInside](const std::wostringstream&) {
        if (!isInside) {
            isInside = true;
            LogInfo("DistributedFs::Logger::Log", "inner ", 1);
            isInside = false;
        }
    });
    LogError(kFunction, "outer ", 5);
    LogError(kFunction, std::string(600, 'x'));
    EXPECT_THAT(Texts(),
                ElementsAre("L3 inner 1(DistributedFs::Logger::Log)",
                            "L4 outer 5(DistributedFs::Room::Operation)",
                            "L3 inner 1(DistributedFs::Logger::Log)",
                            "L4 " + std::string(600, 'x') + "(DistributedFs::Room::Operation)"));
}

// The line of a logger that logs, and a long line, have streams of their own.
TEST(Log, EveryStreamIsInTheClassicLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    int streams = 0;
    RecordedLog::Get().SetWatcher([&streams](const std::wostringstream& stream) {
        EXPECT_EQ(stream.getloc(), std::locale::classic());
        if (++streams == 1) {
            LogInfo(kFunction, "inner");
        }
    });
    LogInfo(kFunction, "outer");
    LogInfo(kFunction, std::string(600, 'x'));
    std::locale::global(before);
    EXPECT_EQ(streams, 3);
}

TEST(Log, LinesThatFitShareOneStreamAlsoAfterALoggerThatThrew) {
    std::vector<const std::wostringstream*> streams;
    RecordedLog::Get().SetWatcher(
        [&streams](const std::wostringstream& stream) { streams.push_back(&stream); });
    LogInfo(kFunction, "first");
    RecordedLog::Get().SetThrowing(true);
    LogInfo(kFunction, "lost");
    RecordedLog::Get().SetThrowing(false);
    LogInfo(kFunction, std::string(600, 'x'));
    LogInfo(kFunction, "last");
    ASSERT_EQ(streams.size(), 4U);
    EXPECT_EQ(streams[1], streams[0]);
    EXPECT_NE(streams[2], streams[0]);
    EXPECT_EQ(streams[3], streams[0]);
}

TEST(Log, MissingLoggerIsTolerated) {
    RecordedLog::Get().SetMissing(true);
    errno = ENOENT;
    LogError(kFunction, "lost");
    EXPECT_EQ(errno, ENOENT);
    RecordedLog::Get().SetMissing(false);
    LogError(kFunction, "kept");
    EXPECT_THAT(Texts(), ElementsAre("L4 kept(DistributedFs::Room::Operation)"));
}

TEST(Log, ThrowingLoggerIsTolerated) {
    RecordedLog::Get().SetThrowing(true);
    errno = ENOENT;
    EXPECT_NO_THROW(LogError(kFunction, "lost"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST(Log, LoggerThatCannotBeMadeIsToleratedAndAskedForAgain) {
    RecordedLog::Get().SetUnmakeable(true);
    DistributedFs::TouchLogger();
    errno = ENOENT;
    EXPECT_NO_THROW(LogError(kFunction, "lost"));
    EXPECT_EQ(errno, ENOENT);
    RecordedLog::Get().SetUnmakeable(false);
    LogError(kFunction, "kept");
    EXPECT_THAT(Texts(), ElementsAre("L4 kept(DistributedFs::Room::Operation)"));
}

TEST(Log, LinesOfManyThreadsAreAllWrittenWhole) {
    std::vector<std::thread> threads;
    for (int i = 0; i != 8; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n != 200; ++n) {
                LogInfo(kFunction, "thread ", i);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<std::string> texts = Texts();
    EXPECT_EQ(texts.size(), 1600U);
    for (int i = 0; i != 8; ++i) {
        const std::string line =
            "L3 thread " + std::to_string(i) + "(DistributedFs::Room::Operation)";
        EXPECT_EQ(std::count(texts.begin(), texts.end(), line), 200);
    }
}

}  // namespace
