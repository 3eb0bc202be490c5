#include "platform/fake_files.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/call_text.h"
#include "platform/file_path.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr DWORD kFound = 0;
constexpr std::size_t kLongestPath = 32767;
constexpr std::size_t kRoomForAName = 12;  // Windows wants this left in the path of a new folder

}  // namespace

DWORD FakeFiles::Entry::Attributes() const {
    return (folder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE) |
           (IsLink() ? FILE_ATTRIBUTE_REPARSE_POINT : 0) |
           (Has(FileTrait::kReadOnly) ? FILE_ATTRIBUTE_READONLY : 0);
}

void FakeFiles::Reset() {
    const Lock lock(mutex_);
    entries_.clear();
    listings_.CloseAll();
    hasLinks_ = false;
    longestPath_ = kLongestPath;
    AddFolder(L"C:");
}

FakeFiles::Entry& FakeFiles::Add(const std::wstring& path, bool folder) {
    const std::wstring full = FullPath(path);
    if (full != RootOf(full)) {
        AddFolder(FolderAbove(full));
    }
    Entry& entry = entries_[Folded(full)];
    if (entry.path.empty()) {
        entry.path = full;
        entry.folder = folder;
    }
    return entry;
}

void FakeFiles::AddFolder(const std::wstring& path) {
    const Lock lock(mutex_);
    Add(path, true);
}

void FakeFiles::AddFile(const std::wstring& path, const std::string& content) {
    const Lock lock(mutex_);
    Add(path, false).content = content;
}

void FakeFiles::AddFolderLink(const std::wstring& path, const std::wstring& target) {
    const Lock lock(mutex_);
    Add(path, true).linkTarget = FullPath(target);
    hasLinks_ = true;
}

void FakeFiles::AddFileLink(const std::wstring& path, const std::wstring& target) {
    const Lock lock(mutex_);
    Add(path, false).linkTarget = FullPath(target);
}

void FakeFiles::LimitPaths(std::size_t length) {
    const Lock lock(mutex_);
    longestPath_ = length;
}

void FakeFiles::Give(const std::wstring& path, FileTrait trait) {
    const Lock lock(mutex_);
    At(path).traits.insert(trait);
}

void FakeFiles::Take(const std::wstring& path, FileTrait trait) {
    const Lock lock(mutex_);
    At(path).traits.erase(trait);
}

bool FakeFiles::Exists(const std::wstring& path) const {
    const Lock lock(mutex_);
    return Look(Resolve(path)) != nullptr;
}

std::string FakeFiles::Content(const std::wstring& path) const {
    const Lock lock(mutex_);
    const Entry* const entry = Look(Resolve(path));
    if (entry == nullptr) {
        return "(there is no " + Narrow(path) + ")";
    }
    return entry->content;
}

std::vector<std::string> FakeFiles::Tree(const std::wstring& folder) const {
    const Lock lock(mutex_);
    const std::wstring full = FullPath(folder);
    std::vector<std::string> tree;
    for (const auto& [key, entry] : entries_) {
        if (IsUnder(entry.path, full)) {
            tree.push_back(Narrow(entry.path) + (entry.folder ? "\\" : ""));
        }
    }
    std::sort(tree.begin(), tree.end());
    return tree;
}

FakeFiles::Entry& FakeFiles::At(const std::wstring& path) {
    const auto found = entries_.find(Folded(FullPath(path)));
    if (found == entries_.end()) {
        std::abort();  // a mistake of the test: there is no such file
    }
    return found->second;
}

const FakeFiles::Entry* FakeFiles::Look(const std::wstring& path) const {
    const auto found = entries_.find(Folded(path));
    return found == entries_.end() ? nullptr : &found->second;
}

std::wstring FakeFiles::Resolve(const std::wstring& path) const {
    std::wstring full = FullPath(path);
    if (!hasLinks_) {
        return full;  // the quick way, however deep the path is
    }
    for (std::size_t end = full.find(L'\\', RootOf(full).size() + 1); end != full.npos;
         end = full.find(L'\\', end + 1)) {
        const Entry* const above = Look(full.substr(0, end));
        if (above != nullptr && above->folder && above->IsLink()) {
            // This ends because tests make no circles of links.
            return Resolve(above->linkTarget + full.substr(end));
        }
    }
    return full;
}

