// Runs the tests, or one of the processes as which they start this program.

#include <gtest/gtest.h>

#include <windows.h>

#include "hostile/caller.h"
#include "hostile/hostile_service.h"
#include "hostile/scale.h"
#include "system/own_process.h"

int main(int argc, char** argv) {
    if (const auto code = PlenxTest::RunAsCaller(argc, argv)) {
        return *code;
    }
    if (const auto code = PlenxTest::RunAsHostileService(argc, argv)) {
        return *code;
    }
    // The log of a storm is one file: it must not be rotated away before a test has read it.
    SetEnvironmentVariableW(L"PLENX_LOG_MAX_BYTES", L"2000000000");
    testing::InitGoogleTest(&argc, argv);
    return PlenxTest::RunAllTests(60 * 1000 + 3 * PlenxTest::LongestStorm());
}
