// A stand-in of the library's endpoint "Manager": keeps what comes in and answers as it is told.
// One for the process, as its listener cannot be taken back; it serves from the first Show on.

#ifndef PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H
#define PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H

#include <cstdint>
#include <string>
#include <vector>

namespace PlenxTest {

namespace FakeManager {

/// True once Show has been called in this process.
bool WasEverShown();
/// Serves, honestly, with nothing kept.
void Show();
/// Calls fail from now on, as before the library has registered its interface.
void Hide();

/// The int32 of the replies.
void Answer(std::int32_t code);
/// Calls do not come back until Show or the time is over.
void Block(unsigned milliseconds);

/// What has come in, one rendered line each.
std::vector<std::string> Received();
/// Waits up to 5 s until that many calls have come in.
std::vector<std::string> Await(std::size_t count);

}  // namespace FakeManager

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H
