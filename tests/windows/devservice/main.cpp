// The test program, and the clients that it starts itself as.

#include <gtest/gtest.h>

#include "devservice/service_client.h"

int main(int argc, char** argv) {
    if (const auto code = PlenxTest::RunCaller(argc, argv)) {
        return *code;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
