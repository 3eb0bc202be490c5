// plenxscenario: plays scenarios of the development service to a host, and judges how it took
// them.

#include <windows.h>

#include "command_line.h"
#include "text/text.h"

extern "C" int wmain(int count, wchar_t** arguments) {
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(PlenxText::ToUtf8(arguments[i]));
    }
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return PlenxScenario::Run(texts, std::filesystem::path(path).parent_path());
}
