#include "judge/caller.h"

#include <algorithm>
#include <utility>

#include "judge/caller_wire.h"
#include "support/start_process.h"
#include "support/wide_text.h"

namespace PlenxJudge {
namespace {

using PlenxSupport::Handle;

constexpr DWORD kEnded = 0xDEAD;
constexpr DWORD kEndOfCaller = 5000;
constexpr std::size_t kMostAtOnce = std::size_t{1024} * 1024;
constexpr DWORD kIntoTheCall = 5;
constexpr std::chrono::milliseconds kUntilItCalls(60000);

struct Pipe {
    Handle read;
    Handle write;
};

// The child inherits only one end.
Pipe MakePipe(bool childReads) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    CreatePipe(&read, &write, &inherited, kMostAtOnce);
    SetHandleInformation(childReads ? write : read, HANDLE_FLAG_INHERIT, 0);
    return {Handle(read), Handle(write)};
}

std::wstring CommandLine(const std::string& endpoint) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return L"\"" + path + L"\" judge-caller \"" + PlenxSupport::ToWide(endpoint) + L"\"";
}

// Ends a process at an interruption or when its time is over, unless this object is gone by then.
class Deadline {
public:
    Deadline(HANDLE process, std::chrono::milliseconds time,
             const PlenxSupport::Interruption& interruption) {
        RegisterWaitForSingleObject(&wait_, interruption.Event(), EndProcess, process,
                                    static_cast<DWORD>(time.count()), WT_EXECUTEONLYONCE);
    }
    // If the process is just being ended, waits until that is done.
    ~Deadline() { static_cast<void>(UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE)); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

private:
    static void CALLBACK EndProcess(void* process, BOOLEAN) { TerminateProcess(process, kEnded); }

    HANDLE wait_ = nullptr;
};

}  // namespace

std::vector<Answer> Caller::Call(const std::vector<Request>& requests,
                                 std::chrono::milliseconds patience) {
    Answer hung;
    hung.way = Answer::Way::kHung;
    hung.took = patience;
    std::vector<Answer> answers(requests.size(), hung);
    if (!Begin()) {
        return answers;
    }
    bool allCameBack = Send(requests) && AwaitTheCalls();
    if (allCameBack) {
        const Deadline deadline(process_.Get(), patience, interruption_);
        for (std::size_t i = 0; allCameBack && i < answers.size(); ++i) {
            allCameBack = Receive(answers[i]);
        }
    }
    const bool raised = std::any_of(answers.begin(), answers.end(), [](const Answer& answer) {
        return answer.way == Answer::Way::kRaised;
    });
    // An exception leaves something behind in Wine's RPC runtime that makes later calls of the
    // process fail.
    if (!allCameBack || raised) {
        End();
    }
    return answers;
}

void Caller::VanishDuring(const Request& request) {
    if (Begin() && Send({request}) && AwaitTheCalls()) {
        Sleep(kIntoTheCall);
    }
    End();
}

bool Caller::Begin() {
    if (process_) {
        return true;
    }
    Pipe input = MakePipe(true);
    Pipe output = MakePipe(false);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.read.Get();
    startup.hStdOutput = output.write.Get();
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started{};
    std::wstring line = CommandLine(endpoint_);
    if (!PlenxSupport::StartProcess(line, true, 0, startup, started)) {
        return false;
    }
    CloseHandle(started.hThread);
    process_ = Handle(started.hProcess);
    toIt_ = std::move(input.write);
    fromIt_ = std::move(output.read);
    return true;
}

void Caller::End() {
    toIt_.Reset();
    fromIt_.Reset();
    if (process_) {
        TerminateProcess(process_.Get(), kEnded);
        WaitForSingleObject(process_.Get(), kEndOfCaller);
        process_.Reset();
    }
}

bool Caller::Send(const std::vector<Request>& requests) {
    const auto count = static_cast<std::uint32_t>(requests.size());
    bool sent = Write(&count, sizeof count);
    for (const Request& request : requests) {
        const RequestHead head{request.id, static_cast<std::uint32_t>(request.bytes.size())};
        sent =
            sent && Write(&head, sizeof head) && Write(request.bytes.data(), request.bytes.size());
    }
    return sent;
}

// The time that this process needs to start does not count as the program's time.
bool Caller::AwaitTheCalls() {
    const Deadline deadline(process_.Get(), kUntilItCalls, interruption_);
    char calling = 0;
    return Read(&calling, sizeof calling) && calling == kCalling;
}

bool Caller::Receive(Answer& answer) {
    AnswerHead head;
    if (!Read(&head, sizeof head)) {
        return false;
    }
    answer.way = head.raised != 0 ? Answer::Way::kRaised : Answer::Way::kReturned;
    answer.exception = head.exception;
    answer.result = head.result;
    answer.statedSize = head.statedSize;
    answer.hasReply = head.hasReply != 0;
    answer.took = std::chrono::milliseconds(head.milliseconds);
    answer.reply.resize(head.size);
    return Read(answer.reply.data(), answer.reply.size());
}

bool Caller::Read(void* bytes, std::size_t size) {
    auto* next = static_cast<std::uint8_t*>(bytes);
    while (size != 0) {
        DWORD count = 0;
        if (!ReadFile(fromIt_.Get(), next, static_cast<DWORD>(std::min(size, kMostAtOnce)), &count,
                      nullptr) ||
            count == 0) {
            return false;
        }
        next += count;
        size -= count;
    }
    return true;
}

bool Caller::Write(const void* bytes, std::size_t size) {
    const auto* next = static_cast<const std::uint8_t*>(bytes);
    while (size != 0) {
        DWORD count = 0;
        if (!WriteFile(toIt_.Get(), next, static_cast<DWORD>(std::min(size, kMostAtOnce)), &count,
                       nullptr) ||
            count == 0) {
            return false;
        }
        next += count;
        size -= count;
    }
    return true;
}

}  // namespace PlenxJudge
