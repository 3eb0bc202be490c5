#include "result.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "thread_state.h"

namespace PlenxC {
namespace {

void Append(PlenxThreadState& state, std::string_view text) noexcept {
    const std::size_t room = PLENXSDK_C_ERROR_CAPACITY - state.errorLength;
    const std::size_t length = std::min(text.size(), room);
    std::memcpy(state.error + state.errorLength, text.data(), length);
    state.errorLength += length;
}

}  // namespace

void RememberError(const char* function, std::string_view subject, std::string_view why) noexcept {
    PlenxThreadState& state = *PlenxThreadStateOfCaller();
    state.errorLength = 0;
    Append(state, function);
    Append(state, ": ");
    Append(state, subject);
    Append(state, subject.empty() ? "" : " ");
    Append(state, why);
}

std::string_view RememberedError() noexcept {
    const PlenxThreadState& state = *PlenxThreadStateOfCaller();
    return {state.error, state.errorLength};
}

}  // namespace PlenxC
