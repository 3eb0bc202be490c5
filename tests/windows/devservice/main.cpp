// Runs the tests, or one of the clients as which the program starts itself.

#include <gtest/gtest.h>

#include "devservice/service_client.h"

int main(int argc, char** argv) {
    if (const auto code = PlenxTest::RunCaller(argc, argv)) {
        return *code;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
