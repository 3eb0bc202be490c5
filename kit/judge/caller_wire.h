// The data that travels through the pipes between the judge and the process that makes its calls.
// Both are the same program, so the bytes of plain structs will do.

#ifndef PLENXKIT_JUDGE_CALLER_WIRE_H
#define PLENXKIT_JUDGE_CALLER_WIRE_H

#include <cstdint>

namespace PlenxJudge {

/// One of these follows the count of the requests for each request. Its bytes come after it.
struct RequestHead {
    std::int32_t id = 0;
    std::uint32_t size = 0;
};

/// The process writes this just before it makes the calls.
constexpr char kCalling = 'c';

/// The bytes of the reply follow.
struct AnswerHead {
    std::uint32_t raised = 0;
    std::uint32_t exception = 0;
    std::int32_t result = 0;
    std::int32_t statedSize = 0;
    std::uint32_t hasReply = 0;
    std::uint32_t milliseconds = 0;
    std::uint32_t size = 0;
};

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_CALLER_WIRE_H
