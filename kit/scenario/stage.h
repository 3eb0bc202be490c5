// The folders of one run: an install folder as a host's installer would leave it, a data folder and
// the logs. The control file makes the services play the scenario. At its end, the stage removes
// services that the run has left behind. The logs stay.

#ifndef PLENXKIT_SCENARIO_STAGE_H
#define PLENXKIT_SCENARIO_STAGE_H

#include <filesystem>
#include <string>

namespace PlenxScenario {

struct StageOptions {
    std::filesystem::path programs;  // where plenxservice.exe and the driver's files are
    std::filesystem::path work;      // holds a folder for each run
    std::filesystem::path install;   // the user's own; empty for one that is made in work
    std::filesystem::path data;      // as above
};

class Stage {
public:
    /// @throws UsageError when the folders cannot be used.
    Stage(const StageOptions& options, const std::string& name,
          const std::filesystem::path& scenario);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const std::filesystem::path& Install() const { return install_; }
    const std::filesystem::path& Data() const { return data_; }
    const std::filesystem::path& Logs() const { return logs_; }

private:
    void LayOutInstallFolder(const std::filesystem::path& programs) const;
    std::filesystem::path ControlFile() const { return install_ / "plenxservice.toml"; }

    const std::filesystem::path logs_;
    const std::filesystem::path install_;
    const std::filesystem::path data_;
    const bool ownInstall_;  // the caller's
    const bool ownData_;
};

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_STAGE_H
