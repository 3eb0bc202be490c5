// The result codes of the library's internal operations. They pass on the code of a failing callee
// unchanged, so RPC status codes and the companion library's codes travel in the same 32 bits.

#ifndef PLENXSDK_COMMON_RESULT_CODE_H
#define PLENXSDK_COMMON_RESULT_CODE_H

#include <cstdint>

namespace DistributedFs {

enum ResultCode : std::int32_t {
    kSuccess = 0,
    kManagerNotOpened = 1,  // the Service Control Manager
    kServiceNotOpened = 2,
    kServiceNotCreated = 3,
    kStatusQueryFailed = 4,
    kServiceNotStarted = 5,  // or did not report running
    kStopRefused = 6,
    kServiceNotDeleted = 7,    // or is not stopped
    kOutOfTable = 16,          // index outside the service table, group name without '_'
    kWriteFailed = 19,         // an argument of a message could not be written
    kReadFailed = 20,          // an argument of a message could not be read
    kMessageCheckFailed = 21,  // a check of the message reader or writer
    kReplyNotAllocated = 22,
    kDriverNotReplaced = 24,
    kInvalidArgument = 26,  // an empty string or path
    kFolderNotMade = 27,
    kNotRemoved = 28,  // a folder or file was not removed, or a folder not listed
    kPathAbsent = 30,  // or not accessible
    kNoWorkingFolder = 31,
    kServiceFoldersNotMade = 32,
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_RESULT_CODE_H
