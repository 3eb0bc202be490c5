// Runs a program of this build as a person would. The folder for its files is removed afterwards.

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
        std::optional<unsigned long> code;  // empty when it did not end within two minutes
        std::string output;                 // including errors
    };

    /// program: the name of the program, without ".exe".
    Outcome Run(const std::wstring& program, const std::wstring& arguments) const;
    /// Runs plenxkit scenario run, with its work in the folder.
    Outcome RunScenario(const std::wstring& arguments) const;

    std::filesystem::path Write(const std::string& name, const std::string& content) const;
    std::string Read(const std::string& name) const;
    const std::filesystem::path& Folder() const { return folder_; }

private:
    const std::filesystem::path folder_ = L"C:\\plenx-scenarios";
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_TOOL_H
