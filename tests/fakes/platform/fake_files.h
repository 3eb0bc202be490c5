// The files of the fake machine.
//
// Paths are Windows paths: they have drives or shares and backslashes (a slash counts as one),
// and upper and lower case are the same. A path without a drive begins at C:\, the current
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

/// A file or folder may be special in one of these ways. All but the last protect it. The numbers
/// are the Windows errors of an attempt.
enum class FileTrait {
    kReadOnly,  // removing gives 5
    kInUse,     // a loaded image: removing gives 5; renaming works, and it stays in use
    kPinned,    // a loaded image that is also held: removing and renaming give 5
    kHeldOpen,  // opened without sharing: removing and renaming give 32
    kDenied,    // everything gives 5, even listing it and making something in it
    kNoDots,    // a listing has no "." and "..", as in a root
};

class FakeFiles {
public:
    explicit FakeFiles(std::recursive_mutex& mutex) : mutex_(mutex) {}

    void Reset();

    // All of these also make missing folders above the path.
    void AddFolder(const std::wstring& path);
    void AddFile(const std::wstring& path, const std::string& content = "");
    /// Adds a junction, a folder that shows the content of target.
    void AddFolderLink(const std::wstring& path, const std::wstring& target);
    /// Adds a symbolic link to a file.
    void AddFileLink(const std::wstring& path, const std::wstring& target);

    /// From now on the Windows functions do not reach longer paths, as on a Windows without long
    /// paths. The functions of this class still do.
    void LimitPaths(std::size_t length);

    void Give(const std::wstring& path, FileTrait trait);
    void Take(const std::wstring& path, FileTrait trait);

    bool Exists(const std::wstring& path) const;
    std::string Content(const std::wstring& path) const;
    /// Returns the paths of everything under the folder, sorted. The path of a folder ends with a
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
        std::wstring path;  // in the spelling that made it
        bool folder = false;
        std::string content;
        std::wstring linkTarget;  // empty when it is not a link
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
    /// Replaces every link above the last part of the path by its target.
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
