// Windows paths as text: made whole, and taken apart.

#ifndef PLENXSDK_FAKES_PLATFORM_FILE_PATH_H
#define PLENXSDK_FAKES_PLATFORM_FILE_PATH_H

#include <string>

/// From a drive or share on, with single backslashes and none at the end.
std::wstring FullPath(const std::wstring& path);

/// "C:" or "\\server\share". Takes a full path.
std::wstring RootOf(const std::wstring& path);

/// The folder above; of a root the root itself. Takes a full path.
std::wstring FolderAbove(const std::wstring& path);

/// The last part. Takes a full path.
std::wstring NameOf(const std::wstring& path);

/// Whether the path lies somewhere under the folder. Takes full paths.
bool IsUnder(const std::wstring& path, const std::wstring& folder);

#endif  // PLENXSDK_FAKES_PLATFORM_FILE_PATH_H
