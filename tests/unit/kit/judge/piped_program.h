// A program under judgement that is a child process of the test.

#ifndef TESTS_UNIT_KIT_JUDGE_PIPED_PROGRAM_H
#define TESTS_UNIT_KIT_JUDGE_PIPED_PROGRAM_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "judge/program.h"

namespace PlenxJudge {

class PipedProgram : public Program {
public:
    PipedProgram(std::vector<std::string> command, const PlenxSupport::Interruption& interruption)
        : command_(std::move(command)), inbox_(interruption) {}
    ~PipedProgram() override { End(); }
    PipedProgram(const PipedProgram&) = delete;
    PipedProgram& operator=(const PipedProgram&) = delete;

    Answer Call(const Request& request) override { return CallAtOnce({request}).front(); }
    std::vector<Answer> CallAtOnce(const std::vector<Request>& requests) override;
    void VanishDuring(const Request&) override {}
    bool IsUp() override;
    bool Restart() override;
    Service* AsService() override { return nullptr; }
    std::optional<Footprint> Measure() override { return std::nullopt; }
    Inbox& Manager() override { return inbox_; }
    void HideManager(bool) override {}
    int Role() const override { return 1; }
    std::string CleanUp() override { return {}; }

private:
    void End();
    bool Send(const std::vector<Request>& requests) const;
    bool Receive(Answer& answer);
    bool ReceiveNotifications();

    const std::vector<std::string> command_;
    Inbox inbox_;
    pid_t process_ = 0;
    int toIt_ = -1;
    int fromIt_ = -1;
};

}  // namespace PlenxJudge

#endif  // TESTS_UNIT_KIT_JUDGE_PIPED_PROGRAM_H
