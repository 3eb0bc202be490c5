// The PC service of row 10. It replies at once, over RPC and over a named pipe.

#include <windows.h>

#include <cstring>
#include <thread>
#include <vector>

#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_interface.h"
#include "support/pipe_name.h"
#include "support/reply.h"
#include "support/serve.h"
#include "support/server_process.h"

namespace PlenxBench {
namespace {

constexpr DWORD kPipes = 4;  // a caller finds one while another is being closed

void ServePipe() {
    const HANDLE pipe = CreateNamedPipeW(kPipeName, PIPE_ACCESS_DUPLEX,
                                         PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                                         kPipes, kPipeBuffer, kPipeBuffer, 0, nullptr);
    std::vector<unsigned char> message(kPipeBuffer);
    while (ConnectNamedPipe(pipe, nullptr) || GetLastError() == ERROR_PIPE_CONNECTED) {
        DWORD size = 0;
        while (ReadFile(pipe, message.data(), kPipeBuffer, &size, nullptr)) {
            WriteFile(pipe, kReply, sizeof(kReply), &size, nullptr);
        }
        DisconnectNamedPipe(pipe);
    }
}

}  // namespace
}  // namespace PlenxBench

long PlenxHandleServiceMessage(long, long, unsigned char*, long* respSize,
                               unsigned char** resp) noexcept {
    using PlenxBench::kReply;
    *resp = static_cast<unsigned char*>(MIDL_user_allocate(sizeof(kReply)));
    std::memcpy(*resp, kReply, sizeof(kReply));
    *respSize = sizeof(kReply);
    return 0;
}

int main(int argc, char** argv) {
    using namespace PlenxBench;
    if (argc < 2 || PlenxTest::Serve(plenxServiceInterface, L"PLENXPCService") != RPC_S_OK) {
        return 1;
    }
    for (DWORD i = 0; i != kPipes; ++i) {
        std::thread(ServePipe).detach();
    }
    ServerLife(argv[argc - 1]).ServeUntilStopped();
    ExitProcess(0);  // the pipes' threads wait for ever
}
