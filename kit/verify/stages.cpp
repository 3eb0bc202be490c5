#include <algorithm>
#include <sstream>

#include "verify/stage.h"

namespace PlenxVerify {
namespace {

using Kind = Part::Kind;

std::vector<std::string> SplitAtCommas(const std::vector<std::string>& words) {
    std::vector<std::string> parts;
    for (const std::string& word : words) {
        std::istringstream stream(word);
        for (std::string part; std::getline(stream, part, ',');) {
            parts.push_back(part);
        }
    }
    return parts;
}

void CheckThatItIsAStage(const std::string& name) {
    const std::vector<Stage>& all = Stages();
    if (std::none_of(all.begin(), all.end(),
                     [&](const Stage& stage) { return stage.name == name; })) {
        throw UsageError("there is no stage \"" + name + "\"; --list shows them all");
    }
}

}  // namespace

// Texts of many megabytes take a minute and say more about the library than about the system, so
// they are left to the tests. The limits are several times what the parts need under Wine on a slow
// machine.
const std::vector<Stage>& Stages() {
    static const std::vector<Stage> stages = {
        {"load",
         "The DLLs load, are hardened, export what hosts need and import what they may.",
         {{Kind::kTests, "hardening", "hardening_test.exe", "", 60},
          {Kind::kTests, "image", "system_test.exe", "Image.*", 60}}},
        {"c-interface",
         "Hosts in C, also one of Visual C++, work through plenxsdk_c.dll.",
         {{Kind::kTests, "hosts", "c_interface_test.exe", "*-*Ending*:Demo.*", 120}}},
        {"wire",
         "Calls between processes arrive, in each transfer syntax that the system chooses.",
         {{Kind::kTests, "calls", "rpc_interface_test.exe", "", 180}}},
        {"services",
         "Services are installed, started, called, stopped and removed.",
         {{Kind::kTests, "service", "devservice_test.exe", "*-*Driver*", 300},
          {Kind::kTests, "library", "system_test.exe", "*-Image.*:*Driver*:HugeText.*", 900},
          {Kind::kTests, "both-worlds", "both_worlds_test.exe", "*-*Driver*", 120}}},
        {"driver",
         "The driver is registered, asked to start (577 on Windows: it is not signed) and "
         "upgraded.",
         {{Kind::kTests, "driver", "devservice_test.exe", "*Driver*", 60},
          {Kind::kTests, "upgrade", "system_test.exe", "*Driver*", 120},
          {Kind::kTests, "both-worlds", "both_worlds_test.exe", "*Driver*", 60}}},
        {"demo",
         "The demo's host hears what it expects, through the class and the C interface.",
         {{Kind::kTests, "demo", "c_interface_test.exe", "Demo.*", 200}}},
        {"scenarios",
         "A host lives through every ready scenario of failing services.",
         {{Kind::kScenarios, "scenarios", "plenxkit.exe", "", 600}}},
        {"hostile",
         "The library goes on under messages that no honest peer sends.",
         {{Kind::kTests, "hostile", "hostile_test.exe", "", 300}}},
        {"endings",
         "A host comes to an end, whichever way it ends.",
         {{Kind::kTests, "class", "endings_test.exe", "", 300},
          {Kind::kTests, "c-interface", "c_interface_test.exe", "*Ending*", 180}}},
        {kLeftBehindStage, "No service, endpoint, process or folder of ours is left.", {}},
    };
    return stages;
}

std::vector<const Stage*> Selected(const std::vector<std::string>& words) {
    const std::vector<std::string> names = SplitAtCommas(words);
    std::for_each(names.begin(), names.end(), CheckThatItIsAStage);
    std::vector<const Stage*> selected;
    for (const Stage& stage : Stages()) {
        if (names.empty() || stage.name == std::string(kLeftBehindStage) ||
            std::find(names.begin(), names.end(), stage.name) != names.end()) {
            selected.push_back(&stage);
        }
    }
    return selected;
}

}  // namespace PlenxVerify
