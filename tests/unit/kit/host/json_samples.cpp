// Prints one line of JSON of each kind, as plenxkit host would, for docs/check_kit_host_json.py.

#include <cstdio>

#include "doctor/doctor.h"
#include "host/line_format.h"

namespace PlenxHost {
namespace {

const Stamp kStamp{std::chrono::system_clock::time_point(std::chrono::milliseconds(1700000000007)),
                   std::chrono::milliseconds(12034), 77};

template <class Report>
void Print(const Report& report) {
    static const auto format = MakeJsonFormat();
    std::puts(format->Format(kStamp, report).c_str());
}

void PrintNotifications() {
    const std::string broken = "P\xFF";
    for (const NotificationShape& shape : NotificationShapes()) {
        Notification notification{shape.name, {}, "main"};
        for (const FieldShape& field : shape.fields) {
            if (field.kind == FieldKind::kText) {
                notification.fields.push_back({field.name, broken});
            } else if (field.kind == FieldKind::kBool) {
                notification.fields.push_back({field.name, true});
            } else {
                notification.fields.push_back({field.name, std::int64_t{3}});
            }
        }
        Print(NotificationReport{notification, -7, false});
        Print(NotificationReport{notification, 0, true});
    }
}

void PrintCommands() {
    Outcome outcome;
    Print(CommandReport{"", "register", "register main", outcome, kStamp.time, {}});
    outcome.number = -1;
    outcome.text = "a\xFF";
    Print(CommandReport{"s:1", "office-dir", "office-dir g d \xFF", outcome, kStamp.time, {}});
    Outcome expectation;
    expectation.held = false;
    expectation.remark = "it gave 0";
    Print(CommandReport{"s:2", "expect-result", "expect-result 26", expectation, kStamp.time, {}});
}

void PrintDoctor() {
    const std::vector<Finding> findings = {{Level::kOk, "well", ""},
                                           {Level::kNote, "worth a look", "look"},
                                           {Level::kProblem, "bad \xFF", "mend it"}};
    Diagnosis diagnosis;
    for (const Check& check : Checks()) {
        Print(CheckReport{check, findings});
    }
    diagnosis.problems = 8;
    diagnosis.notes = 8;
    Print(DiagnosisReport{diagnosis, 1});
}

}  // namespace
}  // namespace PlenxHost

int main() {
    using namespace PlenxHost;
    PrintNotifications();
    PrintCommands();
    Print(Note{NoteKind::kText, "text"});
    Print(Note{NoteKind::kError, "error \xFF"});
    Print(EndReport{1, 2, {"s:2: expect-result 26: it gave 0"}, {"NotifyError(errCode=1)"}});
    PrintDoctor();
    return 0;
}
