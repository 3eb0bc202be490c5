// The module's life: a test process never ends under the product's feet.

#include "common/process_life.h"
#include "platform/fake_platform.h"

namespace DistributedFs {

bool ProcessIsEnding() noexcept {
    return false;
}

void PinModule() noexcept {
    FakePlatform::Get().CountPin();
}

}  // namespace DistributedFs
