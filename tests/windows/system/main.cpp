// Runs the tests, or one of the processes as which they start this program.

#include <gtest/gtest.h>

#include "system/endpoint_holder.h"
#include "system/other_host.h"
#include "system/own_process.h"

int main(int argc, char** argv) {
    if (PlenxTest::RunAsEndpointHolder(argc, argv) || PlenxTest::RunAsOtherHost(argc, argv)) {
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return PlenxTest::RunAllTests();
}
