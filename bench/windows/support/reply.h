// The reply that every server of the benchmark gives: the int32 0, as a message of 24 bytes.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_REPLY_H
#define PLENXBENCH_WINDOWS_SUPPORT_REPLY_H

namespace PlenxBench {

constexpr unsigned char kReply[24] = {24, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 20, 0, 0, 0, 4};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_REPLY_H
