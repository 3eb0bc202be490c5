#include "soak/closing_table.h"

#include <cstdio>

namespace PlenxSoak {
namespace {

using Count = unsigned long long;

void PrintFigure(const char* name, std::uint64_t Sample::*figure, const Sample& first,
                 const Sample& middle, const Sample& last, std::uint64_t tolerance) {
    std::printf("%-16s %14llu %14llu %14llu   +%llu\n", name, static_cast<Count>(first.*figure),
                static_cast<Count>(middle.*figure), static_cast<Count>(last.*figure),
                static_cast<Count>(tolerance));
}

void PrintCounts(const char* title, const char* section, const Tally& tally) {
    std::printf("\n%s: %llu\n", title, static_cast<Count>(tally.Total(section)));
    for (const auto& [name, count] : tally.Of(section)) {
        std::printf("  %-42s %10llu\n", name.c_str(), static_cast<Count>(count));
    }
}

}  // namespace

void PrintClosingTable(const Sample& first, const std::vector<Sample>& samples,
                       const Tally& tally) {
    const Sample middle = AfterWarmUp(samples);
    const Sample last = AtTheEnd(samples);
    std::printf("\n%zu samples, each at rest    start  after warm-up        the end   allowed\n",
                samples.size());
    PrintFigure("private bytes", &Sample::privateBytes, first, middle, last,
                kPrivateBytesTolerance);
    PrintFigure("heap bytes", &Sample::heapBytes, first, middle, last, kHeapBytesTolerance);
    PrintFigure("handles", &Sample::handles, first, middle, last, kHandlesTolerance);
    PrintFigure("threads", &Sample::threads, first, middle, last, kThreadsTolerance);
    PrintCounts("calls made", "calls", tally);
    PrintCounts("calls by what they returned", "returns", tally);
    PrintCounts("GetOfficeDir by its code", "office codes", tally);
    PrintCounts("outcomes by kind, service and value", "outcomes", tally);
    PrintCounts("notifications from the services", "notifications", tally);
    PrintCounts("observers that came and left", "guests", tally);
    PrintCounts("troubles", "troubles", tally);
    PrintCounts("services whose end Wine had to be told of", "mended", tally);
    std::printf("\n");
}

}  // namespace PlenxSoak
