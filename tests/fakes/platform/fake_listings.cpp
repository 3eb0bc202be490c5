// Lists folders of the fake machine. A listing shows the folder as it was when the listing began.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/call_text.h"
#include "platform/fake_files.h"
#include "platform/file_path.h"

DWORD FakeFiles::List(const std::wstring& pattern, std::uintptr_t& listing, Found& first) {
    const std::wstring full = Resolve(pattern);
    const std::wstring folder = FolderAbove(full);
    const std::wstring mask = NameOf(full);
    if (mask != L"*.*" && mask != L"*") {
        std::fprintf(stderr, "fake platform: no listing by %s\n", Narrow(pattern).c_str());
        std::abort();
    }
    const Entry* const listed = Look(folder);
    if (listed == nullptr || IsTooLong(full)) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (!listed->folder) {
        return ERROR_DIRECTORY;
    }
    if (listed->Has(FileTrait::kDenied)) {
        return ERROR_ACCESS_DENIED;
    }
    Listing made = {folder, {}, 0};
    for (const auto& [key, entry] : entries_) {
        const bool sameLength = entry.path.rfind(L'\\') == folder.size();
        if (&entry != listed && sameLength && Folded(FolderAbove(entry.path)) == Folded(folder)) {
            made.entries.push_back(
                {NameOf(entry.path), entry.Attributes(), static_cast<DWORD>(entry.content.size())});
        }
    }
    std::sort(made.entries.begin(), made.entries.end(), [](const Found& left, const Found& right) {
        return Folded(left.name) < Folded(right.name);
    });
    if (folder != RootOf(folder) && !listed->Has(FileTrait::kNoDots)) {
        made.entries.insert(made.entries.begin(), {{L".", FILE_ATTRIBUTE_DIRECTORY, 0},
                                                   {L"..", FILE_ATTRIBUTE_DIRECTORY, 0}});
    }
    const DWORD end = ListNext(made, first);
    if (end != 0) {
        return ERROR_FILE_NOT_FOUND;
    }
    listing = listings_.Open(std::move(made));
    return 0;
}

DWORD FakeFiles::ListNext(Listing& listing, Found& found) {
    if (listing.next == listing.entries.size()) {
        return ERROR_NO_MORE_FILES;
    }
    found = listing.entries[listing.next];
    ++listing.next;
    return 0;
}

std::vector<std::string> FakeFiles::OpenListings() const {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    std::vector<std::string> open;
    for (const auto& [number, listing] : listings_.All()) {
        open.push_back("listing " + Narrow(listing.folder));
    }
    return open;
}
