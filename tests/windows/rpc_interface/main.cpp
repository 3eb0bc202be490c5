// Runs the tests, or one of the roles in which the program starts itself again.

#include <gtest/gtest.h>

#include <string>

#include "rpc_interface/faulting_client.h"
#include "rpc_interface/peer_process.h"

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "--peer" && argc == 5) {
        return PlenxTest::RunPeer(argv[2], argv[3], argv[4]);
    }
    if (mode == "--faulting-client" && argc == 4) {
        return PlenxTest::RunFaultingClient(argv[2], argv[3]);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
