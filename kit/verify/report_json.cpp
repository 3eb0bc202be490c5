#include <nlohmann/json.hpp>

#include "junit.h"
#include "verify/report.h"

namespace PlenxVerify {
namespace {

using Json = nlohmann::ordered_json;

const char* NameOf(Case::Verdict verdict) {
    switch (verdict) {
    case Case::Verdict::kFailed:
        return "failed";
    case Case::Verdict::kSkipped:
        return "skipped";
    case Case::Verdict::kPassed:
        break;
    }
    return "passed";
}

Json PairsJson(const std::vector<std::pair<std::string, std::string>>& pairs) {
    Json object = Json::object();
    for (const auto& [name, value] : pairs) {
        object[name] = value;
    }
    return object;
}

Json CaseJson(const Case& one) {
    Json json = {{"test", one.name}, {"verdict", NameOf(one.verdict)}, {"seconds", one.seconds}};
    if (!one.text.empty()) {
        json["text"] = one.text;
    }
    if (!one.recorded.empty()) {
        json["recorded"] = PairsJson(one.recorded);
    }
    return json;
}

Json PartJson(const PartRecord& part) {
    Json cases = Json::array();
    for (const Case& one : part.cases) {
        cases.push_back(CaseJson(one));
    }
    return {{"part", part.name},
            {"problem", part.problem},
            {"seconds", part.seconds},
            {"tests", std::move(cases)}};
}

Json StageJson(const StageRecord& stage) {
    Json parts = Json::array();
    for (const PartRecord& part : stage.parts) {
        parts.push_back(PartJson(part));
    }
    return {{"stage", stage.name},      {"sentence", stage.sentence},
            {"fails", stage.Failed()},  {"whyNotRun", stage.whyNotRun},
            {"removed", stage.removed}, {"seconds", stage.Seconds()},
            {"parts", std::move(parts)}};
}

std::string TextOf(const Case& one) {
    std::string text;
    for (const auto& [name, value] : one.recorded) {
        text += "recorded: " + name + " = " + value + "\n";
    }
    return text;
}

std::string FirstLine(const std::string& text) {
    return text.empty() ? "it failed" : text.substr(0, text.find('\n'));
}

PlenxKit::JunitCase JunitCaseOf(const std::string& prefix, const Case& one) {
    PlenxKit::JunitCase entry{prefix + one.name, one.seconds};
    entry.remark = TextOf(one);
    if (one.Failed()) {
        entry.failure = FirstLine(one.text);
        entry.details = one.text;
    } else if (one.verdict == Case::Verdict::kSkipped) {
        entry.skipped = one.text.empty() ? "skipped" : one.text;
    }
    return entry;
}

}  // namespace

std::string JsonOf(const RunRecord& run) {
    Json stages = Json::array();
    for (const StageRecord& stage : run.stages) {
        stages.push_back(StageJson(stage));
    }
    const Json whole = {{"plenxkit", run.version},      {"begun", run.begun},
                        {"verdict", VerdictOf(run)},    {"interrupted", run.interrupted},
                        {"leftBehind", run.leftBehind}, {"system", PairsJson(run.system)},
                        {"stages", std::move(stages)}};
    return whole.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string JunitOf(const RunRecord& run) {
    std::vector<PlenxKit::JunitCase> cases;
    for (const StageRecord& stage : run.stages) {
        if (!stage.WasRun()) {
            PlenxKit::JunitCase entry{stage.name};
            entry.skipped = stage.whyNotRun;
            cases.push_back(std::move(entry));
        }
        for (const PartRecord& part : stage.parts) {
            const std::string prefix = stage.name + "/" + part.name;
            if (!part.problem.empty()) {
                cases.push_back({prefix, part.seconds, part.problem});
            }
            for (const Case& one : part.cases) {
                cases.push_back(JunitCaseOf(prefix + "/", one));
            }
        }
    }
    return PlenxKit::JunitOf("plenxkit verify", cases);
}

}  // namespace PlenxVerify
