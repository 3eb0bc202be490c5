// Tables that say what an operation does when one of its platform calls fails.
//
// A table has one row for each call that can fail, in the order in which a successful operation
// makes them. The row says what follows from the failure: the result and every line, including
// those before the failure. CheckFaults runs the operation against the whole table. It tries each
// row with each error, failing once and failing from there on, each time on a fresh machine.
//
// FakePlatform stops the process at a call with a handle that is not open. After every round
// CheckFaults checks that nothing is left open or allocated.

#ifndef PLENXSDK_UNIT_FAULT_TABLE_H
#define PLENXSDK_UNIT_FAULT_TABLE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "companion/recorded_log.h"
#include "counted_allocations.h"
#include "platform/fake_platform.h"

/// The error with which a call fails.
struct Fault {
    DWORD error;
    int errnoOfFile;     // the errno of the C runtime for it,
    int errnoOfListing;  // and of its functions that list a folder
    bool forEver;        // all later calls fail as well

    std::string Error() const { return std::to_string(error); }
    std::string Errno() const { return std::to_string(errnoOfFile); }
    std::string ListingErrno() const { return std::to_string(errnoOfListing); }
    bool IsAbsence() const { return errnoOfFile == ENOENT; }
};

inline const std::vector<Fault>& EveryFault() {
    [[maybe_unused]] constexpr int kNoMemory = 12;
    constexpr int kNoAccess = 13;
    constexpr int kInvalid = 22;
    static const std::vector<Fault> once = {
        {ERROR_ACCESS_DENIED, kNoAccess, kInvalid, false},
        {ERROR_FILE_NOT_FOUND, ENOENT, ENOENT, false},
#ifndef __SANITIZE_THREAD__  // ThreadSanitizer is slow, and it finds nothing in one thread
        {ERROR_PATH_NOT_FOUND, ENOENT, ENOENT, false},
        {ERROR_SHARING_VIOLATION, kNoAccess, kInvalid, false},
        {ERROR_NOT_ENOUGH_MEMORY, kNoMemory, kNoMemory, false},
        {ERROR_SERVICE_MARKED_FOR_DELETE, kInvalid, kInvalid, false},
        {ERROR_SERVICE_REQUEST_TIMEOUT, kInvalid, kInvalid, false},
#endif
    };
    static const std::vector<Fault> all = [] {
        std::vector<Fault> faults = once;
        for (Fault fault : once) {
            fault.forEver = true;
            faults.push_back(fault);
        }
        return faults;
    }();
    return all;
}

using FaultLines = std::vector<std::string>;

