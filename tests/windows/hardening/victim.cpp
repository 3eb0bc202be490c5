#include "hardening/victim.h"

#include <cstddef>
#include <cstring>
#include <string>

#ifdef _MSC_VER
#define NOT_INLINE __declspec(noinline)
#else
#define NOT_INLINE __attribute__((noinline))
#endif

namespace PlenxTest {
namespace {

constexpr std::size_t kBufferSize = 16;

volatile char sink;

// Writes byte by byte, so that only the frame's guard can notice.
NOT_INLINE void OverwriteFrame(std::size_t count) {
    char buffer[kBufferSize];
    volatile char* const target = buffer;
    for (std::size_t i = 0; i != count; ++i) {
        target[i] = 'x';
    }
    sink = target[0];
}

// Copies more than the buffer holds. The buffer is static, so no frame is overwritten.
NOT_INLINE void Copy(const char* from, std::size_t count) {
    static char buffer[kBufferSize];
    std::memcpy(buffer, from, count);
    sink = buffer[0];
}

}  // namespace

int RunVictim(const char* mode) {
    const std::string text(2 * kBufferSize, 'x');
    if (std::strcmp(mode, "--overwrite-frame") == 0) {
        OverwriteFrame(text.size());
    } else {
        const bool tooMuch = std::strcmp(mode, "--copy-too-much") == 0;
        Copy(text.data(), tooMuch ? kBufferSize + 1 : kBufferSize);
    }
    return 0;
}

}  // namespace PlenxTest
