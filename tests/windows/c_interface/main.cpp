// Runs the tests, or one of the hosts as which they start this program.

#include <gtest/gtest.h>

#include <string>

#include "endings/ending_hosts.h"

int main(int argc, char** argv) {
    if (argc == 5 && std::string(argv[1]) == "--host") {
        const PlenxTest::HostMode* const mode = PlenxTest::FindHostMode(argv[2]);
        return mode != nullptr ? mode->run(argv[3], argv[4]) : 98;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
