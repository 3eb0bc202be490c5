// Stands in for process_life.cpp: the process ends when a test says so.

#include "common/process_life.h"
#include "platform/fake_platform.h"

namespace DistributedFs {

bool ProcessIsEnding() noexcept {
    return FakePlatform::Get().ProcessEnds();
}

void PinModule() noexcept {
    FakePlatform::Get().CountPin();
}

}  // namespace DistributedFs
