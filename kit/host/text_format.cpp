#include <cstdio>

#include "host/exit_code.h"
#include "host/line_format.h"
#include "host/text.h"

namespace PlenxHost {
namespace {

constexpr std::size_t kMostOfALine = 256;
constexpr int kWorthTelling = 50;  // milliseconds that a command took
constexpr std::size_t kLevelWidth = 9;

std::string ToText(const Field& field) {
    std::string out = std::string(field.name) + "=";
    if (const auto* text = std::get_if<std::string>(&field.value)) {
        return out + Quote(*text, kMostOfALine);
    }
    if (const auto* flag = std::get_if<bool>(&field.value)) {
        return out + (*flag ? "true" : "false");
    }
    return out + std::to_string(std::get<std::int64_t>(field.value));
}

std::string StampText(const Stamp& stamp) {
    char text[48];
    const auto milliseconds = static_cast<long long>(stamp.sinceStart.count());
    std::snprintf(text, sizeof text, "%6lld.%03lld [%u]", milliseconds / 1000, milliseconds % 1000,
                  static_cast<unsigned>(stamp.thread));
    return text;
}

std::string Shortened(const std::string& text) {
    return text.size() > kMostOfALine ? text.substr(0, kMostOfALine) + "..." : text;
}

std::string Count(int count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

Role RoleOf(Level level) {
    switch (level) {
    case Level::kOk:
        return Role::kGood;
    case Level::kNote:
        return Role::kWarning;
    case Level::kProblem:
        return Role::kBad;
    }
    return Role::kBad;
}

class TextFormat : public LineFormat {
public:
    explicit TextFormat(Colours colours) : colours_(colours) {}

    std::string Format(const Stamp& stamp, const NotificationReport& report) const override {
        std::string text = "< " + PlenxHost::ToText(report.notification);
        if (report.throws) {
            text += " throws";
        } else if (report.answer != 0) {
            text += " returns " + std::to_string(report.answer);
        }
        const bool isError = report.notification.name == "NotifyError";
        return Begin(stamp) + In(isError ? Role::kBad : Role::kNotification, text);
    }

    std::string Format(const Stamp& stamp, const CommandReport& report) const override {
        std::string line = Begin(stamp) +
                           In(Role::kCommand, "> " + Printable(Shortened(report.text))) +
                           OutcomeText(report.outcome);
        if (report.took.count() >= kWorthTelling) {
            line += " (" + std::to_string(report.took.count()) + " ms)";
        }
        return line;
    }

    std::string Format(const Stamp&, const Note& note) const override {
        const std::string text = Printable(note.text);
        return note.kind == NoteKind::kError ? In(Role::kBad, text) : text;
    }

    std::string Format(const Stamp&, const EndReport& report) const override {
        std::string lines;
        if (report.expectations == 0) {
            lines = "there were no expectations";
        } else if (report.failures.empty()) {
            lines = In(Role::kGood,
                       "all " + std::to_string(report.expectations) + " expectations held");
        } else {
            lines = In(Role::kBad, std::to_string(report.failures.size()) + " failed, of " +
                                       std::to_string(report.expectations) + " expectations:");
            AppendList(lines, report.failures);
        }
        if (report.exitCode != kAllHeld && !report.leftovers.empty()) {
            lines += "\nno expectation took these notifications:";
            AppendList(lines, report.leftovers);
        }
        return lines + "\nexit code " + std::to_string(report.exitCode);
    }

    std::string Format(const Stamp&, const CheckReport& report) const override {
        std::string lines = In(Role::kHeading, report.check.title);
        for (const Finding& finding : report.findings) {
            std::string level = NameOf(finding.level);
            const std::string gap(kLevelWidth - level.size(), ' ');
            lines += "\n  " + In(RoleOf(finding.level), level) + gap + Printable(finding.text);
            if (!finding.advice.empty()) {
                lines += "\n  " + std::string(kLevelWidth, ' ') + Printable(finding.advice);
            }
        }
        return lines + "\n";
    }

    std::string Format(const Stamp&, const DiagnosisReport& report) const override {
        std::string lines = "The doctor does not look at:";
        for (const std::string& text : NotLookedAt()) {
            lines += "\n  " + text;
        }
        const Diagnosis& diagnosis = report.diagnosis;
        const Role role = diagnosis.problems != 0 ? Role::kBad
                          : diagnosis.notes != 0  ? Role::kWarning
                                                  : Role::kGood;
        return lines + "\n\n" +
               In(role,
                  Count(diagnosis.problems, "problem") + ", " + Count(diagnosis.notes, "note")) +
               "\nexit code " + std::to_string(report.exitCode);
    }

private:
    std::string In(Role role, const std::string& text) const { return Paint(colours_, role, text); }

    std::string Begin(const Stamp& stamp) const { return In(Role::kFaint, StampText(stamp)) + " "; }

    std::string OutcomeText(const Outcome& outcome) const {
        std::string out;
        if (outcome.number) {
            out += " = " + std::to_string(*outcome.number);
        }
        if (outcome.text) {
            out += (outcome.number ? ", " : " = ") + Quote(*outcome.text, kMostOfALine);
        }
        if (outcome.held) {
            out += ": " + (*outcome.held ? In(Role::kGood, "yes") : In(Role::kBad, "NO"));
        }
        if (!outcome.remark.empty()) {
            out += ", " + outcome.remark;
        }
        return out;
    }

    static void AppendList(std::string& lines, const std::vector<std::string>& items) {
        for (const std::string& item : items) {
            lines += "\n  " + item;
        }
    }

    const Colours colours_;
};

}  // namespace

std::string ToText(const Notification& notification) {
    constexpr const char* kUsualObserver = "main";
    std::string out = notification.name + "(";
    for (const Field& field : notification.fields) {
        out += (out.back() == '(' ? "" : ", ") + ToText(field);
    }
    out.push_back(')');
    return notification.observer == kUsualObserver ? out : out + " @" + notification.observer;
}

std::unique_ptr<LineFormat> MakeTextFormat(Colours colours) {
    return std::make_unique<TextFormat>(colours);
}

}  // namespace PlenxHost
