// What every answer to a good request must look like.

#include <functional>

#include "judge/checks.h"
#include "judge/experiments.h"

namespace PlenxJudge {
namespace {

constexpr std::int32_t kLeastOwnCode = 1000;
constexpr std::int32_t kMostOwnCode = 1699;

using Judgement = std::function<std::vector<Fault>(const Exchange& exchange)>;

// Applies the judgement to each exchange whose call returned.
Outcome EachThatReturned(const Exchanges& exchanges, const Judgement& judge) {
    std::vector<Fault> faults;
    bool some = false;
    for (const Exchange& exchange : exchanges) {
        if (exchange.answer.way == Answer::Way::kReturned) {
            some = true;
            for (Fault& fault : judge(exchange)) {
                faults.push_back(std::move(fault));
            }
        }
    }
    return some ? Outcome::Of(std::move(faults)) : Outcome::NotJudged("no call returned");
}

}  // namespace

Outcome ReplyChecks::ReturnsZero(Trial& trial) {
    return EachThatReturned(Usual(trial), [](const Exchange& exchange) -> std::vector<Fault> {
        if (exchange.answer.result == 0) {
            return {};
        }
        return {{"result 0 of the procedure, and the code in the reply",
                 exchange.form.what + ": " + Told(exchange.answer)}};
    });
}

Outcome ReplyChecks::Replies(Trial& trial) {
    return EachThatReturned(Usual(trial), [](const Exchange& exchange) -> std::vector<Fault> {
        const Answer& answer = exchange.answer;
        if (answer.result != 0 || answer.hasReply || answer.statedSize != 0) {
            return {};
        }
        return {{"a reply with one int32", exchange.form.what + ": " + Told(answer)}};
    });
}

Outcome ReplyChecks::StatesTheSizeItSends(Trial& trial) {
    return EachThatReturned(Usual(trial), [](const Exchange& exchange) -> std::vector<Fault> {
        const Answer& answer = exchange.answer;
        if (answer.statedSize == 0 || answer.hasReply) {
            return {};
        }
        return {{"a resp of " + std::to_string(answer.statedSize) + " bytes, as respSize says",
                 exchange.form.what + ": " + Told(answer)}};
    });
}

Outcome ReplyChecks::RepliesExactly(Trial& trial) {
    return EachThatReturned(Usual(trial), [](const Exchange& exchange) -> std::vector<Fault> {
        const Answer& answer = exchange.answer;
        if (answer.result != 0 || !answer.hasReply || CodeIn(answer)) {
            return {};
        }
        return {{"24 bytes with one int32", exchange.form.what + ": " + Told(answer),
                 ShownReply(answer.reply)}};
    });
}

Outcome ReplyChecks::UsesCodesOfItsOwn(Trial& trial) {
    const auto judge = [](const Exchange& exchange) -> std::vector<Fault> {
        const std::int32_t code = CodeIn(exchange.answer).value_or(0);
        if (code == 0 || (code >= kLeastOwnCode && code <= kMostOwnCode)) {
            return {};
        }
        return {
            {"0, or a code from 1000 to 1699", exchange.form.what + ": " + Told(exchange.answer)}};
    };
    Outcome usual = EachThatReturned(Usual(trial), judge);
    Outcome unknown = EachThatReturned(Broken(trial, Breakage::kUnknownId), judge);
    if (usual.kind == Outcome::Kind::kNotJudged) {
        return unknown;
    }
    usual.faults.insert(usual.faults.end(), unknown.faults.begin(), unknown.faults.end());
    return Outcome::Of(usual.faults);
}

}  // namespace PlenxJudge
