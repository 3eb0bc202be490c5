#include "platform/file_path.h"

#include "platform/call_text.h"

std::wstring FullPath(const std::wstring& path) {
    std::wstring full;
    for (wchar_t unit : path) {
        if (unit == L'/') {
            unit = L'\\';
        }
        const bool repeated = unit == L'\\' && full.size() > 1 && full.back() == L'\\';
        if (!repeated) {
            full.push_back(unit);
        }
    }
    while (!full.empty() && full.back() == L'\\') {
        full.pop_back();
    }
    const bool share = full.compare(0, 2, L"\\\\") == 0;
    const bool drive = full.size() >= 2 && full[1] == L':';
    if (share || drive) {
        return full;
    }
    return full.compare(0, 1, L"\\") == 0 || full.empty() ? L"C:" + full : L"C:\\" + full;
}

std::wstring RootOf(const std::wstring& path) {
    if (path[0] != L'\\') {
        return path.substr(0, 2);
    }
    const std::size_t share = path.find(L'\\', 2);
    return share == path.npos ? path : path.substr(0, path.find(L'\\', share + 1));
}

std::wstring FolderAbove(const std::wstring& path) {
    const std::wstring root = RootOf(path);
    return path.size() <= root.size() ? root : path.substr(0, path.rfind(L'\\'));
}

std::wstring NameOf(const std::wstring& path) {
    return path.substr(path.rfind(L'\\') + 1);
}

bool IsUnder(const std::wstring& path, const std::wstring& folder) {
    return path.size() > folder.size() && path[folder.size()] == L'\\' &&
           Folded(path.substr(0, folder.size())) == Folded(folder);
}
