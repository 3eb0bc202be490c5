// What is printed: notifications, commands with their outcome, plain texts and the end; and what
// the doctor found.

#ifndef PLENXKIT_HOST_REPORT_H
#define PLENXKIT_HOST_REPORT_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "doctor/doctor.h"
#include "host/notification.h"

namespace PlenxHost {

struct NotificationReport {
    const Notification& notification;
    int answer;   ///< What the observer is going to return,
    bool throws;  ///< unless it throws.
};

/// What came of a command. Commands that answer nothing leave all of it empty.
struct Outcome {
    std::optional<std::int64_t> number;
    std::optional<std::string> text;
    std::optional<bool> held;  ///< For expectations.
    std::string remark;        ///< Why an expectation did not hold.
    bool silent = false;       ///< The command itself has printed what there is.
};

struct CommandReport {
    std::string place;  ///< File and line; empty for commands that are typed.
    std::string name;
    std::string text;  ///< The whole command as it was written.
    const Outcome& outcome;
    std::chrono::system_clock::time_point began;
    std::chrono::milliseconds took;
};

enum class NoteKind { kText, kError };

struct Note {
    NoteKind kind;
    std::string text;
};

struct EndReport {
    int exitCode;
    int expectations;
    std::vector<std::string> failures;
    std::vector<std::string> leftovers;  ///< Notifications that nothing expected.
};

/// All that one of the doctor's checks has found.
struct CheckReport {
    const Check& check;
    const std::vector<Finding>& findings;
};

struct DiagnosisReport {
    const Diagnosis& diagnosis;
    int exitCode;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_REPORT_H
