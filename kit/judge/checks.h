// The bodies of the checks, by subject. The table that names them is in checks.cpp.

#ifndef PLENXKIT_JUDGE_CHECKS_H
#define PLENXKIT_JUDGE_CHECKS_H

#include "judge/check.h"
#include "judge/forms.h"

namespace PlenxJudge {

namespace LifeChecks {
Outcome ReportsRunning(Trial& trial);
Outcome StatesAHint(Trial& trial);
Outcome ServesBeforeItRuns(Trial& trial);
Outcome AcceptsTheStop(Trial& trial);
Outcome MakesItsFolder(Trial& trial);
Outcome RefusesAStartByHand(Trial& trial);
Outcome ObeysTheDigit(Trial& trial);
Outcome Stops(Trial& trial);
Outcome StopsDuringRequests(Trial& trial);
Outcome StopsWithoutManager(Trial& trial);
Outcome EndsItsProcess(Trial& trial);
Outcome LeavesItsFolder(Trial& trial);
Outcome StartsAgain(Trial& trial);
}  // namespace LifeChecks

namespace ReplyChecks {
Outcome Replies(Trial& trial);
Outcome RepliesExactly(Trial& trial);
Outcome StatesTheSizeItSends(Trial& trial);
Outcome UsesCodesOfItsOwn(Trial& trial);
Outcome ReturnsZero(Trial& trial);
}  // namespace ReplyChecks

namespace RequestChecks {
/// The usual requests of this id are answered with 0.
template <std::int32_t id>
Outcome TakesTheUsual(Trial& trial);
Outcome TakesRisingPings(Trial& trial);
Outcome TakesAnySetting(Trial& trial);
Outcome TakesTheSameGroupAgain(Trial& trial);
Outcome TakesAnUnknownGroup(Trial& trial);
Outcome TakesLargeData(Trial& trial);
Outcome TakesAnyFlag(Trial& trial);
Outcome TakesAnyTrigger(Trial& trial);
Outcome TakesAnyLength(Trial& trial);
template <Text text>
Outcome TakesText(Trial& trial);
}  // namespace RequestChecks

namespace BrokenChecks {
template <Breakage breakage>
Outcome Survives(Trial& trial);
template <Breakage breakage>
Outcome Refuses(Trial& trial);
Outcome GoesOnSending(Trial& trial);
Outcome RaisesNothing(Trial& trial);
}  // namespace BrokenChecks

namespace ServingChecks {
Outcome ComesBack(Trial& trial);
Outcome AnswersSoon(Trial& trial);
Outcome ServesTwenty(Trial& trial);
Outcome SurvivesAVanishedCaller(Trial& trial);
Outcome TakesAnyOrder(Trial& trial);
Outcome GoesOn(Trial& trial);
Outcome KeepsItsHandles(Trial& trial);
Outcome KeepsItsMemory(Trial& trial);
}  // namespace ServingChecks

namespace NotificationChecks {
Outcome SendsKnownIds(Trial& trial);
Outcome SendsExactMessages(Trial& trial);
Outcome NamesGroupsWithADigit(Trial& trial);
Outcome NamesGroupsThatExist(Trial& trial);
Outcome UsesKindsOfItsOwn(Trial& trial);
Outcome StatesTheLengthOfItsText(Trial& trial);
Outcome EndsThePath(Trial& trial);
Outcome NamesADrive(Trial& trial);
Outcome SendsFromAnotherThread(Trial& trial);
Outcome SendsOneAtATime(Trial& trial);
Outcome TriesAgain(Trial& trial);
Outcome GoesOnAfterAFailedCall(Trial& trial);
Outcome GoesOnAfterARefusal(Trial& trial);
Outcome SurvivesAHollowReply(Trial& trial);
}  // namespace NotificationChecks

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_CHECKS_H
