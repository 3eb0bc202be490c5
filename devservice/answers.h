// Reads a request and makes the service's answer to it. This part is portable, because it does not
// need the service's process.

#ifndef PLENXSERVICE_ANSWERS_H
#define PLENXSERVICE_ANSWERS_H

#include <cstdint>
#include <optional>

#include "values.h"
#include "wire/message.h"

namespace PlenxService {

/// The service's own codes in the int32 of a reply.
enum AnswerCode : std::int32_t {
    kTaken = 0,
    kBrokenMessage = 1001,
    kUnknownRequest = 1002,
};

struct Answer {
    long result = 0;                        // the result of the procedure
    long statedSize = 0;                    // may be wrong on purpose
    std::optional<PlenxWire::Bytes> reply;  // a null pointer when empty
    unsigned long fault = 0;                // raised instead of any answer
};

/// message may be null when size is 0 or negative.
PlenxWire::Decoded DecodeRequest(std::int32_t request, const std::uint8_t* message,
                                 std::int32_t size);

/// Returns the code of an honest answer.
std::int32_t HonestCode(std::int32_t request, const PlenxWire::Decoded& decoded);

/// Returns the answer with this code, changed as [[on]] says.
Answer AnswerWith(std::int32_t code, const Values& told);

}  // namespace PlenxService

#endif  // PLENXSERVICE_ANSWERS_H
