// The process that makes the calls of the judge. It reads requests from its input, makes the calls
// with the library's own stub, and writes what came back to its output.

#include <chrono>
#include <istream>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

#include "judge/caller_wire.h"
#include "judge/command.h"
#include "judge/program.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"
#include "support/wide_text.h"
#include "wire/local_binding.h"

namespace PlenxJudge {
namespace {

template <class Value>
bool Read(std::istream& in, Value& value) {
    return static_cast<bool>(in.read(reinterpret_cast<char*>(&value), sizeof value));
}

template <class Value>
void Write(std::ostream& out, const Value& value) {
    out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

bool ReadRequests(std::istream& in, std::vector<Request>& requests) {
    std::uint32_t count = 0;
    if (!Read(in, count)) {
        return false;
    }
    requests.resize(count);
    for (Request& request : requests) {
        RequestHead head;
        if (!Read(in, head)) {
            return false;
        }
        request.id = head.id;
        request.bytes.resize(head.size);
        in.read(reinterpret_cast<char*>(request.bytes.data()),
                static_cast<std::streamsize>(head.size));
    }
    return static_cast<bool>(in);
}

void WriteAnswer(std::ostream& out, const Answer& answer) {
    AnswerHead head;
    head.raised = answer.way == Answer::Way::kRaised ? 1 : 0;
    head.exception = answer.exception;
    head.result = answer.result;
    head.statedSize = answer.statedSize;
    head.hasReply = answer.hasReply ? 1 : 0;
    head.milliseconds = static_cast<std::uint32_t>(answer.took.count());
    head.size = static_cast<std::uint32_t>(answer.reply.size());
    Write(out, head);
    out.write(reinterpret_cast<const char*>(answer.reply.data()),
              static_cast<std::streamsize>(answer.reply.size()));
}

// The binding of the process must be set.
Answer CallOnce(const Request& request) {
    static const unsigned char kNothing[1] = {};  // an empty message still needs an address
    const auto begin = std::chrono::steady_clock::now();
    PlenxServiceReply reply{};
    PlenxCallService(request.id, static_cast<long>(request.bytes.size()),
                     request.bytes.empty() ? kNothing : request.bytes.data(), &reply);
    const std::unique_ptr<unsigned char, decltype(&MIDL_user_free)> block(reply.block,
                                                                          &MIDL_user_free);
    Answer answer;
    answer.took = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    answer.way = reply.raised != 0 ? Answer::Way::kRaised : Answer::Way::kReturned;
    answer.exception = static_cast<std::uint32_t>(reply.exceptionCode);
    answer.result = static_cast<std::int32_t>(reply.result);
    answer.statedSize = static_cast<std::int32_t>(reply.size);
    answer.hasReply = block != nullptr;
    if (block != nullptr && reply.size > 0) {
        answer.reply.assign(block.get(), block.get() + reply.size);
    }
    return answer;
}

// The calls share a binding, because the stub has only one. They all run at the same time.
std::vector<Answer> CallAll(const std::vector<Request>& requests) {
    if (requests.size() == 1) {
        return {CallOnce(requests.front())};
    }
    std::vector<Answer> answers(requests.size());
    std::vector<std::thread> callers;
    callers.reserve(requests.size());
    for (std::size_t i = 0; i < requests.size(); ++i) {
        callers.emplace_back([&, i] { answers[i] = CallOnce(requests[i]); });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    return answers;
}

}  // namespace

int RunCaller(const CallerOptions& options, const PlenxKit::Streams& streams) {
    std::vector<Request> requests;
    while (ReadRequests(streams.in, requests)) {
        const PlenxWire::LocalBinding binding(PlenxSupport::ToWide(options.endpoint));
        plenxServiceBinding = binding.Get();
        streams.out << kCalling << std::flush;
        for (const Answer& answer : CallAll(requests)) {
            WriteAnswer(streams.out, answer);
        }
        streams.out << std::flush;
    }
    return 0;
}

}  // namespace PlenxJudge
