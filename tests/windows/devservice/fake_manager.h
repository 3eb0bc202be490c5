// Stands in for the library's endpoint "Manager": it keeps the messages that come in and gives the
// requested answers. There is one for the process, because its listener cannot be removed. It
// serves from the first Show on.

#ifndef PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H
#define PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H

#include <cstdint>
#include <string>
#include <vector>

namespace PlenxTest {

namespace FakeManager {

/// Returns true once Show has been called in this process.
bool WasEverShown();
/// Serves honestly, and forgets earlier messages.
void Show();
/// Makes calls fail from now on, as before the library has registered its interface.
void Hide();

/// Sets the int32 of the replies.
void Answer(std::int32_t code);
/// Makes calls wait until Show is called or the time is over.
void Block(unsigned milliseconds);

/// Returns the messages that have come in, one rendered line each.
std::vector<std::string> Received();
/// Waits up to 5 s until that many calls have come in.
std::vector<std::string> Await(std::size_t count);

}  // namespace FakeManager

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_DEVSERVICE_FAKE_MANAGER_H
