// The file functions of Windows and of its C runtime.

#include <direct.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "platform/call_text.h"
#include "platform/platform_call.h"

namespace {

// The numbers of the Windows C runtime; this one differs on Linux.
constexpr int kNotEmpty = 41;

// Returns the errno that the C runtime sets for a Windows error.
int ErrnoOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
    case ERROR_FILENAME_EXCED_RANGE:
        return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return EACCES;
    case ERROR_NOT_ENOUGH_MEMORY:
        return ENOMEM;
    case ERROR_ALREADY_EXISTS:
        return EEXIST;
    case ERROR_DIR_NOT_EMPTY:
        return kNotEmpty;
    default:
        return EINVAL;
    }
}

// Functions that list folders distinguish fewer errors.
int ListingErrnoOf(DWORD error) {
    const int number = ErrnoOf(error);
    return number == ENOENT || number == ENOMEM ? number : EINVAL;
}

template <class Action>
int RunCrt(const PlatformCall& call, Action action) {
    if (call.Run(action)) {
        return 0;
    }
    errno = ErrnoOf(GetLastError());
    return -1;
}

FakeFiles::Listing& Known(const PlatformCall& call, std::intptr_t listing) {
    FakeFiles::Listing* const found =
        call.Platform().Files().Listings().Find(static_cast<std::uintptr_t>(listing));
    if (found == nullptr) {
        call.RejectHandle(reinterpret_cast<const void*>(listing));
    }
    return *found;
}

void Fill(_wfinddata64i32_t& data, const FakeFiles::Found& found) {
    std::memset(&data, 0, sizeof(data));
    data.attrib = found.attributes;
    data.size = found.size;
    std::copy_n(found.name.begin(), std::min<std::size_t>(found.name.size(), MAX_PATH - 1),
                data.name);
}

}  // namespace

int _wmkdir(const wchar_t* path) {
    const PlatformCall call("_wmkdir");
    call.Record({Quoted(path)});
    return RunCrt(call, [&] { return call.Platform().Files().MakeFolder(path); });
}

int _wrmdir(const wchar_t* path) {
    const PlatformCall call("_wrmdir");
    call.Record({Quoted(path)});
    return RunCrt(call, [&] { return call.Platform().Files().RemoveFolder(path); });
}

int _wunlink(const wchar_t* path) {
    const PlatformCall call("_wunlink");
    call.Record({Quoted(path)});
    return RunCrt(call, [&] { return call.Platform().Files().RemoveFile(path); });
}

int _waccess(const wchar_t* path, int mode) {
    const PlatformCall call("_waccess");
    call.Record({Quoted(path), std::to_string(mode)});
    return RunCrt(call, [&]() -> DWORD {
        constexpr int kWrite = 2;
        DWORD attributes = 0;
        const DWORD error = call.Platform().Files().Attributes(path, attributes);
        const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
        return error == 0 && (mode & kWrite) != 0 && readOnly ? ERROR_ACCESS_DENIED : error;
    });
}

intptr_t _wfindfirst64i32(const wchar_t* pattern, _wfinddata64i32_t* data) {
    const PlatformCall call("_wfindfirst64i32");
    call.Record({Quoted(pattern)});
    std::uintptr_t listing = 0;
    FakeFiles::Found first;
    if (!call.Run([&] { return call.Platform().Files().List(pattern, listing, first); })) {
        errno = ListingErrnoOf(GetLastError());
        return -1;
    }
    Fill(*data, first);
    return static_cast<intptr_t>(listing);
}

int _wfindnext64i32(intptr_t listing, _wfinddata64i32_t* data) {
    const PlatformCall call("_wfindnext64i32");
    FakeFiles::Listing& known = Known(call, listing);
    call.Record({"listing " + Narrow(known.folder)});
    FakeFiles::Found found;
    if (!call.Run([&] { return call.Platform().Files().ListNext(known, found); })) {
        errno = ListingErrnoOf(GetLastError());
        return -1;
    }
    Fill(*data, found);
    return 0;
}

int _findclose(intptr_t listing) {
    const PlatformCall call("_findclose");
    call.Record({"listing " + Narrow(Known(call, listing).folder)});
    call.Platform().Files().Listings().Close(static_cast<std::uintptr_t>(listing));
    call.Succeed();
    return 0;
}

BOOL MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    const PlatformCall call("MoveFileExW");
    call.Record({Quoted(from), Quoted(to), std::to_string(flags)});
    return call.Run([&] { return call.Platform().Files().Move(from, to, flags); });
}

BOOL DeleteFileW(LPCWSTR path) {
    const PlatformCall call("DeleteFileW");
    call.Record({Quoted(path)});
    return call.Run([&] { return call.Platform().Files().RemoveFile(path); });
}

DWORD GetFileAttributesW(LPCWSTR path) {
    const PlatformCall call("GetFileAttributesW");
    call.Record({Quoted(path)});
    DWORD attributes = 0;
    const bool found =
        call.Run([&] { return call.Platform().Files().Attributes(path, attributes); });
    return found ? attributes : INVALID_FILE_ATTRIBUTES;
}
