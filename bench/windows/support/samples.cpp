#include "support/samples.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <numeric>
#include <random>

namespace PlenxBench {
namespace {

constexpr std::size_t kRepetitions = 15;
constexpr std::size_t kQuickRepetitions = 9;

}  // namespace

Options ReadOptions(int argc, char** argv, const std::string& description) {
    Options options;
    CLI::App app(description);
    app.add_option("--json", options.json, "the file to be written");
    app.add_flag("--quick", options.quick, "fewer and shorter repetitions");
    app.add_option("--repetitions", options.repetitions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::exit(app.exit(error));
    }
    if (options.repetitions == 0) {
        options.repetitions = options.quick ? kQuickRepetitions : kRepetitions;
    }
    return options;
}

double Typical(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto quarter = static_cast<std::ptrdiff_t>(values.size() / 4);
    const auto first = values.begin() + quarter;
    const auto last = values.end() - quarter;
    return std::accumulate(first, last, 0.0) / static_cast<double>(last - first);
}

std::vector<Series> Measure(const std::string& row, const std::string& unit,
                            const std::vector<Contender>& contenders, std::size_t repetitions,
                            std::size_t values) {
    std::vector<Series> all;
    std::vector<std::size_t> order(contenders.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (const Contender& contender : contenders) {
        contender.measure();  // what is done once
        all.push_back({row, contender.name, unit, {}});
    }
    std::mt19937 random(1);
    for (std::size_t repetition = 0; repetition != repetitions; ++repetition) {
        std::vector<std::vector<double>> measured(contenders.size());
        for (std::size_t value = 0; value != values; ++value) {
            std::shuffle(order.begin(), order.end(), random);
            for (const std::size_t index : order) {
                measured[index].push_back(contenders[index].measure());
            }
        }
        for (std::size_t index = 0; index != contenders.size(); ++index) {
            all[index].samples.push_back(Typical(std::move(measured[index])));
        }
    }
    return all;
}

int Finish(const Options& options, const std::vector<Series>& all) {
    nlohmann::json list = nlohmann::json::array();
    for (const Series& series : all) {
        std::vector<double> sorted = series.samples;
        std::sort(sorted.begin(), sorted.end());
        std::printf("%-28s %-24s median %14.1f %s, %.1f to %.1f\n", series.row.c_str(),
                    series.contender.c_str(), sorted[sorted.size() / 2], series.unit.c_str(),
                    sorted.front(), sorted.back());
        list.push_back({{"row", series.row},
                        {"world", "wine"},
                        {"contender", series.contender},
                        {"unit", series.unit},
                        {"samples", series.samples},
                        {"allocations", nullptr}});
    }
    if (!options.json.empty()) {
        std::ofstream file(options.json, std::ios::binary);
        file << list.dump(1) << '\n';
        if (!file.flush()) {
            std::cerr << "cannot write " << options.json << '\n';
            return 1;
        }
    }
    return 0;
}

}  // namespace PlenxBench
