#include "both_worlds/stage.h"
#include "support/child_process.h"
#include "support/handle.h"
#include "support/install_folder.h"
#include "support/service_state.h"
#include "support/test_folder.h"

namespace BothWorlds {

namespace fs = std::filesystem;

namespace {

const fs::path kFolder = PlenxTest::TestFolder() / L"plenx-scenario";
const fs::path kApp = PlenxTest::TestFolder() / L"plenx-stage" / L"app";

}  // namespace

struct Stage::World {
    PlenxTest::InstallFolder install{L"plenx-stage"};
    PlenxSupport::Handle held;
    std::vector<std::unique_ptr<PlenxTest::ChildProcess>> processes;
};

Stage::Stage() : world_(std::make_unique<World>()) {
    PlenxTest::RemoveFolder(kFolder);
    fs::create_directories(kFolder);
}

Stage::~Stage() {
    Release();
    PlenxTest::RemoveFolder(kFolder);
}

std::wstring Stage::Folder() const {
    return kFolder.native();
}

void Stage::PutFolder(const std::wstring& path) {
    fs::create_directories(path);
}

void Stage::PutFile(const std::wstring& path, const std::string& content) {
    fs::create_directories(fs::path(path).parent_path());
    PlenxTest::WriteFile(path, content);
}

void Stage::MakeReadOnly(const std::wstring& path) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
}

std::string Stage::Content(const std::wstring& path) const {
    return PlenxTest::ReadFile(path);
}

void Stage::Hold(const std::wstring& path) {
    world_->held = PlenxSupport::Handle(
        CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(world_->held);
}

void Stage::Release() {
    world_->held.Reset();
}

std::wstring Stage::ServiceProgram() {
    return (kApp / L"plenxservice.exe").native();
}

std::wstring Stage::DriverFile() {
    return (kApp / L"dokan1.sys").native();
}

std::vector<std::wstring> Stage::ServiceArguments() {
    return {kApp.native(), (kApp.parent_path() / L"data").native(), L"1"};
}

bool Stage::DriverIsSigned() {
    return false;
}

void Stage::LetServiceIgnoreStop() {
    world_->install.SetServiceControl("[stop]\nhow = 'ignore'\n");
}

void Stage::RemoveService(const std::wstring& name) {
    PlenxTest::EndService(name);
}

DWORD Stage::StartProcess() {
    world_->processes.push_back(std::make_unique<PlenxTest::ChildProcess>(
        PlenxTest::ChildProcess::Self(L"--wait-to-be-ended")));
    return world_->processes.back()->Id();
}

}  // namespace BothWorlds
