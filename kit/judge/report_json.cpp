#include <nlohmann/json.hpp>

#include "judge/report.h"
#include "judge/selection.h"
#include "junit.h"

namespace PlenxJudge {
namespace {

using Json = nlohmann::ordered_json;

constexpr Level kLevels[] = {Level::kMust, Level::kShould, Level::kMay};

Level LevelNamed(const std::string& name) {
    for (const Level level : kLevels) {
        if (name == NameOf(level)) {
            return level;
        }
    }
    throw std::invalid_argument("there is no level \"" + name + "\"");
}

Outcome::Kind KindNamed(const std::string& verdict) {
    if (verdict.compare(0, 6, "passed") == 0) {
        return Outcome::Kind::kPassed;
    }
    return verdict.compare(0, 6, "failed") == 0 ? Outcome::Kind::kFailed
                                                : Outcome::Kind::kNotJudged;
}

Json FaultsJson(const std::vector<Fault>& faults) {
    Json list = Json::array();
    for (const Fault& fault : faults) {
        list.push_back(
            {{"expected", fault.expected}, {"came", fault.came}, {"message", fault.message}});
    }
    return list;
}

std::vector<Fault> FaultsIn(const Json& list) {
    std::vector<Fault> faults;
    for (const Json& fault : list) {
        faults.push_back({fault.at("expected"), fault.at("came"), fault.at("message")});
    }
    return faults;
}

Json RecordJson(const RunRecord& run, const Record& record) {
    return {{"check", record.number},
            {"level", NameOf(record.level)},
            {"sentence", record.sentence},
            {"section", PlaceOf(record)},
            {"verdict", VerdictOf(record)},
            {"fails", run.Fails(record)},
            {"known", record.known},
            {"why", record.outcome.why},
            {"faults", FaultsJson(record.outcome.faults)},
            {"seconds", record.seconds}};
}

Record RecordIn(const Json& json) {
    Record record;
    record.number = json.at("check");
    record.level = LevelNamed(json.at("level"));
    record.sentence = json.at("sentence");
    const std::string place = json.at("section");
    record.section = place.substr(place.find('#') + 1);
    record.outcome = {KindNamed(json.at("verdict")), FaultsIn(json.at("faults")), json.at("why")};
    record.known = json.at("known");
    record.seconds = json.at("seconds");
    return record;
}

std::string DetailsOf(const Record& record) {
    std::string text;
    for (const Fault& fault : record.outcome.faults) {
        text += "expected: " + fault.expected + "\ncame: " + fault.came + "\n" +
                (fault.message.empty() ? "" : "\n" + fault.message + "\n");
    }
    return text + "page: " + PlaceOf(record) + "\n";
}

}  // namespace

std::string JsonOf(const RunRecord& run) {
    Json checks = Json::array();
    for (const Record& record : run.records) {
        checks.push_back(RecordJson(run, record));
    }
    const Json whole = {{"program", run.program},         {"plenxkit", run.version},
                        {"strict", run.strict},           {"leftBehind", run.leftBehind},
                        {"interrupted", run.interrupted}, {"checks", std::move(checks)}};
    return whole.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

RunRecord RunFromJson(const std::string& text, const std::string& file) {
    try {
        const Json whole = Json::parse(text);
        RunRecord run{whole.at("program"), whole.at("plenxkit"), whole.at("strict")};
        run.leftBehind = whole.at("leftBehind");
        run.interrupted = whole.at("interrupted");
        for (const Json& record : whole.at("checks")) {
            run.records.push_back(RecordIn(record));
        }
        return run;
    } catch (const std::exception& error) {
        throw UsageError(file + " is not a result of plenxkit judge --json: " + error.what());
    }
}

std::string JunitOf(const RunRecord& run) {
    std::vector<PlenxKit::JunitCase> cases;
    for (const Record& record : run.records) {
        PlenxKit::JunitCase one{record.number, record.seconds};
        one.skipped = record.outcome.why;
        if (run.Fails(record)) {
            one.failure =
                record.HasGone() ? "it passes, though it is known to fail" : record.sentence;
            one.details = DetailsOf(record);
        } else if (record.Failed()) {
            one.remark = record.sentence + "\n" + DetailsOf(record);
        }
        cases.push_back(std::move(one));
    }
    return PlenxKit::JunitOf("plenxkit judge", cases);
}

}  // namespace PlenxJudge
