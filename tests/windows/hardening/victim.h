// Code with deliberate defects, built with the options of the shipped binaries.

#ifndef PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H
#define PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H

namespace PlenxTest {

/// @param mode  --overwrite-frame, --copy-too-much or --copy-what-fits.
/// @return 0 when nothing stopped it.
int RunVictim(const char* mode);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H
