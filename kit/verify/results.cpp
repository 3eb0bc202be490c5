#include "verify/results.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

namespace PlenxVerify {
namespace {

using Json = nlohmann::ordered_json;

// GoogleTest writes what a test has recorded beside these.
constexpr const char* kOwnKeys[] = {"name", "value_param", "type_param", "file",
                                    "line", "status",      "result",     "timestamp",
                                    "time", "classname",   "failures",   "skipped"};

bool IsRecorded(const std::string& key) {
    return std::find(std::begin(kOwnKeys), std::end(kOwnKeys), key) == std::end(kOwnKeys);
}

std::string TextOf(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// "0.012s"
double SecondsOf(const Json& test) {
    return std::stod(test.value("time", "0s"));
}

std::string FailuresOf(const Json& test) {
    std::string text;
    for (const Json& failure : test.value("failures", Json::array())) {
        text += (text.empty() ? "" : "\n") + failure.at("failure").get<std::string>();
    }
    return text;
}

// Older versions of GoogleTest do not write why a test was skipped.
std::string SkipOf(const Json& test) {
    std::string text;
    for (const Json& skip : test.value("skipped", Json::array())) {
        text += (text.empty() ? "" : "\n") + skip.value("message", "");
    }
    return text;
}

Case CaseOfTest(const std::string& suite, const Json& test) {
    Case one{suite + "." + test.at("name").get<std::string>()};
    one.seconds = SecondsOf(test);
    one.text = FailuresOf(test);
    if (!one.text.empty()) {
        one.verdict = Case::Verdict::kFailed;
    } else if (test.value("result", "") == "SKIPPED") {
        one.verdict = Case::Verdict::kSkipped;
        one.text = SkipOf(test);
    }
    for (const auto& [key, value] : test.items()) {
        if (IsRecorded(key)) {
            one.recorded.emplace_back(key, TextOf(value));
        }
    }
    return one;
}

}  // namespace

std::vector<Case> CasesOfTests(const std::string& json) {
    const Json whole = Json::parse(json);
    std::vector<Case> cases;
    for (const Json& suite : whole.at("testsuites")) {
        for (const Json& test : suite.at("testsuite")) {
            if (test.value("status", "") == "RUN") {
                cases.push_back(CaseOfTest(suite.at("name"), test));
            }
        }
    }
    return cases;
}

std::vector<Case> CasesOfScenarios(const std::string& json) {
    const Json whole = Json::parse(json);
    std::vector<Case> cases;
    for (const Json& scenario : whole) {
        Case one{scenario.at("name")};
        one.seconds = scenario.at("seconds");
        if (!scenario.at("passed").get<bool>()) {
            one.verdict = Case::Verdict::kFailed;
            one.text = scenario.at("reason");
        }
        cases.push_back(std::move(one));
    }
    return cases;
}

std::string LastBegun(const std::string& output) {
    static const std::string begins = "[ RUN      ] ";
    std::istringstream stream(output);
    std::string running;
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.compare(0, begins.size(), begins) == 0) {
            running = line.substr(begins.size());
        } else if (line.compare(0, 12, "[       OK ]") == 0 ||
                   line.compare(0, 12, "[  FAILED  ]") == 0 ||
                   line.compare(0, 12, "[  SKIPPED ]") == 0) {
            running.clear();
        }
    }
    return running;
}

}  // namespace PlenxVerify
