// Row 8: PLENXManager::Start.

#include <string>

#include "harness/busy_library.h"
#include "queue/start_work.h"

namespace bench {
namespace {

class Ours : public BusyLibrary {
public:
    static int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return Manager().Start(static_cast<DistributedFs::ServiceType>(svcType), first, second);
    }
};

[[maybe_unused]] const int kRegistered = RegisterStart<Ours>("ours");

}  // namespace
}  // namespace bench
