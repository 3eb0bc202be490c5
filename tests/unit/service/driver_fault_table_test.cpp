// Tests the driver upgrade while each platform call fails, and while the process dies before each.

#include <stdexcept>
#include <utility>

#include "fault_table.h"
#include "service_manager_test.h"

using DistributedFs::ServiceManager;
using testing::ElementsAre;

namespace {

using Row = FaultRow;
using Rows = std::vector<FaultRow>;

const std::string kUpgrade = "ServiceManager::UpgradeDriver";
const std::vector<std::string> kFiles = {"\\dokan1.sys", "\\dokan1.dll", "\\dokanfuse1.dll"};

std::string Used(const std::string& file) {
    return Info("driver " + file + " is used", kUpgrade);
}
std::string MovedAside(const std::string& file) {
    return Info("move old " + file + " successfully", kUpgrade);
}
std::string Done(const std::string& file) {
    return Info("upgrade " + file + " successfully", kUpgrade);
}
std::string NotMovedIn(const std::string& file, const std::string& error) {
    return Error("upgrade driver " + file + " error " + error, kUpgrade);
}
std::string NotMovedAside(const std::string& file, const std::string& error) {
    return Info("move driver " + file + " error " + error, kUpgrade);  // the upgrade is given up
}
std::string NotDeleted(const std::string& file, const std::string& error) {
    return Error("delete driver " + file + " error " + error, kUpgrade);
}

/// The states of a target that the upgrade can distinguish.
enum class TargetIs { kThere, kMissing, kInUse };

// Returns the rows of one file, with the lines before it. next is the outcome of the files behind
// it when nothing fails.
Rows UpgradeOf(const std::string& file, TargetIs target, const FaultLines& before,
               const FaultLines& next) {
    const FaultLines aside =
        target == TargetIs::kInUse ? FaultLines{Used(file), MovedAside(file)} : FaultLines{};
    const FaultLines rest = FaultLines{Done(file)} + next;
    // A copy counts as missing when the upgrade cannot look for it. When all later calls fail as
    // well, all later copies count as missing too.
    const auto noCopy = [=](const Fault& fault) {
        return Outcome{0, fault.forEver ? before : before + next};
    };
    const auto notDeleted = [=](const Fault& fault) {
        switch (fault.error) {
        case ERROR_ACCESS_DENIED:
            // The target counts as in use. A missing target cannot be moved aside either.
            if (fault.forEver) {
                return Outcome{0, before + FaultLines{Used(file), NotMovedAside(file, "5")}};
            }
            if (target == TargetIs::kMissing) {
                return Outcome{0, before + FaultLines{Used(file), NotMovedAside(file, "2")}};
            }
            return Outcome{0, before + FaultLines{Used(file), MovedAside(file)} + rest};
        case ERROR_FILE_NOT_FOUND:
            // The target counts as missing, but the new file cannot take its name, which is not
            // free.
            if (fault.forEver) {
                return Outcome{24, before + FaultLines{NotMovedIn(file, "2")}};
            }
            if (target == TargetIs::kMissing) {
                return Outcome{0, before + rest};
            }
            return Outcome{24, before + FaultLines{NotMovedIn(file, "183")}};
        default:
            return Outcome{24, before + FaultLines{NotDeleted(file, fault.Error())}};
        }
    };
    const auto notMovedAside = [=](const Fault& fault) {
        return Outcome{0, before + FaultLines{Used(file), NotMovedAside(file, fault.Error())}};
    };
    const auto notMovedIn = [=](const Fault& fault) {
        return Outcome{24, before + aside + FaultLines{NotMovedIn(file, fault.Error())}};
    };
    Rows rows = {{"_waccess", noCopy}, {"DeleteFileW", notDeleted}};
    if (target == TargetIs::kInUse) {
        rows.push_back({"MoveFileExW", notMovedAside});
    }
    rows.push_back({"MoveFileExW", notMovedIn});
    return rows;
}

// Returns the table for three files with the same kind of target.
FaultTable UpgradeOfAll(TargetIs target) {
    const auto lines = [=](std::size_t from, std::size_t to) {
        FaultLines all;
        for (std::size_t i = from; i != to; ++i) {
            if (target == TargetIs::kInUse) {
                all = all + FaultLines{Used(kFiles[i]), MovedAside(kFiles[i])};
            }
            all.push_back(Done(kFiles[i]));
        }
        return all;
    };
    FaultTable table{{0, lines(0, 3)}, {}};
    for (std::size_t i = 0; i != 3; ++i) {
        table.rows = table.rows + UpgradeOf(kFiles[i], target, lines(0, i), lines(i + 1, 3));
    }
    return table;
}

class DriverFaultTable : public ServiceManagerTest {
protected:
    void Prepare(TargetIs target) {
        for (const std::string& name : kFiles) {
            const std::wstring file(name.begin(), name.end());
            files.AddFile(kInstall + L"\\upgrade" + file, "new");
            if (target != TargetIs::kMissing) {
                files.AddFile(kInstall + file, "old");
            }
            if (target == TargetIs::kInUse) {
                files.Give(kInstall + file, FileTrait::kInUse);
            }
        }
    }

