// Judges the requests and the notifications of the program that the arguments name, strictly, and
// prints the numbers of the checks that failed. Exits with 1 when there are any.

#include <iostream>

#include "judge/piped_program.h"
#include "judge/runner.h"
#include "judge/selection.h"

namespace {

const std::vector<std::string> kRequests = {
    "serve,reply,create-group,delete-group,device-online,device-offline,name-changed",
    "recv-remote-message,set-string-config,set-int64-config,ping,text,flag,message,call,refuse",
    "notify,status-notify,send-local-message,update-windows-explore,explore-flush-notify"};

}  // namespace

int main(int count, char** words) {
    using namespace PlenxJudge;
    const PlenxSupport::Interruption none;
    PipedProgram program({words + 1, words + count}, none);
    Trial trial(program, std::chrono::seconds(0), none);
    bool failed = false;
    for (const Record& record :
         RunChecks(Selected(kRequests), trial, {},
                   {[](const Check&, std::size_t) {}, [](const Record&) {}})) {
        if (record.Failed()) {
            failed = true;
            std::cout << record.number << " " << record.outcome.faults.front().came << "\n";
        }
    }
    if (!trial.Over().empty()) {
        failed = true;
        std::cout << trial.Over() << "\n";
    }
    return failed ? 1 : 0;
}
