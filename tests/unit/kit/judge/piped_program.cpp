#include "judge/piped_program.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "judge/caller_wire.h"

namespace PlenxJudge {
namespace {

constexpr int kPatience = 3000;

bool WriteAll(int file, const void* bytes, std::size_t size) {
    const auto* next = static_cast<const char*>(bytes);
    while (size != 0) {
        const ssize_t count = write(file, next, size);
        if (count <= 0) {
            return false;
        }
        next += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

// A hang and an end look the same: nothing comes.
bool ReadAll(int file, void* bytes, std::size_t size) {
    auto* next = static_cast<char*>(bytes);
    while (size != 0) {
        pollfd wait{file, POLLIN, 0};
        const ssize_t count = poll(&wait, 1, kPatience) == 1 ? read(file, next, size) : 0;
        if (count <= 0) {
            return false;
        }
        next += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace

std::vector<Answer> PipedProgram::CallAtOnce(const std::vector<Request>& requests) {
    Answer hung;
    hung.way = Answer::Way::kHung;
    std::vector<Answer> answers(requests.size(), hung);
    bool went = IsUp() && Send(requests);
    for (std::size_t i = 0; went && i < answers.size(); ++i) {
        went = Receive(answers[i]);
    }
    if (!went) {
        End();
    }
    return answers;
}

bool PipedProgram::IsUp() {
    return process_ != 0 && waitpid(process_, nullptr, WNOHANG) == 0;
}

bool PipedProgram::Restart() {
    End();
    int input[2];
    int output[2];
    if (pipe(input) != 0 || pipe(output) != 0) {
        return false;
    }
    signal(SIGPIPE, SIG_IGN);
    process_ = fork();
    if (process_ == 0) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        for (const int file : {input[0], input[1], output[0], output[1]}) {
            close(file);
        }
        std::vector<char*> words;
        for (const std::string& word : command_) {
            words.push_back(const_cast<char*>(word.c_str()));
        }
        words.push_back(nullptr);
        execv(words[0], words.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    toIt_ = input[1];
    fromIt_ = output[0];
    return process_ > 0;
}

void PipedProgram::End() {
    if (process_ > 0) {
        close(toIt_);
        close(fromIt_);
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    process_ = 0;
}

bool PipedProgram::Send(const std::vector<Request>& requests) const {
    const auto count = static_cast<std::uint32_t>(requests.size());
    bool sent = WriteAll(toIt_, &count, sizeof count);
    for (const Request& request : requests) {
        const RequestHead head{request.id, static_cast<std::uint32_t>(request.bytes.size())};
        sent = sent && WriteAll(toIt_, &head, sizeof head) &&
               WriteAll(toIt_, request.bytes.data(), request.bytes.size());
    }
    return sent;
}

bool PipedProgram::Receive(Answer& answer) {
    AnswerHead head;
    if (!ReadAll(fromIt_, &head, sizeof head)) {
        return false;
    }
    answer.way = head.raised != 0 ? Answer::Way::kRaised : Answer::Way::kReturned;
    answer.exception = head.exception;
    answer.result = head.result;
    answer.statedSize = head.statedSize;
    answer.hasReply = head.hasReply != 0;
    answer.reply.resize(head.size);
    return ReadAll(fromIt_, answer.reply.data(), answer.reply.size()) && ReceiveNotifications();
}

bool PipedProgram::ReceiveNotifications() {
    std::uint32_t count = 0;
    bool all = ReadAll(fromIt_, &count, sizeof count);
    for (; all && count != 0; --count) {
        RequestHead head;
        all = ReadAll(fromIt_, &head, sizeof head);
        PlenxWire::Bytes message(head.size);
        all = all && ReadAll(fromIt_, message.data(), message.size());
        inbox_.Take(head.id, std::move(message));
    }
    return all;
}

}  // namespace PlenxJudge
