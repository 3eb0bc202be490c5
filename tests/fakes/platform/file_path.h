// Completes Windows paths and takes them apart, as text.

#ifndef PLENXSDK_FAKES_PLATFORM_FILE_PATH_H
#define PLENXSDK_FAKES_PLATFORM_FILE_PATH_H

#include <string>

/// Returns the path from its drive or share on, with single backslashes and none at the end.
std::wstring FullPath(const std::wstring& path);

/// Returns "C:" or "\\server\share". Takes a full path.
std::wstring RootOf(const std::wstring& path);

/// Returns the folder above, or the root itself for a root. Takes a full path.
std::wstring FolderAbove(const std::wstring& path);

/// Returns the last part. Takes a full path.
std::wstring NameOf(const std::wstring& path);

/// Returns whether the path lies somewhere under the folder. Takes full paths.
bool IsUnder(const std::wstring& path, const std::wstring& folder);

#endif  // PLENXSDK_FAKES_PLATFORM_FILE_PATH_H
