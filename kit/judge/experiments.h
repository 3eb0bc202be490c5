// Experiments that several checks judge, each with its own question.

#ifndef PLENXKIT_JUDGE_EXPERIMENTS_H
#define PLENXKIT_JUDGE_EXPERIMENTS_H

#include <vector>

#include "judge/trial.h"

namespace PlenxJudge {

/// Each request once in good form, as a host sends them.
const Exchanges& Usual(Trial& trial);

/// Requests in one of the broken forms.
const Exchanges& Broken(Trial& trial, Breakage breakage);
/// All of them.
std::vector<const Exchanges*> AllBroken(Trial& trial);

/// The notifications of a life with the usual requests and some more groups.
const std::vector<Notification>& NotificationsOfALife(Trial& trial);
/// Whether the program sends a notification after CreateGroup, because some checks need one that
/// they can cause. The first function keeps the answer from before the first broken request, the
/// second the answer from the time when a check first asks.
bool SentBeforeBrokenRequests(Trial& trial);
bool SendsAfterCreateGroup(Trial& trial);
/// Sends CreateGroup.
Exchange CauseANotification(Trial& trial);

/// The first start of the run, and the ping that follows it at once.
const Watched& FirstStart(Trial& trial);
const Exchanges& PingAfterFirstStart(Trial& trial);
/// An ordinary stop.
const Watched& UsualStop(Trial& trial);

bool HasStarted(const Watched& watched);
bool HasStopped(const Watched& watched);
/// "stop pending, checkpoint 2, hint 2000 ms, after 2100 ms".
std::string Told(const Watched& watched);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_EXPERIMENTS_H
