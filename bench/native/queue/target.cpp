#include "queue/queue_work.h"

namespace bench {

void Target::Run(const std::string& first, const std::string& second) {
    benchmark::DoNotOptimize(first.data());
    benchmark::DoNotOptimize(second.data());
    ++runs_;
}

}  // namespace bench
