#include <gtest/gtest.h>

#include <string>

#include "companion/late_caller.h"
#include "companion/logging_hosts.h"

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--host") {
        const PlenxTest::LoggingHost* const host = PlenxTest::FindLoggingHost(argv[2]);
        if (host == nullptr) {
            return 98;
        }
        LateOffice();  // links the DLL, which is needed for its statics
        host->run();
        return host->exitCode;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
