#include "both_worlds/stage.h"
#include "platform/fake_platform.h"

namespace BothWorlds {

struct Stage::World {
    FakePlatform& platform = FakePlatform::Get();
    std::wstring held;
};

Stage::Stage() : world_(std::make_unique<World>()) {
    world_->platform.Reset();
    world_->platform.Files().AddFolder(Folder());
}

Stage::~Stage() {
    EXPECT_EQ(world_->platform.OpenHandles(), std::vector<std::string>());
}

std::wstring Stage::Folder() const {
    return L"C:\\plenx-scenario";
}

void Stage::PutFolder(const std::wstring& path) {
    world_->platform.Files().AddFolder(path);
}

void Stage::PutFile(const std::wstring& path, const std::string& content) {
    world_->platform.Files().AddFile(path, content);
}

void Stage::MakeReadOnly(const std::wstring& path) {
    world_->platform.Files().Give(path, FileTrait::kReadOnly);
}

std::string Stage::Content(const std::wstring& path) const {
    return world_->platform.Files().Content(path);
}

void Stage::Hold(const std::wstring& path) {
    world_->held = path;
    world_->platform.Files().Give(path, FileTrait::kHeldOpen);
}

void Stage::Release() {
    world_->platform.Files().Take(world_->held, FileTrait::kHeldOpen);
}

std::wstring Stage::ServiceProgram() {
    return L"C:\\plenx-stage\\app\\plenxservice.exe";
}

std::wstring Stage::DriverFile() {
    return L"C:\\plenx-stage\\app\\dokan1.sys";
}

std::vector<std::wstring> Stage::ServiceArguments() {
    return {L"C:\\plenx-stage\\app", L"C:\\plenx-stage\\data", L"1"};
}

bool Stage::DriverIsSigned() {
    return true;
}

void Stage::LetServiceIgnoreStop() {
    world_->platform.Scm().ScriptStop(L"PlenxPcSvc", {});
}

void Stage::RemoveService(const std::wstring&) {}

DWORD Stage::StartProcess() {
    return world_->platform.Processes().Start();
}

}  // namespace BothWorlds
