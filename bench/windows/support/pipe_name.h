// The named pipe of row 10.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_PIPE_NAME_H
#define PLENXBENCH_WINDOWS_SUPPORT_PIPE_NAME_H

#include <windows.h>

namespace PlenxBench {

constexpr wchar_t kPipeName[] = L"\\\\.\\pipe\\plenx-bench";
constexpr DWORD kPipeBuffer = 8192;

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_PIPE_NAME_H
