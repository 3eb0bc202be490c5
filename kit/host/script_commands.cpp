#include "host/script_commands.h"

#include <chrono>
#include <deque>
#include <optional>

#include "host/commands.h"
#include "host/pattern.h"
#include "host/text.h"

namespace PlenxHost {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kMostShown = 256;
constexpr std::size_t kMostInstead = 5;

Outcome Held(bool held, const std::string& remark) {
    Outcome outcome;
    outcome.held = held;
    outcome.remark = held ? "" : remark;
    return outcome;
}

Action Saying(const std::string& text) {
    return [=](Session& session) {
        session.Say(text);
        Outcome outcome;
        outcome.silent = true;
        return outcome;
    };
}

// Says why an expectation did not hold, and names the latest notification that came instead.
std::string Missed(const Pattern& pattern, milliseconds limit, const Inbox& inbox) {
    if (inbox.Interrupted()) {
        return "interrupted";
    }
    if (const auto opposite = inbox.OppositeOf(pattern)) {
        return "the opposite came: " + ToText(*opposite);
    }
    std::deque<std::string> instead;
    for (const Notification& notification : inbox.Left()) {
        if (pattern.IsNearMiss(notification)) {
            instead.push_back(ToText(notification));
        }
        if (instead.size() > kMostInstead) {
            instead.pop_front();
        }
    }
    std::string text = "it did not come within " + std::to_string(limit.count()) + " ms";
    const char* separator = "; came instead: ";
    for (const std::string& one : instead) {
        text += separator + one;
        separator = ", ";
    }
    return text;
}

// Makes an action that changes how the observers react.
template <class Change>
Action Reacting(Change change) {
    return [=](Session& session) {
        session.Reactions().Set(change);
        return Outcome();
    };
}

}  // namespace

Action ParseAnswer(Arguments& arguments) {
    const std::int32_t code = arguments.TakeInt32("code");
    return Reacting([=](Reaction& reaction) { reaction.answer = code; });
}

Action ParseAnswerLink(Arguments& arguments) {
    const Word& word = arguments.Take("status");
    std::optional<std::int32_t> status;
    if (!word.Is("keep")) {
        status = static_cast<std::int32_t>(Bits32Of(word, "the status"));
    }
    return Reacting([=](Reaction& reaction) { reaction.linkStatus = status; });
}

Action ParseSlow(Arguments& arguments) {
    const milliseconds delay(arguments.TakeMilliseconds());
    return Reacting([=](Reaction& reaction) { reaction.delay = delay; });
}

Action ParseThrow(Arguments& arguments) {
    const bool on = arguments.TakeOnOff();
    return Reacting([=](Reaction& reaction) { reaction.throws = on; });
}

Action ParseExpect(Arguments& arguments) {
    const Pattern pattern(arguments.TakeUntil("within"));
    const milliseconds limit(arguments.TakeMilliseconds());
    return [=](Session& session) {
        Inbox& inbox = session.Received();
        return inbox.TakeUnlessOpposite(pattern, limit)
                   ? Held(true, "")
                   : Held(false, Missed(pattern, limit, inbox));
    };
}

Action ParseExpectNone(Arguments& arguments) {
    const Pattern pattern(arguments.TakeUntil("for"));
    const milliseconds span(arguments.TakeMilliseconds());
    return [=](Session& session) {
        const auto unwanted = session.Received().Take(pattern, span);
        if (unwanted) {
            return Held(false, "this came: " + ToText(*unwanted));
        }
        // No such notification came. If the wait was cut short, that proves nothing.
        return Held(!session.Received().Interrupted(), "interrupted");
    };
}

Action ParseExpectResult(Arguments& arguments) {
    const std::int64_t wanted = arguments.TakeInt64("number");
    return [=](Session& session) {
        const auto& number = session.Last().number;
        return Held(number == wanted,
                    "it gave " + (number ? std::to_string(*number) : "no number"));
    };
}

Action ParseExpectResultText(Arguments& arguments) {
    const std::string wanted = arguments.TakeText("text");
    return [=](Session& session) {
        const auto& text = session.Last().text;
        return Held(text == wanted, "it gave " + (text ? Quote(*text, kMostShown) : "no text"));
    };
}

Action ParseForget(Arguments&) {
    return [](Session& session) {
        session.Received().Clear();
        return Outcome();
    };
}

Action ParseSleep(Arguments& arguments) {
    const milliseconds span(arguments.TakeMilliseconds());
    return [=](Session& session) {
        session.Received().Pause(span);
        return Outcome();
    };
}

Action ParseEcho(Arguments& arguments) {
    std::string text;
    while (!arguments.Empty()) {
        text += (text.empty() ? "" : " ") + arguments.TakeText("text");
    }
    return Saying(text);
}

Action ParseHelp(Arguments& arguments) {
    const std::string text =
        arguments.Empty() ? CommandOverview() : CommandHelp(arguments.TakeText("command"));
    return Saying(text);
}

Action ParseQuit(Arguments& arguments) {
    const std::int32_t exitCode = arguments.Empty() ? 0 : arguments.TakeInt32("code");
    return [=](Session& session) {
        session.Quit(exitCode);
        return Outcome();
    };
}

}  // namespace PlenxHost
