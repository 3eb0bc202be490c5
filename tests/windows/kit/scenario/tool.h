// Runs a program of this build as a person would, in a folder for its files that is removed again.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_TOOL_H
#define PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_TOOL_H

#include <filesystem>
#include <optional>
#include <string>

namespace PlenxTest {

class Tool {
public:
    Tool();
    ~Tool();
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    struct Outcome {
        std::optional<unsigned long> code;  // none: it did not end within two minutes
        std::string output;                 // and errors
    };

    /// program: without its ending.
    Outcome Run(const std::wstring& program, const std::wstring& arguments) const;
    /// plenxkit scenario run, with its work in the folder.
    Outcome RunScenario(const std::wstring& arguments) const;

    std::filesystem::path Write(const std::string& name, const std::string& content) const;
    std::string Read(const std::string& name) const;
    const std::filesystem::path& Folder() const { return folder_; }

private:
    const std::filesystem::path folder_ = L"C:\\plenx-scenarios";
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_TOOL_H
