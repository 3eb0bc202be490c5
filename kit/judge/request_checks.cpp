// Requests in good form, with usual and unusual values.

#include <algorithm>
#include <limits>

#include "judge/checks.h"
#include "judge/experiments.h"

namespace PlenxJudge {
namespace {

using PlenxWire::Arguments;
using PlenxWire::Bytes;

constexpr std::int32_t kLeastInt32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMostInt32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kLeastInt64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMostInt64 = std::numeric_limits<std::int64_t>::max();

// Larger messages are told by their size.
constexpr std::size_t kMostShown = 1000;

std::string ShownIfSmall(const Request& request) {
    return request.bytes.size() <= kMostShown ? Shown(request.id, request.bytes) : std::string();
}

// Another check judges calls that hang, so they are not judged once more here.
Outcome AllAreTaken(const Exchanges& exchanges) {
    std::vector<Fault> faults;
    bool some = false;
    for (const Exchange& exchange : exchanges) {
        const Answer& answer = exchange.answer;
        if (answer.way != Answer::Way::kReturned && answer.way != Answer::Way::kRaised) {
            continue;
        }
        some = true;
        if (ResultForLibrary(answer) != 0) {
            faults.push_back({"a reply with the code 0", exchange.form.what + ": " + Told(answer),
                              ShownIfSmall(exchange.form.request)});
        }
    }
    return some ? Outcome::Of(std::move(faults)) : Outcome::NotJudged("no call came back");
}

Exchanges OfRequest(const Exchanges& all, std::int32_t id) {
    Exchanges some;
    for (const Exchange& exchange : all) {
        if (exchange.form.request.id == id) {
            some.push_back(exchange);
        }
    }
    return some;
}

Form Changed(std::int32_t id, int role, std::size_t index, const PlenxWire::Argument& value,
             const std::string& what) {
    Arguments arguments = UsualArguments(id, role);
    arguments[index] = value;
    return FormOf(id, arguments, what);
}

Forms WithEachInt32(std::int32_t id, int role, std::size_t index, const std::string& name) {
    Forms forms;
    for (const std::int32_t value : {kLeastInt32, -1, 1, 2, 256, kMostInt32}) {
        forms.push_back(
            Changed(id, role, index, value, "with " + std::to_string(value) + " as its " + name));
    }
    return forms;
}

void Append(Forms& all, const Forms& more) {
    all.insert(all.end(), more.begin(), more.end());
}

// A request that is not answered with 0 in its usual form fails a check of its own. Its other forms
// would only say the same once more.
bool IsTakenAsUsual(Trial& trial, std::int32_t id) {
    const Exchanges usual = OfRequest(Usual(trial), id);
    return std::all_of(usual.begin(), usual.end(), [](const Exchange& exchange) {
        return exchange.answer.way == Answer::Way::kReturned &&
               ResultForLibrary(exchange.answer) == 0;
    });
}

Outcome AllFormsAreTaken(Trial& trial, Forms forms) {
    forms.erase(
        std::remove_if(forms.begin(), forms.end(),
                       [&](const Form& form) { return !IsTakenAsUsual(trial, form.request.id); }),
        forms.end());
    return forms.empty() ? Outcome::NotJudged("the usual request is not answered with 0 either")
                         : AllAreTaken(trial.SendUntilLost(forms));
}

// The group of the usual requests is there while these are judged, because a program may refuse
// requests about a group that it does not know.
Outcome AllAreTakenInAGroup(Trial& trial, const Forms& forms) {
    CauseANotification(trial);
    Outcome outcome = AllFormsAreTaken(trial, forms);
    trial.Send(
        FormOf(PlenxWire::kDeleteGroup, UsualArguments(PlenxWire::kDeleteGroup, trial.Role()), ""));
    return outcome;
}

Form WithData(int role, std::size_t size) {
    Arguments arguments = UsualArguments(PlenxWire::kDeviceOnline, role);
    Bytes data(size);
    for (std::size_t i = 0; i < size; ++i) {
        data[i] = static_cast<std::uint8_t>(i);
    }
    arguments[3] = static_cast<std::int32_t>(size);
    arguments[4] = std::move(data);
    return FormOf(PlenxWire::kDeviceOnline, arguments,
                  "with " + std::to_string(size) + " bytes of data");
}

}  // namespace

template <std::int32_t id>
Outcome RequestChecks::TakesTheUsual(Trial& trial) {
    return AllAreTaken(OfRequest(Usual(trial), id));
}

template Outcome RequestChecks::TakesTheUsual<PlenxWire::kCreateGroup>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kDeleteGroup>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kDeviceOnline>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kDeviceOffline>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kNameChanged>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kRecvRemoteMessage>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kSetStringConfig>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kSetInt64Config>(Trial&);
template Outcome RequestChecks::TakesTheUsual<PlenxWire::kPingService>(Trial&);

Outcome RequestChecks::TakesRisingPings(Trial& trial) {
    Forms forms;
    for (const std::int64_t number : {std::int64_t{0}, std::int64_t{1}, std::int64_t{2},
                                      std::int64_t{25}, kMostInt64, kLeastInt64, std::int64_t{0}}) {
        forms.push_back(
            FormOf(PlenxWire::kPingService, {number}, "with the number " + std::to_string(number)));
    }
    return AllFormsAreTaken(trial, forms);
}

Outcome RequestChecks::TakesAnySetting(Trial& trial) {
    Forms forms;
    for (const std::int64_t value : {kLeastInt64, std::int64_t{-1}, kMostInt64}) {
        forms.push_back(Changed(PlenxWire::kSetInt64Config, trial.Role(), 1, value,
                                "with the value " + std::to_string(value)));
    }
    return AllFormsAreTaken(trial, forms);
}

Outcome RequestChecks::TakesTheSameGroupAgain(Trial& trial) {
    return AllAreTakenInAGroup(
        trial, {Changed(PlenxWire::kCreateGroup, trial.Role(), 2, std::string("another argument"),
                        "for the same group once more")});
}

Outcome RequestChecks::TakesAnUnknownGroup(Trial& trial) {
    const std::string unknown = "nobody_" + std::to_string(trial.Role());
    return AllFormsAreTaken(
        trial, {Changed(PlenxWire::kDeleteGroup, trial.Role(), 0, unknown, "of an unknown group")});
}

Outcome RequestChecks::TakesLargeData(Trial& trial) {
    Forms forms;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{255}, std::size_t{1} << 16,
          std::size_t{1} << 20, std::size_t{1} << 24}) {
        forms.push_back(WithData(trial.Role(), size));
    }
    return AllAreTakenInAGroup(trial, forms);
}