    std::string ContentOf(const std::wstring& path) const {
        return files.Exists(path) ? files.Content(path) : "-";
    }

    /// Returns the content of each file's target, upgrade copy and ".old".
    std::vector<std::string> State() const {
        std::vector<std::string> state;
        for (const std::string& name : kFiles) {
            const std::wstring target = kInstall + std::wstring(name.begin(), name.end());
            const std::wstring copy =
                kInstall + L"\\upgrade" + std::wstring(name.begin(), name.end());
            state.push_back(ContentOf(target) + " " + ContentOf(copy) + " " +
                            ContentOf(target + L".old"));
        }
        return state;
    }

    void Check(TargetIs target) {
        CheckFaults(
            UpgradeOfAll(target),
            [=] {
                Prepare(target);
                return 0;
            },
            [=](int) {
                const std::int32_t code = ServiceManager::UpgradeDriver(kInstall);
                ExpectNothingLost(target);
                return code;
            });
    }

    // Whatever failed, each new file is either in its place or still waiting. An old one is gone
    // only if there was none, or if the copy could not be moved in after its deletion.
    void ExpectNothingLost(TargetIs target) const {
        using testing::AnyOf;
        for (const std::string& state : State()) {
            switch (target) {
            case TargetIs::kThere:
                EXPECT_THAT(state, AnyOf("old new -", "- new -", "new - -", "new - old"));
                break;
            case TargetIs::kMissing:
                EXPECT_THAT(state, AnyOf("- new -", "new - -"));
                break;
            case TargetIs::kInUse:
                EXPECT_THAT(state, AnyOf("old new -", "- new old", "new - old"));
                break;
            }
        }
    }

    /// Lets the process die just before the n-th call that can fail. Returns false if there is
    /// none.
    bool DieBefore(unsigned n) {
        struct Death : std::runtime_error {
            Death() : std::runtime_error("the process ends here") {}
        };
        platform.Faults().Before("", n, [] { throw Death(); });
        try {
            ServiceManager::UpgradeDriver(kInstall);
        } catch (const Death&) {
            platform.Faults().Reset();
            return true;
        }
        platform.Faults().Reset();
        return false;
    }

    void CheckDeaths(TargetIs target, const std::vector<std::vector<std::string>>& states,
                     const std::string& upgraded) {
        for (unsigned n = 1; n <= states.size(); ++n) {
            SCOPED_TRACE(testing::Message() << "before call " << n);
            StartAfresh();
            PrepareMachine();
            Prepare(target);
            ASSERT_TRUE(DieBefore(n));
            EXPECT_EQ(State(), states[n - 1]);
            EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
            EXPECT_THAT(State(), ElementsAre(upgraded, upgraded, upgraded));
        }
        StartAfresh();
        PrepareMachine();
        Prepare(target);
        EXPECT_FALSE(DieBefore(static_cast<unsigned>(states.size()) + 1));
    }
};

TEST_F(DriverFaultTable, TargetsThere) {
    Check(TargetIs::kThere);
}

TEST_F(DriverFaultTable, TargetsMissing) {
    Check(TargetIs::kMissing);
}

TEST_F(DriverFaultTable, TargetsInUse) {
    Check(TargetIs::kInUse);
}

// A process that dies in the middle of an upgrade leaves each file unchanged, or without its target
// while the new one still waits, or finished. The next run completes the upgrade.

TEST_F(DriverFaultTable, DeathBeforeAnyCall_IsMadeGoodByTheNextRun) {
    const std::string before = "old new -";
    const std::string deleted = "- new -";
    const std::string done = "new - -";
    CheckDeaths(TargetIs::kThere,
                {{before, before, before},
                 {before, before, before},
                 {deleted, before, before},
                 {done, before, before},
                 {done, before, before},
                 {done, deleted, before},
                 {done, done, before},
                 {done, done, before},
                 {done, done, deleted}},
                done);
}

TEST_F(DriverFaultTable, DeathWithTargetsInUse_IsMadeGoodByTheNextRun) {
    const std::string before = "old new -";
    const std::string aside = "- new old";
    const std::string done = "new - old";
    CheckDeaths(TargetIs::kInUse,
                {{before, before, before},
                 {before, before, before},
                 {before, before, before},
                 {aside, before, before},
                 {done, before, before},
                 {done, before, before},
                 {done, before, before},
                 {done, aside, before},
                 {done, done, before},
                 {done, done, before},
                 {done, done, before},
                 {done, done, aside}},
                done);
}

}  // namespace