// Returns the error that Windows gives for a path: none, or that the last part is missing, or a
// part above it.
DWORD FakeFiles::FindEntry(const std::wstring& resolved) const {
    const std::size_t prefix = resolved.compare(0, 4, L"\\\\?\\") == 0 ? 4 : 0;
    if (resolved.find_first_of(L"?*<>|\"", prefix) != resolved.npos) {
        return ERROR_INVALID_NAME;
    }
    if (IsTooLong(resolved)) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (Look(resolved) != nullptr) {
        return kFound;
    }
    const Entry* const above = Look(FolderAbove(resolved));
    return above != nullptr && above->folder ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

// Returns 0 when something can be made in the folder above.
DWORD FakeFiles::CheckFolderAbove(const std::wstring& resolved) const {
    const Entry* const above = Look(FolderAbove(resolved));
    if (above == nullptr || !above->folder) {
        return ERROR_PATH_NOT_FOUND;
    }
    return above->Has(FileTrait::kDenied) ? ERROR_ACCESS_DENIED : 0;
}

bool FakeFiles::IsEmptyFolder(const std::wstring& resolved) const {
    return std::none_of(entries_.begin(), entries_.end(),
                        [&](const auto& other) { return IsUnder(other.second.path, resolved); });
}

DWORD FakeFiles::MakeFolder(const std::wstring& path) {
    if (path.empty()) {
        return ERROR_PATH_NOT_FOUND;
    }
    const std::wstring full = Resolve(path);
    if (full.size() + kRoomForAName > longestPath_) {
        return ERROR_FILENAME_EXCED_RANGE;
    }
    const DWORD found = FindEntry(full);
    if (found == kFound) {
        return ERROR_ALREADY_EXISTS;
    }
    if (found != ERROR_FILE_NOT_FOUND) {
        return found;
    }
    const DWORD refused = CheckFolderAbove(full);
    if (refused == 0) {
        Add(full, true);
    }
    return refused;
}

DWORD FakeFiles::RemoveFolder(const std::wstring& path) {
    const std::wstring full = Resolve(path);
    const DWORD missing = path.empty() ? ERROR_PATH_NOT_FOUND : FindEntry(full);
    if (missing != kFound) {
        return missing;
    }
    const Entry& entry = *Look(full);
    if (!entry.folder) {
        return ERROR_DIRECTORY;
    }
    if (entry.Has(FileTrait::kHeldOpen)) {
        return ERROR_SHARING_VIOLATION;
    }
    if (entry.IsProtected()) {
        return ERROR_ACCESS_DENIED;
    }
    if (!entry.IsLink() && !IsEmptyFolder(full)) {
        return ERROR_DIR_NOT_EMPTY;
    }
    entries_.erase(Folded(full));
    return 0;
}

DWORD FakeFiles::RemoveFile(const std::wstring& path) {
    const std::wstring full = Resolve(path);
    const DWORD missing = path.empty() ? ERROR_PATH_NOT_FOUND : FindEntry(full);
    if (missing != kFound) {
        return missing;
    }
    const Entry& entry = *Look(full);
    if (entry.Has(FileTrait::kHeldOpen)) {
        return ERROR_SHARING_VIOLATION;
    }
    if (entry.folder || entry.IsProtected()) {
        return ERROR_ACCESS_DENIED;
    }
    entries_.erase(Folded(full));
    return 0;
}

DWORD FakeFiles::CheckTarget(const std::wstring& to, bool replace, bool sourceIsFolder) const {
    const DWORD refused = IsTooLong(to) ? ERROR_PATH_NOT_FOUND : CheckFolderAbove(to);
    const Entry* const present = Look(to);
    if (refused != 0 || present == nullptr) {
        return refused;
    }
    if (!replace) {
        return ERROR_ALREADY_EXISTS;
    }
    const bool replaceable = !sourceIsFolder && !present->folder && !present->IsProtected();
    return replaceable ? 0 : ERROR_ACCESS_DENIED;
}

DWORD FakeFiles::Move(const std::wstring& from, const std::wstring& to, DWORD flags) {
    const std::wstring source = Resolve(from);
    const std::wstring target = Resolve(to);
    const DWORD missing = FindEntry(source);
    if (missing != kFound) {
        return missing;
    }
    const Entry& entry = *Look(source);
    if (entry.Has(FileTrait::kHeldOpen)) {
        return ERROR_SHARING_VIOLATION;
    }
    if (entry.Has(FileTrait::kPinned) || entry.Has(FileTrait::kDenied)) {
        return ERROR_ACCESS_DENIED;
    }
    if (Folded(source) != Folded(target)) {
        const bool replace = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
        const DWORD refused = CheckTarget(target, replace, entry.folder);
        if (refused != 0) {
            return refused;
        }
    }
    const bool copyAllowed = (flags & MOVEFILE_COPY_ALLOWED) != 0 && !entry.folder;
    if (Folded(RootOf(source)) != Folded(RootOf(target)) && !copyAllowed) {
        return ERROR_NOT_SAME_DEVICE;
    }
    Rename(source, target);
    return 0;
}

void FakeFiles::Rename(const std::wstring& from, const std::wstring& to) {
    Entries moved;
    for (auto i = entries_.begin(); i != entries_.end();) {
        const std::wstring path = i->second.path;
        if (Folded(path) != Folded(from) && !IsUnder(path, from)) {
            ++i;
            continue;
        }
        Entry entry = std::move(i->second);
        entry.path = to + path.substr(from.size());
        moved[Folded(entry.path)] = std::move(entry);
        i = entries_.erase(i);
    }
    for (auto& [key, entry] : moved) {
        entries_[key] = std::move(entry);
    }
}

DWORD FakeFiles::Attributes(const std::wstring& path, DWORD& attributes) const {
    const std::wstring full = Resolve(path);
    const DWORD missing = path.empty() ? ERROR_PATH_NOT_FOUND : FindEntry(full);
    if (missing != kFound) {
        return missing;
    }
    const Entry& entry = *Look(full);
    attributes = entry.Attributes();
    return entry.Has(FileTrait::kDenied) ? ERROR_ACCESS_DENIED : 0;
}
