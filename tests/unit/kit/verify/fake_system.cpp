#include "fake_system.h"

#include <nlohmann/json.hpp>

namespace PlenxVerify {
namespace {

const char* const kScenarios = R"([{"name": "slow-start", "passed": true, "reason": "",
    "seconds": 0.5}])";

}  // namespace

std::string PassedTest(const std::string& name) {
    return nlohmann::json{
        {"name", name}, {"status", "RUN"}, {"result", "COMPLETED"}, {"time", "0.25s"}}
        .dump();
}

std::string FailedTest(const std::string& name, const std::string& failure) {
    return nlohmann::json{{"name", name},
                          {"status", "RUN"},
                          {"result", "COMPLETED"},
                          {"time", "1s"},
                          {"failures", {{{"failure", failure}, {"type", ""}}}}}
        .dump();
}

std::string JsonOfTests(const std::vector<std::string>& tests) {
    nlohmann::json list = nlohmann::json::array();
    for (const std::string& test : tests) {
        list.push_back(nlohmann::json::parse(test));
    }
    return nlohmann::json{{"testsuites", {{{"name", "Suite"}, {"testsuite", list}}}}}.dump();
}

std::vector<Trace> FakeSystem::Traces() {
    std::vector<Trace> all = traces;
    all.insert(all.end(), stubborn.begin(), stubborn.end());
    if (!launched.empty()) {
        all.insert(all.end(), staysAfterRun.begin(), staysAfterRun.end());
    }
    return all;
}

std::string FakeSystem::Prepare() {
    steps.emplace_back("prepare");
    return prepareError;
}

Ended FakeSystem::Run(const Launch& launch) {
    launched.push_back(launch);
    const std::string name = launch.output.substr(0, launch.output.find('.'));
    steps.push_back(name);
    if (name == interruptedAt) {
        interrupted_ = true;
        return {Ended::How::kInterrupted, 0, 1};
    }
    const auto found = ends.find(name);
    return found == ends.end() ? Ended{Ended::How::kByItself, 0, 2} : found->second;
}

std::string FakeSystem::Read(const std::string& file) {
    const std::string name = file.substr(0, file.find('.'));
    if (file.find(".txt") != std::string::npos) {
        return outputs.count(name) != 0 ? outputs.at(name) : "output of " + name;
    }
    if (results.count(name) != 0) {
        return results.at(name);
    }
    return name == "scenarios-scenarios" ? kScenarios : JsonOfTests({PassedTest("Works")});
}

std::vector<std::string> FakeSystem::Clean() {
    steps.emplace_back("clean");
    return {"the service Dokan1"};
}

void FakeSystem::CleanAll() {
    steps.emplace_back("clean all");
    traces.clear();
}

}  // namespace PlenxVerify
