#include "hostile/footprint.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <iostream>
#include <string>

#include "support/process_size.h"
#include "support/system_habits.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

constexpr DWORD kRestMilliseconds = 20000;
constexpr std::size_t kMoreHandles = 8;
constexpr std::size_t kMoreBytes = std::size_t{4} * 1024 * 1024;

std::size_t Handles() {
    return PlenxSupport::HandlesOf(GetCurrentProcessId());
}

}  // namespace

Footprint MeasureFootprint() {
    return {PlenxSupport::PrivateBytes(), Handles()};
}

void ExpectNothingMore(const Footprint& before) {
    const std::size_t mostHandles = before.handles + kMoreHandles;
    const std::size_t mostBytes = before.privateBytes + kMoreBytes;
    WaitFor([&] { return Handles() <= mostHandles && PlenxSupport::PrivateBytes() <= mostBytes; },
            kRestMilliseconds);
    const Footprint after = MeasureFootprint();
    std::cout << "before: " << before.privateBytes << " bytes, " << before.handles
              << " handles; after: " << after.privateBytes << " bytes, " << after.handles
              << " handles\n";
    EXPECT_NE(after.handles, 0u) << "the system does not report the handles";
    EXPECT_NE(after.privateBytes, 0u) << "the system does not report the memory";
    const bool flat = after.handles <= mostHandles && after.privateBytes <= mostBytes;
    EXPECT_TRUE(Shows(Habits::kFootprintOfAStorm,
                      flat ? "nothing"
                           : "from " + std::to_string(before.privateBytes) + " bytes and " +
                                 std::to_string(before.handles) + " handles to " +
                                 std::to_string(after.privateBytes) + " and " +
                                 std::to_string(after.handles)));
}

}  // namespace PlenxTest
