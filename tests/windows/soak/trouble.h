// Makes the services misbehave, with a new mix for each service every now and then.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_TROUBLE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_TROUBLE_H

#include <atomic>
#include <filesystem>
#include <string>

#include "soak/dice.h"
#include "soak/tally.h"

namespace PlenxSoak {

/// A table of the control file.
struct OneTrouble {
    const char* table;
    const char* keys;  // one key a line, without the service
};

/// Writes the development service's control file and the office stand-in's variable. The seed
/// determines the sequence of mixes, but not when each takes over.
class Trouble {
public:
    Trouble(std::uint64_t seed, const std::filesystem::path& installFolder, Tally& tally);

    /// Switches to the next mix. @return how long it must last, in milliseconds.
    unsigned Next();
    /// Makes all services behave.
    void Rest();
    /// From now on services also end, or raise exceptions, in the middle of a call. Do this last:
    /// under Wine the library cannot reach such a service again.
    void LetCallsBreak() { callsMayBreak_ = true; }

private:
    std::string Mix(const std::string& service);
    std::string TableOf(const std::string& service, const OneTrouble& trouble);
    void Write(const std::string& tables) const;

    Dice dice_;
    const std::filesystem::path file_;
    Tally& tally_;
    std::atomic<bool> callsMayBreak_{false};
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_TROUBLE_H
