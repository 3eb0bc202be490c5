// How the commands of plenxkit message end.

#ifndef PLENXKIT_MESSAGE_USAGE_H
#define PLENXKIT_MESSAGE_USAGE_H

#include "ending.h"

namespace PlenxMessage {

using PlenxKit::UsageError;

constexpr int kFine = PlenxKit::kAsExpected;
constexpr int kBrokenMessage = PlenxKit::kFailed;

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_USAGE_H
