#include "soak/judgement.h"

#include <algorithm>

namespace PlenxSoak {
namespace {

using Field = std::uint64_t Sample::*;

struct Limit {
    const char* name;
    Field field;
    std::uint64_t tolerance;
};

constexpr Limit kLimits[] = {
    {"private bytes", &Sample::privateBytes, kPrivateBytesTolerance},
    {"heap bytes", &Sample::heapBytes, kHeapBytesTolerance},
    {"handles", &Sample::handles, kHandlesTolerance},
    {"threads", &Sample::threads, kThreadsTolerance},
    {"service handles", &Sample::serviceHandles, kServiceHandlesTolerance},
};

// Takes the lower of two middle values, so that the figure is one that was measured.
std::uint64_t Median(std::vector<std::uint64_t> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The medians cover these fields. Some have limits, and the others are only shown.
constexpr Field kFields[] = {&Sample::privateBytes, &Sample::heapBytes,      &Sample::handles,
                             &Sample::threads,      &Sample::serviceHandles, &Sample::wineRecords,
                             &Sample::measuredBytes};

Sample Medians(const std::vector<Sample>& samples, std::size_t begin, std::size_t end) {
    Sample medians;
    for (const Field field : kFields) {
        std::vector<std::uint64_t> values;
        for (std::size_t i = begin; i != end; ++i) {
            values.push_back(samples[i].*field);
        }
        medians.*field = values.empty() ? 0 : Median(std::move(values));
    }
    return medians;
}

}  // namespace

Sample AfterWarmUp(const std::vector<Sample>& samples) {
    return Medians(samples, samples.size() / 4, samples.size() / 2);
}

Sample AtTheEnd(const std::vector<Sample>& samples) {
    return Medians(samples, samples.size() - samples.size() / 4, samples.size());
}

std::vector<std::string> Judge(const std::vector<Sample>& samples) {
    if (samples.size() < kFewestSamples) {
        return {"only " + std::to_string(samples.size()) + " samples"};
    }
    const Sample before = AfterWarmUp(samples);
    const Sample after = AtTheEnd(samples);
    std::vector<std::string> grown;
    for (const Limit& limit : kLimits) {
        const std::uint64_t from = before.*limit.field;
        const std::uint64_t to = after.*limit.field;
        if (to > from + limit.tolerance) {
            grown.push_back(std::string(limit.name) + " grew from " + std::to_string(from) +
                            " to " + std::to_string(to));
        }
    }
    return grown;
}

}  // namespace PlenxSoak
