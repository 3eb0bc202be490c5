// What the program sends to "Manager", and how it copes with the answers.

#include <algorithm>
#include <functional>
#include <set>
#include <thread>

#include "judge/checks.h"
#include "judge/experiments.h"
#include "wire/inspect.h"

namespace PlenxJudge {
namespace {

using PlenxWire::Arguments;
using std::chrono::milliseconds;

constexpr milliseconds kUntilItCounts(3000);
constexpr milliseconds kWithoutManager(600);
constexpr milliseconds kHold(1000);
constexpr milliseconds kMuchLater(700);
constexpr milliseconds kQuiet(300);
constexpr milliseconds kLongest(5000);
constexpr std::int32_t kLeastOwnKind = 100;
constexpr std::int32_t kMostFlushType = 2;
const char* const kNone = "the program sent no exact notification of this kind";
const char* const kSendsNone = "the program sends no notification after CreateGroup";

bool IsNotification(std::int32_t id) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(id);
    return shape && shape->direction == PlenxWire::Direction::kNotification;
}

// Empty unless the message is exact.
Arguments ArgumentsOf(const Notification& notification) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(notification.id);
    return shape ? PlenxWire::DecodeAs(*shape, notification.message.data(),
                                       notification.message.size())
                       .arguments
                 : Arguments();
}

// The fault of one exact notification, if it has one: what was expected and what came.
using Judgement = std::function<std::optional<Fault>(const Arguments& arguments)>;

Outcome EachExactOne(Trial& trial, const std::set<std::int32_t>& ids, const Judgement& judge) {
    std::vector<Fault> faults;
    bool some = false;
    for (const Notification& notification : NotificationsOfALife(trial)) {
        const Arguments arguments = ArgumentsOf(notification);
        if (ids.count(notification.id) == 0 || arguments.empty()) {
            continue;
        }
        some = true;
        if (std::optional<Fault> fault = judge(arguments)) {
            fault->message = Shown(notification.id, notification.message);
            faults.push_back(std::move(*fault));
        }
    }
    return some ? Outcome::Of(std::move(faults)) : Outcome::NotJudged(kNone);
}

const std::set<std::int32_t> kOfAGroup = {PlenxWire::kConnectNotify, PlenxWire::kDisconnectNotify,
                                          PlenxWire::kReconnectNotify, PlenxWire::kLinkTypeQuery,
                                          PlenxWire::kStatusNotify};

bool EndsInANumber(const std::string& group) {
    const std::size_t line = group.rfind('_');
    if (line == std::string::npos || line + 1 == group.size()) {
        return false;
    }
    const std::string number = group.substr(line + 1);
    return number.size() <= 10 &&
           std::all_of(number.begin(), number.end(),
                       [](char letter) { return letter >= '0' && letter <= '9'; }) &&
           std::stoull(number) <= 2147483647U;
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// Makes "Manager" answer in this manner while the object lives.
class InManner {
public:
    InManner(Inbox& manager, Manner manner) : manager_(manager) { manager_.Behave(manner); }
    ~InManner() { manager_.Behave(Manner::kHonest); }
    InManner(const InManner&) = delete;
    InManner& operator=(const InManner&) = delete;

private:
    Inbox& manager_;
};

// One notification is answered in this manner. @return whether the program sends another one later.
bool SendsAnotherAfter(Trial& trial, Manner manner) {
    Inbox& manager = trial.Subject().Manager();
    manager.WaitForQuiet(kQuiet, kLongest);
    {
        const InManner bad(manager, manner);
        const std::size_t before = manager.Count();
        CauseANotification(trial);
        manager.WaitForMoreThan(before, kUntilItCounts);
        manager.WaitForQuiet(kQuiet, kLongest);
    }
    const std::size_t before = manager.Count();
    CauseANotification(trial);
    return manager.WaitForMoreThan(before, kUntilItCounts);
}

Outcome JudgeGoingOn(Trial& trial, Manner manner, const std::string& came) {
    if (!SendsAfterCreateGroup(trial)) {
        return Outcome::NotJudged(kSendsNone);
    }
    if (SendsAnotherAfter(trial, manner)) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"a notification after the next CreateGroup", came}});
}

}  // namespace

