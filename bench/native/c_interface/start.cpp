// Row 15: plenx_start beside the same call of the class.

#include <string>

#include "harness/busy_library.h"
#include "plenxsdk/plenx.h"
#include "queue/start_work.h"

namespace bench {
namespace {

// Both receive a pointer and a length for each text, which is what a caller in another language
// has.
class Ours : public BusyLibrary {
public:
    static int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return plenx_start(svcType, first.data(), first.size(), second.data(), second.size());
    }
};

class ClassOfTexts : public BusyLibrary {
public:
    static int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return Manager().Start(static_cast<DistributedFs::ServiceType>(svcType),
                               std::string(first.data(), first.size()),
                               std::string(second.data(), second.size()));
    }
};

template <class Contender>
int Register(const std::string& contender) {
    benchmark::RegisterBenchmark(("15 plenx_start/" + contender).c_str(), StartWhileBusy<Contender>)
        ->Iterations(kEnqueued);
    return 0;
}

[[maybe_unused]] const int kOurs = Register<Ours>("ours");
[[maybe_unused]] const int kTheClass = Register<ClassOfTexts>("the class");

}  // namespace
}  // namespace bench
