// Says which of the three services this process is, and where it works. The library hands this over
// when it starts the service; on the console it comes from the command line.

#ifndef PLENXSERVICE_IDENTITY_H
#define PLENXSERVICE_IDENTITY_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PlenxService {

struct Identity {
    int row = 0;
    std::string nickname;  // "office", "pc" or "phone"
    std::wstring endpoint;
    std::wstring installFolder;
    std::wstring dataFolder;
};

/// @return nothing unless row is 0, 1 or 2.
std::optional<Identity> MakeIdentity(int row, std::wstring installFolder, std::wstring dataFolder);

/// Returns -1 when there is no such service.
int RowOf(std::wstring_view nickname);

/// Takes the arguments after the service's name: install folder, data folder, row digit.
std::optional<Identity> IdentityFromStartArguments(const std::vector<std::wstring>& arguments);

}  // namespace PlenxService

#endif  // PLENXSERVICE_IDENTITY_H
