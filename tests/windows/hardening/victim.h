// Code with a defect on purpose, built as the shipped binaries are.

#ifndef PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H
#define PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H

namespace PlenxTest {

/// --overwrite-frame, --copy-too-much or --copy-what-fits. @return 0 when nobody stopped it.
int RunVictim(const char* mode);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HARDENING_VICTIM_H
