// Prints the results of a run at its end.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_CLOSING_TABLE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_CLOSING_TABLE_H

#include <vector>

#include "soak/judgement.h"
#include "soak/tally.h"

namespace PlenxSoak {

void PrintClosingTable(const Sample& first, const std::vector<Sample>& samples, const Tally& tally);

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_CLOSING_TABLE_H
