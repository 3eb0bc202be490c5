#include "soak/closing_table.h"

#include <cstdio>

namespace PlenxSoak {
namespace {

using Count = unsigned long long;

struct Figures {
    const Sample& start;
    const Sample middle;
    const Sample last;
};

void PrintFigure(const char* name, std::uint64_t Sample::* figure, const Figures& figures) {
    std::printf("\n%-30s %14llu %14llu %14llu", name, static_cast<Count>(figures.start.*figure),
                static_cast<Count>(figures.middle.*figure),
                static_cast<Count>(figures.last.*figure));
}

void PrintFigure(const char* name, std::uint64_t Sample::* figure, const Figures& figures,
                 std::uint64_t tolerance) {
    PrintFigure(name, figure, figures);
    std::printf("   +%llu", static_cast<Count>(tolerance));
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
    const Figures figures = {first, AfterWarmUp(samples), AtTheEnd(samples)};
    std::printf(
        "\n%4zu samples, each at rest               start  after warm-up        the end   allowed",
        samples.size());
    PrintFigure("private bytes, as measured", &Sample::measuredBytes, figures);
    PrintFigure("Wine's records, 384 bytes each", &Sample::wineRecords, figures);
    PrintFigure("private bytes without them", &Sample::privateBytes, figures,
                kPrivateBytesTolerance);
    PrintFigure("heap bytes", &Sample::heapBytes, figures, kHeapBytesTolerance);
    PrintFigure("handles", &Sample::handles, figures, kHandlesTolerance);
    PrintFigure("threads", &Sample::threads, figures, kThreadsTolerance);
    PrintFigure("service handles", &Sample::serviceHandles, figures, kServiceHandlesTolerance);
    std::printf("\n");
    PrintCounts("calls made", "calls", tally);
    PrintCounts("calls by what they returned", "returns", tally);
    PrintCounts("GetOfficeDir by its code", "office codes", tally);
    PrintCounts("outcomes by kind, service and value", "outcomes", tally);
    PrintCounts("notifications from the services", "notifications", tally);
    PrintCounts("observers that came and left", "guests", tally);
    PrintCounts("troubles", "troubles", tally);
    PrintCounts("services whose end Wine had to be told of", "mended", tally);
    PrintCounts("listeners that Wine had left deaf", "revived", tally);
    std::printf("\n");
}

}  // namespace PlenxSoak
