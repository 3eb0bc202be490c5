#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--wait-to-be-ended") == 0) {
        Sleep(60000);
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
