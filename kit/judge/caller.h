// Makes the calls of the judge from a process of its own. So a call that hangs can be ended, a
// caller can vanish in mid-call, and an exception leaves nothing behind in the judge's RPC runtime.

#ifndef PLENXKIT_JUDGE_CALLER_H
#define PLENXKIT_JUDGE_CALLER_H

#include <windows.h>

#include <chrono>
#include <string>
#include <vector>

#include "judge/program.h"
#include "support/handle.h"
#include "support/interruption.h"

namespace PlenxJudge {

class Caller {
public:
    /// An interruption ends a call.
    Caller(std::string endpoint, const PlenxSupport::Interruption& interruption)
        : endpoint_(std::move(endpoint)), interruption_(interruption) {}
    ~Caller() { End(); }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    /// Makes all calls at once and waits for all of them.
    std::vector<Answer> Call(const std::vector<Request>& requests,
                             std::chrono::milliseconds patience);
    /// Begins the call and ends the process in the middle of it.
    void VanishDuring(const Request& request);

private:
    bool Begin();
    void End();
    bool Send(const std::vector<Request>& requests);
    bool AwaitTheCalls();
    bool Receive(Answer& answer);
    bool Read(void* bytes, std::size_t size);
    bool Write(const void* bytes, std::size_t size);

    const std::string endpoint_;
    const PlenxSupport::Interruption& interruption_;
    PlenxSupport::Handle process_;
    PlenxSupport::Handle toIt_;
    PlenxSupport::Handle fromIt_;
};

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_CALLER_H
