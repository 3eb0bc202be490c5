// The peer of row 13: a DLL of one class with one object. It imports what plenxsdk.dll imports,
// except the shell library.

#include <string>

extern "C" void** const kImports[];

namespace DistributedFs {

class PLENXManager {
public:
    __declspec(dllexport) static PLENXManager& GetInstance();

private:
    std::string text_ = std::string(32, 'x');
    void* const* imports_ = *kImports;  // so that the linker keeps them
};

PLENXManager& PLENXManager::GetInstance() {
    static PLENXManager instance;
    return instance;
}

}  // namespace DistributedFs