Outcome NotificationChecks::SendsKnownIds(Trial& trial) {
    NotificationsOfALife(trial);
    std::vector<Fault> faults;
    const std::vector<Notification> all = trial.Subject().Manager().Since(0);
    for (const Notification& notification : all) {
        if (!IsNotification(notification.id)) {
            faults.push_back({"an id from 9 to 18", "the id " + std::to_string(notification.id),
                              Shown(notification.id, notification.message)});
        }
    }
    return all.empty() ? Outcome::NotJudged("the program sent no notification")
                       : Outcome::Of(std::move(faults));
}

Outcome NotificationChecks::SendsExactMessages(Trial& trial) {
    NotificationsOfALife(trial);
    std::vector<Fault> faults;
    bool some = false;
    for (const Notification& notification : trial.Subject().Manager().Since(0)) {
        if (!IsNotification(notification.id)) {
            continue;
        }
        some = true;
        const PlenxWire::MessageShape& shape = *PlenxWire::FindMessage(notification.id);
        const PlenxWire::Layout layout =
            PlenxWire::InspectAs(shape, notification.message.data(), notification.message.size());
        if (!layout.problems.empty()) {
            faults.push_back({std::string("an exact ") + shape.name, layout.problems.front().text,
                              Shown(notification.id, notification.message)});
        }
    }
    return some ? Outcome::Of(std::move(faults))
                : Outcome::NotJudged("the program sent no notification");
}

Outcome NotificationChecks::NamesGroupsWithADigit(Trial& trial) {
    return EachExactOne(trial, kOfAGroup, [](const Arguments& arguments) -> std::optional<Fault> {
        const std::string& group = std::get<std::string>(arguments[0]);
        if (EndsInANumber(group)) {
            return std::nullopt;
        }
        return Fault{"a group name that ends in \"_\" and a number", Quoted(group)};
    });
}

Outcome NotificationChecks::NamesGroupsThatExist(Trial& trial) {
    NotificationsOfALife(trial);
    const std::set<std::string>& known = trial.Groups();
    return EachExactOne(trial, kOfAGroup, [&](const Arguments& arguments) -> std::optional<Fault> {
        const std::string& group = std::get<std::string>(arguments[0]);
        if (known.count(group) != 0) {
            return std::nullopt;
        }
        return Fault{"a group name exactly as CreateGroup brought it, such as " +
                         Quoted(GroupOf(trial.Role())),
                     Quoted(group)};
    });
}

Outcome NotificationChecks::UsesKindsOfItsOwn(Trial& trial) {
    return EachExactOne(trial, {PlenxWire::kStatusNotify},
                        [](const Arguments& arguments) -> std::optional<Fault> {
                            const std::int32_t kind = std::get<std::int32_t>(arguments[1]);
                            if (kind >= kLeastOwnKind) {
                                return std::nullopt;
                            }
                            return Fault{"a kind from 100 on", std::to_string(kind)};
                        });
}

Outcome NotificationChecks::StatesTheLengthOfItsText(Trial& trial) {
    return EachExactOne(
        trial, {PlenxWire::kSendLocalMessage},
        [](const Arguments& arguments) -> std::optional<Fault> {
            const std::int64_t stated = std::get<std::int32_t>(arguments[1]);
            const auto length =
                static_cast<std::int64_t>(std::get<std::string>(arguments[2]).size());
            if (stated == length) {
                return std::nullopt;
            }
            return Fault{"msgLen " + std::to_string(length), std::to_string(stated)};
        });
}

Outcome NotificationChecks::EndsThePath(Trial& trial) {
    return EachExactOne(trial, {PlenxWire::kUpdateWindowsExplore},
                        [](const Arguments& arguments) -> std::optional<Fault> {
                            const auto& path = std::get<PlenxWire::Bytes>(arguments[1]);
                            const std::size_t size = path.size();
                            if (size % 2 != 0) {
                                return Fault{"a path of an even size",
                                             std::to_string(size) + " bytes"};
                            }
                            if (path[size - 1] != 0 || path[size - 2] != 0) {
                                return Fault{"two bytes of 0 at the end of the path", "none"};
                            }
                            return std::nullopt;
                        });
}

