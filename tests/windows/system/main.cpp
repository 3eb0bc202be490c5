// The tests, and the host processes that they start this program as.

#include <gtest/gtest.h>

#include "system/own_process.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return PlenxTest::RunAllTests();
}