Outcome RequestChecks::TakesAnyFlag(Trial& trial) {
    Forms forms = WithEachInt32(PlenxWire::kDeviceOnline, trial.Role(), 2, "isRemote");
    Append(forms, WithEachInt32(PlenxWire::kDeviceOffline, trial.Role(), 2, "isRemote"));
    return AllAreTakenInAGroup(trial, forms);
}

Outcome RequestChecks::TakesAnyTrigger(Trial& trial) {
    return AllAreTakenInAGroup(
        trial, WithEachInt32(PlenxWire::kDeviceOffline, trial.Role(), 3, "trigger"));
}

Outcome RequestChecks::TakesAnyLength(Trial& trial) {
    Forms forms = WithEachInt32(PlenxWire::kRecvRemoteMessage, trial.Role(), 0, "msgType");
    Append(forms, WithEachInt32(PlenxWire::kRecvRemoteMessage, trial.Role(), 1, "msgLen"));
    return AllAreTakenInAGroup(trial, forms);
}

template <Text text>
Outcome RequestChecks::TakesText(Trial& trial) {
    return AllAreTakenInAGroup(trial, TextForms(text, trial.Role()));
}

template Outcome RequestChecks::TakesText<Text::kEmpty>(Trial&);
template Outcome RequestChecks::TakesText<Text::kLong>(Trial&);
template Outcome RequestChecks::TakesText<Text::kNotUtf8>(Trial&);
template Outcome RequestChecks::TakesText<Text::kWithNul>(Trial&);

}  // namespace PlenxJudge
