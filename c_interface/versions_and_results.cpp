// These exports answer questions: which version the DLL has, what a result means, and what went
// wrong.

#include <cstddef>
#include <cstdint>

#include "arguments.h"
#include "own_process.h"
#include "plenxsdk/plenx.h"
#include "result.h"

using namespace PlenxC;

uint32_t PLENX_CALL plenx_abi(void) {
    return PLENX_ABI;
}

plenx_result PLENX_CALL plenx_open(uint32_t header_abi) {
    return Guarded(__func__, [&] {
        if (header_abi > PLENX_ABI) {
            throw Refusal{PLENX_E_ABI, "plenx.h",
                          "of the host is newer than plenxsdk_c.dll; ship the DLLs of the package "
                          "that the header is from"};
        }
        return PLENX_OK;
    });
}

// A failure of this function itself is not remembered, because it would replace the one that the
// caller asks for.
plenx_result PLENX_CALL plenx_last_error(char* text, size_t capacity, size_t* length) {
    if (ProcessIsEnding()) {
        return PLENX_E_ENDING;
    }
    if (text == nullptr && capacity != 0) {
        return PLENX_E_ARGUMENT;
    }
    return FitsInto(text, capacity, length, RememberedError()) ? PLENX_OK : PLENX_E_BUFFER;
}

const char* PLENX_CALL plenx_result_text(plenx_result result) {
    switch (result) {
    case PLENX_OK:
        return "The call was taken.";
    case PLENX_INVALID_PARAMETER:
        return "A text that must not be empty is empty.";
    case PLENX_E_ARGUMENT:
        return "An argument cannot be used.";
    case PLENX_E_BUFFER:
        return "The buffer is too short.";
    case PLENX_E_MEMORY:
        return "There is not enough memory.";
    case PLENX_E_ABI:
        return "The host's header is newer than plenxsdk_c.dll.";
    case PLENX_E_HANDLE:
        return "The handle was closed, was never opened, or is of the other kind.";
    case PLENX_E_CANCELLED:
        return "The queue was cancelled.";
    case PLENX_E_DEADLOCK:
        return "The call cannot be made inside a function of an observer.";
    case PLENX_E_ENDING:
        return "The process is ending.";
    case PLENX_E_FAILED:
        return "The library failed.";
    default:
        return "This number is not a result of this library.";
    }
}