template <class Item>
std::vector<Item> operator+(std::vector<Item> left, const std::vector<Item>& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

struct Outcome {
    std::int32_t code = 0;
    FaultLines lines;

    bool operator==(const Outcome& other) const {
        return code == other.code && lines == other.lines;
    }
};

inline void PrintTo(const Outcome& outcome, std::ostream* out) {
    constexpr std::size_t kEnough = 20;
    *out << "code " << outcome.code << ", " << outcome.lines.size() << " lines";
    for (std::size_t i = 0; i != std::min(kEnough, outcome.lines.size()); ++i) {
        *out << "\n    " << outcome.lines[i];
    }
}

struct FaultRow {
    const char* call;
    std::function<Outcome(const Fault&)> outcome;
    unsigned times = 1;  // the row stands for this many calls
};

struct FaultTable {
    Outcome good;  // when no call fails
    std::vector<FaultRow> rows;

    std::vector<FaultRow> EachCall() const {
        std::vector<FaultRow> each;
        for (const FaultRow& row : rows) {
            each.insert(each.end(), row.times, {row.call, row.outcome});
        }
        return each;
    }
};

/// A step of a larger operation: the table of the step alone, and the reaction of the larger
/// operation to its result.
struct FaultStep {
    FaultTable table;
    std::function<FaultLines(std::int32_t code)> after = [](std::int32_t) { return FaultLines(); };
    bool endsOnFailure = false;  // a failure of this step ends the operation
};

/// Returns the table of independent steps, one after the other. Its code is that of the step that
/// ends it, or 0.
inline FaultTable InSequence(const std::vector<FaultStep>& steps) {
    // Returns the outcome of the steps from there on, when all of them fail at once or none does.
    const auto rest = [steps](std::size_t from, const Fault* fault) {
        Outcome outcome;
        for (std::size_t i = from; i != steps.size(); ++i) {
            const FaultTable& table = steps[i].table;
            const Outcome step = fault != nullptr ? table.rows[0].outcome(*fault) : table.good;
            outcome.lines = outcome.lines + step.lines + steps[i].after(step.code);
            if (steps[i].endsOnFailure && step.code != 0) {
                outcome.code = step.code;
                break;
            }
        }
        return outcome;
    };
    FaultTable all;
    all.good = rest(0, nullptr);
    FaultLines before;
    for (std::size_t i = 0; i != steps.size(); ++i) {
        const FaultStep& step = steps[i];
        for (const FaultRow& row : step.table.rows) {
            all.rows.push_back({row.call,
                                [=](const Fault& fault) {
                                    const Outcome own = row.outcome(fault);
                                    Outcome outcome{own.code, before + own.lines};
                                    outcome.lines = outcome.lines + step.after(own.code);
                                    if (step.endsOnFailure && own.code != 0) {
                                        return outcome;
                                    }
                                    const Outcome later =
                                        rest(i + 1, fault.forEver ? &fault : nullptr);
                                    return Outcome{later.code, outcome.lines + later.lines};
                                },
                                row.times});
        }
        before = before + step.table.good.lines + step.after(step.table.good.code);
    }
    return all;
}

/// Runs the operation against the table. prepare makes the machine and returns the object for
/// operate; operate returns the result code; observe returns the lines.
template <class Prepare, class Operate, class Observe>
void CheckFaults(const FaultTable& table, Prepare prepare, Operate operate, Observe observe) {
    FakePlatform& platform = FakePlatform::Get();
    const auto startAfresh = [&platform] {
        platform.Reset();
        RecordedLog::Get().Clear();
    };
    std::vector<std::string> calls;
    unsigned hits = 0;
    const auto run = [&](unsigned n, const Fault* fault) {
        Outcome outcome;
        startAfresh();
        {
            auto subject = prepare();
            platform.ForgetCalls();
            platform.Faults().ForgetCalls();
            RecordedLog::Get().Clear();
            if (fault != nullptr && fault->forEver) {
                platform.Faults().FailAnyCallsFrom(n, fault->error);
            } else if (fault != nullptr) {
                platform.Faults().FailAnyCall(n, fault->error);
            }
            outcome.code = operate(subject);
            outcome.lines = observe();
            calls = platform.Faults().Calls();
            hits = platform.Faults().Hits();
            platform.Faults().Reset();
            EXPECT_THAT(platform.OpenHandles(), testing::IsEmpty());
        }
        startAfresh();
        return outcome;
    };

    const std::vector<FaultRow> rows = table.EachCall();
    std::vector<std::string> expectedCalls;
    for (const FaultRow& row : rows) {
        expectedCalls.push_back(row.call);
    }
    EXPECT_EQ(run(0, nullptr), table.good);
    EXPECT_EQ(calls, expectedCalls);
    for (unsigned n = 1; n <= rows.size() && !testing::Test::HasFailure(); ++n) {
        for (const Fault& fault : EveryFault()) {
            SCOPED_TRACE(testing::Message()
                         << "call " << n << ", " << rows[n - 1].call
                         << (fault.forEver ? ", and later fail with " : ": ") << fault.error);
            const Outcome expected = rows[n - 1].outcome(fault);
            const std::int64_t before = LiveAllocations();
            {
                EXPECT_EQ(run(n, &fault), expected);
            }
            EXPECT_GE(hits, 1U);
            if (LiveAllocations() != before) {
                // Objects that are made once for a process are not a leak; a leak comes again.
                const std::int64_t again = LiveAllocations();
                run(n, &fault);
                EXPECT_EQ(LiveAllocations(), again);
            }
        }
    }
}

template <class Prepare, class Operate>
void CheckFaults(const FaultTable& table, Prepare prepare, Operate operate) {
    CheckFaults(table, prepare, operate, [] { return RecordedLog::Get().Texts(); });
}

#endif  // PLENXSDK_UNIT_FAULT_TABLE_H
