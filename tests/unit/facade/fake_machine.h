// A fresh machine for tests that run Init. It has an install folder, a data folder, and a current
// folder for this test alone, into which the icon files go.

#ifndef UNIT_FACADE_FAKE_MACHINE_H
#define UNIT_FACADE_FAKE_MACHINE_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "platform/fake_platform.h"

class FakeMachine {
public:
    FakeMachine() : before_(std::filesystem::current_path()) {
        std::string name = std::filesystem::temp_directory_path() / "plenx-test-XXXXXX";
        folder_ = mkdtemp(name.data());
        std::filesystem::current_path(folder_);
        FakePlatform::Get().Files().AddFolder(L"C:\\App");
        FakePlatform::Get().Files().AddFolder(L"C:\\Data");
    }
    ~FakeMachine() {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(folder_);
    }
    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

private:
    const std::filesystem::path before_;
    std::filesystem::path folder_;
};

/// Returns the lines of the log whose function belongs to the class, such as "PLENXManagerInner".
inline std::vector<std::string> TextsOfClass(const std::string& name) {
    std::vector<std::string> texts = RecordedLog::Get().Texts();
    const std::string mark = "(DistributedFs::" + name + "::";
    texts.erase(std::remove_if(
                    texts.begin(), texts.end(),
                    [&](const std::string& text) { return text.find(mark) == std::string::npos; }),
                texts.end());
    return texts;
}

#endif  // UNIT_FACADE_FAKE_MACHINE_H
