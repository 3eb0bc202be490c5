// The reports that are printed: notifications, commands with their outcome, plain texts, the end,
// and the findings of the doctor.

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
    int answer;   ///< The value that the observer will return,
    bool throws;  ///< unless it throws.
};

/// The outcome of a command. Commands that answer nothing leave all of it empty.
struct Outcome {
    std::optional<std::int64_t> number;
    std::optional<std::string> text;
    std::optional<bool> held;  ///< Only expectations have it.
    std::string remark;        ///< The reason why an expectation did not hold.
    bool silent = false;       ///< The command has printed everything itself.
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
    std::vector<std::string> leftovers;  ///< The notifications that no expectation took.
};

/// All findings of one of the doctor's checks.
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
