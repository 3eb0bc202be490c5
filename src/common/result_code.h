// The result codes of the library's internal operations. A failing callee's code is
// passed on unchanged, so RPC status codes and the companion library's codes travel
// in the same 32 bits.

#ifndef PLENXSDK_COMMON_RESULT_CODE_H
#define PLENXSDK_COMMON_RESULT_CODE_H

#include <cstdint>

namespace DistributedFs {

enum ResultCode : std::int32_t {
    kSuccess = 0,
    kManagerNotOpened = 1,  // Service Control Manager
    kServiceNotOpened = 2,
    kServiceNotCreated = 3,
    kStatusQueryFailed = 4,
    kServiceNotStarted = 5,  // or did not reach running
    kStopRefused = 6,
    kServiceNotDeleted = 7,    // or is not stopped
    kOutOfTable = 16,          // index outside the service table, group name without '_'
    kWriteFailed = 19,         // an argument into a message
    kReadFailed = 20,          // an argument from a message
    kMessageCheckFailed = 21,  // a check of the message reader or writer
    kReplyNotAllocated = 22,
    kDriverNotReplaced = 24,
    kInvalidArgument = 26,  // empty string or path
    kFolderNotMade = 27,
    kNotRemoved = 28,  // folder, file or listing not removed or read
    kPathAbsent = 30,  // or not accessible
    kNoWorkingFolder = 31,
    kServiceFoldersNotMade = 32,
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_RESULT_CODE_H
