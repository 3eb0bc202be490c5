// The files of the fake machine.
//
// Paths are Windows paths: drives or shares, backslashes (a slash counts as one), no
// difference between upper and lower case. A path without a drive begins at C:\, the current
// folder. Every drive that was ever used exists.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_FILES_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_FILES_H

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "platform/handle_table.h"

/// What is special about a file or folder. All but the last protect it.
enum class FileTrait {
    kReadOnly,  // removing: 5
    kInUse,     // a loaded image. Removing: 5; renaming works and it stays in use
    kPinned,    // a loaded image that is also held. Removing and renaming: 5
    kHeldOpen,  // opened without sharing. Removing and renaming: 32
    kDenied,    // everything: 5, also listing it and making something in it
    kNoDots,    // a listing begins with a real entry, as it does in a root
};

class FakeFiles {
public:
    explicit FakeFiles(std::recursive_mutex& mutex) : mutex_(mutex) {}

    void Reset();

    // All of these make missing folders above the path.
    void AddFolder(const std::wstring& path);
    void AddFile(const std::wstring& path, const std::string& content = "");
    /// A junction: a folder in name, whose content is that of target.
    void AddFolderLink(const std::wstring& path, const std::wstring& target);
    /// A symbolic link to a file.
    void AddFileLink(const std::wstring& path, const std::wstring& target);

    /// From now on the functions do not reach paths that are longer, as Windows without long
    /// paths; those of a test still do.
    void LimitPaths(std::size_t length);

    void Give(const std::wstring& path, FileTrait trait);
    void Take(const std::wstring& path, FileTrait trait);

    bool Exists(const std::wstring& path) const;
    std::string Content(const std::wstring& path) const;
    /// The paths of everything under the folder, sorted; a path that is a folder ends with a
    /// backslash. Links are not followed.
    std::vector<std::string> Tree(const std::wstring& folder) const;

    // For the fake functions: each returns a Windows error, or 0.
    struct Found {
        std::wstring name;
        DWORD attributes;
        DWORD size;
    };
    struct Listing {
        std::wstring folder;
        std::vector<Found> entries;
        std::size_t next;
    };
    HandleTable<Listing>& Listings() { return listings_; }
    DWORD MakeFolder(const std::wstring& path);
    DWORD RemoveFolder(const std::wstring& path);
    DWORD RemoveFile(const std::wstring& path);
    DWORD Move(const std::wstring& from, const std::wstring& to, DWORD flags);
    DWORD Attributes(const std::wstring& path, DWORD& attributes) const;
    DWORD List(const std::wstring& pattern, std::uintptr_t& listing, Found& first);
    DWORD ListNext(Listing& listing, Found& found);
    std::vector<std::string> OpenListings() const;

private:
    struct Entry {
        std::wstring path;  // as spelled when it was made
        bool folder = false;
        std::string content;
        std::wstring linkTarget;  // empty: no link
        std::set<FileTrait> traits;

        bool Has(FileTrait trait) const { return traits.count(trait) != 0; }
        bool IsLink() const { return !linkTarget.empty(); }
        bool IsProtected() const { return traits.size() > traits.count(FileTrait::kNoDots); }
        DWORD Attributes() const;
    };
    using Entries = std::map<std::wstring, Entry>;  // by folded path

    Entry& Add(const std::wstring& path, bool folder);
    Entry& At(const std::wstring& path);
    const Entry* Look(const std::wstring& path) const;
    /// The path with every link above its last part replaced by the target.
    std::wstring Resolve(const std::wstring& path) const;
    DWORD FindEntry(const std::wstring& resolved) const;
    bool IsTooLong(const std::wstring& path) const { return path.size() > longestPath_; }
    DWORD CheckFolderAbove(const std::wstring& resolved) const;
    bool IsEmptyFolder(const std::wstring& resolved) const;
    DWORD CheckTarget(const std::wstring& to, bool replace, bool sourceIsFolder) const;
    void Rename(const std::wstring& from, const std::wstring& to);

    std::recursive_mutex& mutex_;
    Entries entries_;
    HandleTable<Listing> listings_;
    bool hasLinks_ = false;
    std::size_t longestPath_ = 0;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_FILES_H
