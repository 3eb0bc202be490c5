#include "kit/judge/judgement.h"

#include <nlohmann/json.hpp>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kPatience = 300000;
const fs::path kResults = L"C:\\plenx-judgement.json";

// An older file would count as the results of this run.
std::string WithResults(const std::string& arguments) {
    std::error_code ignored;
    fs::remove(kResults, ignored);
    return "judge --json " + kResults.string() + " " + arguments;
}

}  // namespace

std::set<std::string> Judgement::Failed() const {
    std::set<std::string> numbers;
    for (const auto& [number, verdict] : verdicts) {
        if (verdict.compare(0, 6, "failed") == 0) {
            numbers.insert(number);
        }
    }
    return numbers;
}

std::set<std::string> Judgement::Judged() const {
    std::set<std::string> numbers;
    for (const auto& [number, verdict] : verdicts) {
        if (verdict != "not judged") {
            numbers.insert(number);
        }
    }
    return numbers;
}

Judgement RunJudge(const std::string& arguments) {
    return JudgeAtWork(arguments).Wait();
}

JudgeAtWork::JudgeAtWork(const std::string& arguments) : process_(WithResults(arguments)) {}

Judgement JudgeAtWork::Wait() {
    Judgement judgement;
    judgement.code = process_.Wait(kPatience);
    judgement.output = process_.Output();
    if (fs::exists(kResults)) {
        const auto json = nlohmann::json::parse(ReadFile(kResults));
        for (const auto& check : json.at("checks")) {
            judgement.verdicts[check.at("check")] = check.at("verdict");
        }
    }
    return judgement;
}

JudgeFolder::JudgeFolder() {
    RemoveFolder(path_);
    fs::create_directories(path_);
}

JudgeFolder::~JudgeFolder() {
    RemoveFolder(path_);
}

std::string JudgeFolder::Write(const std::string& name, const std::string& text) const {
    WriteFile(path_ / name, text);
    return (path_ / name).string();
}

std::string JudgeFolder::Copy(const std::string& program) const {
    fs::copy_file(fs::path(ProgramFolder()) / program, path_ / "plenxservice.exe",
                  fs::copy_options::overwrite_existing);
    return (path_ / "plenxservice.exe").string();
}

}  // namespace PlenxTest
