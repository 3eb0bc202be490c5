// The peer's half of row 11: a bare server of the IDL compiler's stubs. Its routine only gives the
// reply.

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include <cstring>

#include "rpc/interface/rpc_memory.h"
#include "support/reply.h"
#include "support/serve.h"
#include "support/server_process.h"

extern "C" {

extern RPC_IF_HANDLE WidlServe_PlenxManager_v1_0_s_ifspec;

error_status_t WidlServe_HandleServiceMessage(long, long, unsigned char*, long* respSize,
                                              unsigned char** resp) {
    using PlenxBench::kReply;
    *resp = static_cast<unsigned char*>(MIDL_user_allocate(sizeof(kReply)));
    std::memcpy(*resp, kReply, sizeof(kReply));
    *respSize = sizeof(kReply);
    return 0;
}

}  // extern "C"

int main(int argc, char** argv) {
    using namespace PlenxBench;
    if (argc < 2 ||
        PlenxTest::Serve(WidlServe_PlenxManager_v1_0_s_ifspec, L"WidlManager") != RPC_S_OK) {
        return 1;
    }
    ServerLife(argv[argc - 1]).ServeUntilStopped();
    ExitProcess(0);
}
