// Runs plenxkit judge, and reports what it found.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_JUDGEMENT_H
#define PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_JUDGEMENT_H

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "kit/kit_process.h"

namespace PlenxTest {

struct Judgement {
    int code = -1;  // of the process; -1 when it did not end
    std::string output = {};
    std::map<std::string, std::string> verdicts = {};  // by the number of the check

    /// Returns the checks that failed.
    std::set<std::string> Failed() const;
    /// Returns the checks that were judged.
    std::set<std::string> Judged() const;
};

/// arguments: as on the command line.
Judgement RunJudge(const std::string& arguments);

/// A judge that works while the test does something else.
class JudgeAtWork {
public:
    explicit JudgeAtWork(const std::string& arguments);

    Judgement Wait();

private:
    KitProcess process_;
};

/// A folder for files of the test, in a path without blanks. The destructor removes it.
class JudgeFolder {
public:
    JudgeFolder();
    ~JudgeFolder();
    JudgeFolder(const JudgeFolder&) = delete;
    JudgeFolder& operator=(const JudgeFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string Write(const std::string& name, const std::string& text) const;
    /// Copies a program of this build. @return its path.
    std::string Copy(const std::string& program) const;

private:
    const std::filesystem::path path_ = L"C:\\plenx-judged";
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_JUDGEMENT_H
