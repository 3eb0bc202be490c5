// A benchmark program measures and writes samples: a JSON list of
//
//     {"row": "9 wake-up", "world": "wine", "contender": "ours", "unit": "ns",
//      "samples": [...], "allocations": null}
//
// with one sample for each repetition. The contenders take turns within a repetition, so that
// whatever else the machine does falls on all of them.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_SAMPLES_H
#define PLENXBENCH_WINDOWS_SUPPORT_SAMPLES_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace PlenxBench {

struct Options {
    std::string json;  // the file to be written
    bool quick = false;
    std::size_t repetitions = 0;  // from the command line; otherwise quick decides it
};

/// Ends the program when the command line is wrong.
Options ReadOptions(int argc, char** argv, const std::string& description);

struct Series {
    std::string row;
    std::string contender;
    std::string unit;
    std::vector<double> samples;
};

struct Contender {
    std::string name;
    std::function<double()> measure;  // one value, in the row's unit
};

/// Takes one sample of each contender for each repetition: the typical one of `values` values. The
/// contenders take turns value by value, in an order that changes.
std::vector<Series> Measure(const std::string& row, const std::string& unit,
                            const std::vector<Contender>& contenders, std::size_t repetitions,
                            std::size_t values);

/// Returns the mean of the middle half. It is as steady as a median, and finer than the clock's
/// ticks.
double Typical(std::vector<double> values);

/// Prints a line for each series and writes the file. @return the exit code for main.
int Finish(const Options& options, const std::vector<Series>& all);

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_SAMPLES_H
