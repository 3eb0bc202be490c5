// A machine that does what a test says.

#ifndef TESTS_UNIT_KIT_VERIFY_FAKE_SYSTEM_H
#define TESTS_UNIT_KIT_VERIFY_FAKE_SYSTEM_H

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "verify/system.h"

namespace PlenxVerify {

/// Returns what GoogleTest writes about one suite. Each text is the JSON of a test.
std::string JsonOfTests(const std::vector<std::string>& tests);
std::string PassedTest(const std::string& name);
std::string FailedTest(const std::string& name, const std::string& failure);

class FakeSystem : public System {
public:
    // The test sets these. All programs pass unless their name is here.
    bool hasRights = true;
    bool isAlone = true;
    std::string prepareError = {};
    std::set<std::string> missing = {};
    std::vector<Trace> traces = {};          // before the run, and until something removes them
    std::vector<Trace> stubborn = {};        // nothing removes these
    std::vector<Trace> staysAfterRun = {};   // what a run leaves for good
    std::map<std::string, Ended> ends = {};  // by the name of the output
    std::map<std::string, std::string> outputs = {};
    std::map<std::string, std::string> results = {};
    std::string interruptedAt = {};  // the output of the program during which it happens
    std::vector<Secret> secrets = {};

    // These record what happened.
    std::vector<Launch> launched = {};
    std::vector<std::string> steps = {};  // "prepare", "services-library", "clean", "clean all"

    bool HasRights() override { return hasRights; }
    bool TakeTurn() override { return isAlone; }
    std::vector<Trace> Traces() override;
    bool HasProgram(const std::string& name) override { return missing.count(name) == 0; }
    Facts Describe() override { return {{"Windows", "of the test of Erika"}}; }
    std::vector<Secret> Secrets() override { return secrets; }
    std::string Root() override { return "C:\\root"; }
    std::string Prepare() override;
    Ended Run(const Launch& launch) override;
    bool IsInterrupted() override { return interrupted_; }
    std::string PathOf(const std::string& file) override { return "C:\\root\\results\\" + file; }
    std::string Read(const std::string& file) override;
    std::string WorkFolder() override { return "C:\\root\\work"; }
    std::vector<LogFile> Logs() override { return {{"library.log", "said by erika"}}; }
    std::vector<std::string> Clean() override;
    void CleanAll() override;

private:
    bool interrupted_ = false;
};

}  // namespace PlenxVerify

#endif  // TESTS_UNIT_KIT_VERIFY_FAKE_SYSTEM_H