Outcome NotificationChecks::NamesADrive(Trial& trial) {
    return EachExactOne(trial, {PlenxWire::kExploreFlushNotify},
                        [](const Arguments& arguments) -> std::optional<Fault> {
                            const std::string& disk = std::get<std::string>(arguments[0]);
                            const std::int32_t type = std::get<std::int32_t>(arguments[1]);
                            if (disk.empty() || disk[0] < 'A' || disk[0] > 'Z') {
                                return Fault{"a disk that begins with a letter from A to Z",
                                             Quoted(disk)};
                            }
                            if (type < 0 || type > kMostFlushType) {
                                return Fault{"expFlushType 0, 1 or 2", std::to_string(type)};
                            }
                            return std::nullopt;
                        });
}

Outcome NotificationChecks::SendsFromAnotherThread(Trial& trial) {
    if (!SendsAfterCreateGroup(trial)) {
        return Outcome::NotJudged(kSendsNone);
    }
    Inbox& manager = trial.Subject().Manager();
    const milliseconds alone = CauseANotification(trial).answer.took;
    manager.WaitForQuiet(kQuiet, kLongest);
    manager.Behave(Manner::kHeld);
    std::thread release([&] {
        std::this_thread::sleep_for(kHold);
        manager.Behave(Manner::kHonest);
    });
    const Exchange held = CauseANotification(trial);
    release.join();
    manager.WaitForQuiet(kQuiet, kLongest);
    if (held.answer.way == Answer::Way::kReturned && held.answer.took < alone + kMuchLater) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"an answer to CreateGroup while \"Manager\" still holds a notification",
          "an answer only after the notification: " + std::to_string(held.answer.took.count()) +
              " ms instead of " + std::to_string(alone.count()) + " ms"}});
}

Outcome NotificationChecks::SendsOneAtATime(Trial& trial) {
    Inbox& manager = trial.Subject().Manager();
    manager.WaitForQuiet(kQuiet, kLongest);
    const std::size_t before = manager.Count();
    {
        const InManner slow(manager, Manner::kSlow);
        trial.SendUntilLost(UsualRequests(trial.Role()));
        manager.WaitForQuiet(kQuiet, kLongest);
    }
    const std::vector<Notification> all = manager.Since(before);
    if (all.size() < 2) {
        return Outcome::NotJudged("the program sends too few notifications");
    }
    const auto overlapped =
        std::find_if(all.begin(), all.end(),
                     [](const Notification& notification) { return notification.overlapped; });
    if (overlapped == all.end()) {
        return Outcome::Of({});
    }
    return Outcome::Of(
        {{"one call of \"Manager\" after the other, on one binding",
          "a call while another one was under way", Shown(overlapped->id, overlapped->message)}});
}

Outcome NotificationChecks::TriesAgain(Trial& trial) {
    if (!SendsAfterCreateGroup(trial)) {
        return Outcome::NotJudged(kSendsNone);
    }
    Program& program = trial.Subject();
    program.Manager().WaitForQuiet(kQuiet, kLongest);
    program.HideManager(true);
    CauseANotification(trial);
    std::this_thread::sleep_for(kWithoutManager);
    const std::size_t before = program.Manager().Count();
    program.HideManager(false);
    if (program.Manager().WaitForMoreThan(before, kUntilItCounts)) {
        return Outcome::Of({});
    }
    return Outcome::Of({{"the notification of CreateGroup, once \"Manager\" is there",
                         "none within " + std::to_string(kUntilItCounts.count()) +
                             " ms; the calls before had raised 1717, for " +
                             std::to_string(kWithoutManager.count()) + " ms"}});
}

Outcome NotificationChecks::GoesOnAfterAFailedCall(Trial& trial) {
    return JudgeGoingOn(trial, Manner::kRaising,
                        "none after a call of \"Manager\" that raised an exception");
}

Outcome NotificationChecks::GoesOnAfterARefusal(Trial& trial) {
    return JudgeGoingOn(trial, Manner::kRefusing,
                        "none after a call that \"Manager\" answered with 20 and no reply");
}

Outcome NotificationChecks::SurvivesAHollowReply(Trial& trial) {
    return JudgeGoingOn(trial, Manner::kHollow,
                        "none after a call that got respSize 24 and a null resp");
}

}  // namespace PlenxJudge
