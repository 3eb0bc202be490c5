#include <cstdio>

#include "exit_code.h"
#include "line_format.h"
#include "text.h"

namespace PlenxHost {
namespace {

constexpr std::size_t kMostShown = 256;
constexpr int kWorthTelling = 50;  // milliseconds that a command took

std::string ToText(const Field& field) {
    std::string out = std::string(field.name) + "=";
    if (const auto* text = std::get_if<std::string>(&field.value)) {
        return out + Quote(*text, kMostShown);
    }
    if (const auto* flag = std::get_if<bool>(&field.value)) {
        return out + (*flag ? "true" : "false");
    }
    return out + std::to_string(std::get<std::int64_t>(field.value));
}

std::string ToText(const Stamp& stamp) {
    char text[48];
    const auto milliseconds = static_cast<long long>(stamp.sinceStart.count());
    std::snprintf(text, sizeof text, "%6lld.%03lld [%u] ", milliseconds / 1000, milliseconds % 1000,
                  static_cast<unsigned>(stamp.thread));
    return text;
}

std::string Shortened(const std::string& text) {
    return text.size() > kMostShown ? text.substr(0, kMostShown) + "..." : text;
}

std::string ToText(const Outcome& outcome) {
    std::string out;
    if (outcome.number) {
        out += " = " + std::to_string(*outcome.number);
    }
    if (outcome.text) {
        out += (outcome.number ? ", " : " = ") + Quote(*outcome.text, kMostShown);
    }
    if (outcome.held) {
        out += *outcome.held ? ": yes" : ": NO";
    }
    if (!outcome.remark.empty()) {
        out += ", " + outcome.remark;
    }
    return out;
}

class TextFormat : public LineFormat {
public:
    std::string Format(const Stamp& stamp, const NotificationReport& report) const override {
        std::string line = ToText(stamp) + "< " + PlenxHost::ToText(report.notification);
        if (report.throws) {
            line += " throws";
        } else if (report.answer != 0) {
            line += " returns " + std::to_string(report.answer);
        }
        return line;
    }

    std::string Format(const Stamp& stamp, const CommandReport& report) const override {
        std::string line =
            ToText(stamp) + "> " + Printable(Shortened(report.text)) + ToText(report.outcome);
        if (report.took.count() >= kWorthTelling) {
            line += " (" + std::to_string(report.took.count()) + " ms)";
        }
        return line;
    }

    std::string Format(const Stamp&, const Note& note) const override {
        return Printable(note.text);
    }

    std::string Format(const Stamp&, const EndReport& report) const override {
        std::string lines;
        if (report.expectations == 0) {
            lines = "no expectations";
        } else if (report.failures.empty()) {
            lines = "all " + std::to_string(report.expectations) + " expectations held";
        } else {
            lines = std::to_string(report.failures.size()) + " failed, of " +
                    std::to_string(report.expectations) + " expectations:";
            AppendList(lines, report.failures);
        }
        if (report.exitCode != kAllHeld && !report.leftovers.empty()) {
            lines += "\ncame and was not taken by an expectation:";
            AppendList(lines, report.leftovers);
        }
        return lines + "\nexit code " + std::to_string(report.exitCode);
    }

private:
    static void AppendList(std::string& lines, const std::vector<std::string>& items) {
        for (const std::string& item : items) {
            lines += "\n  " + item;
        }
    }
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

std::unique_ptr<LineFormat> MakeTextFormat() {
    return std::make_unique<TextFormat>();
}

}  // namespace PlenxHost
