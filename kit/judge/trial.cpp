#include "judge/trial.h"

#include <thread>
#include <utility>

#include "message/table.h"
#include "wire/catalog.h"

namespace PlenxJudge {
namespace {

// Each loss may cost the longest wait for one call, and a start.
constexpr int kMostLosses = 12;
constexpr int kMostLossesOfOneKind = 3;
constexpr std::chrono::milliseconds kUntilItIsGone(200);

struct KnownException {
    std::uint32_t code;
    const char* meaning;
};

constexpr KnownException kExceptions[] = {
    {998, "access violation in the program"},
    {1702, "the binding handle is invalid"},
    {1715, "the program does not listen"},
    {1717, "the interface is not registered"},
    {1722, "nobody serves the endpoint"},
    {1723, "the program is too busy"},
    {1726, "the call failed: the program has ended in it, or an exception has left it"},
    {1727, "the call failed and was not carried out"},
    {1783, "the stub received bad data"},
    {0xC0000005U, "access violation in the program"},
    {0xC00000FDU, "stack overflow in the program"},
};

std::string MeaningOf(std::uint32_t exception) {
    for (const KnownException& known : kExceptions) {
        if (known.code == exception) {
            return std::string(" (") + known.meaning + ")";
        }
    }
    return {};
}

std::string Milliseconds(std::chrono::milliseconds time) {
    return std::to_string(time.count()) + " ms";
}

std::string ToldReturn(const Answer& answer) {
    if (answer.result != 0) {
        return "the procedure returned " + std::to_string(answer.result);
    }
    if (!answer.hasReply) {
        return answer.statedSize == 0
                   ? "result 0 without a reply"
                   : "result 0, respSize " + std::to_string(answer.statedSize) + ", resp null";
    }
    const std::optional<std::int32_t> code = CodeIn(answer);
    return code ? "a reply with the code " + std::to_string(*code)
                : "a reply of " + std::to_string(answer.reply.size()) +
                      " bytes that is not one int32";
}

}  // namespace

void Trial::KeepTheGroup(const Request& request) {
    if (request.id == PlenxWire::kCreateGroup) {
        const PlenxWire::Decoded decoded = PlenxWire::DecodeAs(
            *PlenxWire::FindMessage(request.id), request.bytes.data(), request.bytes.size());
        if (decoded.Ok()) {
            groups_.insert(std::get<std::string>(decoded.arguments[0]));
        }
    }
}

// A process that ends in a call needs a moment to be gone. The caller gets one of these exceptions.
bool Trial::StaysUp(std::uint32_t exception) {
    constexpr std::uint32_t kUnavailable = 1722;
    constexpr std::uint32_t kCallFailed = 1726;
    constexpr std::uint32_t kNotExecuted = 1727;
    if (exception == kUnavailable || exception == kCallFailed || exception == kNotExecuted) {
        std::this_thread::sleep_for(kUntilItIsGone);
    }
    return program_.IsUp();
}

Exchange Trial::Send(const Form& form) {
    Exchange exchange{form, {}, true, {}};
    if (!over_.empty() || IsInterrupted()) {
        return exchange;
    }
    KeepTheGroup(form.request);
    exchange.answer = program_.Call(form.request);
    std::string before = std::exchange(before_, form.what + ": " + Told(exchange.answer));
    if (exchange.answer.way == Answer::Way::kReturned || IsInterrupted()) {
        return exchange;
    }
    exchange.survived =
        exchange.answer.way == Answer::Way::kRaised && StaysUp(exchange.answer.exception);
    if (exchange.survived) {
        return exchange;
    }
    exchange.before = std::move(before);
    before_.clear();
    ++losses_;
    if (losses_ == kMostLosses) {
        over_ = "the program was lost " + std::to_string(losses_) + " times";
    } else if (!program_.Restart()) {
        over_ = "the program is gone: " + form.what + " was the last request";
    }
    return exchange;
}

Exchanges Trial::SendAll(const Forms& forms) {
    Exchanges exchanges;
    for (const Form& form : forms) {
        exchanges.push_back(Send(form));
    }
    return exchanges;
}

Exchanges Trial::SendUntilLost(const Forms& forms) {
    Exchanges exchanges;
    int lost = 0;
    for (const Form& form : forms) {
        if (!over_.empty() || lost == kMostLossesOfOneKind) {
            break;
        }
        exchanges.push_back(Send(form));
        lost += exchanges.back().answer.way == Answer::Way::kReturned ? 0 : 1;
    }
    return exchanges;
}

std::string Told(const Answer& answer) {
    switch (answer.way) {
    case Answer::Way::kReturned:
        return ToldReturn(answer);
    case Answer::Way::kRaised:
        return "the call raised exception " + std::to_string(answer.exception) +
               MeaningOf(answer.exception);
    case Answer::Way::kHung:
        return "no answer within " + Milliseconds(answer.took);
    case Answer::Way::kNotSent:
        break;
    }
    return "the program was gone";
}

std::string Told(const Exchange& exchange) {
    std::string text = exchange.form.what + ": " + Told(exchange.answer);
    if (!exchange.survived && exchange.answer.way == Answer::Way::kRaised) {
        text += ", and the program was gone";
    }
    return exchange.before.empty() ? text : text + "; the request before it was " + exchange.before;
}

std::string Shown(std::int32_t id, const PlenxWire::Bytes& bytes) {
    const PlenxMessage::Message message{PlenxMessage::SubjectOf(id), bytes};
    return PlenxMessage::ToTable(message, PlenxMessage::Inspected(message));
}

std::string ShownReply(const PlenxWire::Bytes& bytes) {
    const PlenxMessage::Message message{{&PlenxWire::ReplyShape(), std::nullopt}, bytes};
    return PlenxMessage::ToTable(message, PlenxMessage::Inspected(message));
}

std::optional<std::int32_t> CodeIn(const Answer& answer) {
    if (answer.way != Answer::Way::kReturned || answer.result != 0 || !answer.hasReply) {
        return std::nullopt;
    }
    const PlenxWire::Decoded decoded =
        PlenxWire::DecodeReply(answer.reply.data(), answer.reply.size());
    return decoded.Ok() ? std::optional(std::get<std::int32_t>(decoded.arguments[0]))
                        : std::nullopt;
}

std::int64_t ResultForLibrary(const Answer& answer) {
    if (answer.way == Answer::Way::kRaised) {
        return answer.exception;
    }
    if (answer.way == Answer::Way::kReturned && answer.result != 0) {
        return answer.result;
    }
    return CodeIn(answer).value_or(0);
}

}  // namespace PlenxJudge
