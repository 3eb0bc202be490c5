#include "identity.h"

#include <utility>

namespace PlenxService {
namespace {

struct Row {
    const char* nickname;
    const wchar_t* wideNickname;
    const wchar_t* endpoint;
};

constexpr Row kRows[] = {
    {"office", L"office", L"PLENXOfficeService"},
    {"pc", L"pc", L"PLENXPCService"},
    {"phone", L"phone", L"PLENXPhoneService"},
};
constexpr int kRowCount = 3;

}  // namespace

std::optional<Identity> MakeIdentity(int row, std::wstring installFolder, std::wstring dataFolder) {
    if (row < 0 || row >= kRowCount) {
        return std::nullopt;
    }
    return Identity{row, kRows[row].nickname, kRows[row].endpoint, std::move(installFolder),
                    std::move(dataFolder)};
}

int RowOf(std::wstring_view nickname) {
    for (int row = 0; row < kRowCount; ++row) {
        if (nickname == kRows[row].wideNickname) {
            return row;
        }
    }
    return -1;
}

std::optional<Identity> IdentityFromStartArguments(const std::vector<std::wstring>& arguments) {
    if (arguments.size() != 3 || arguments[0].empty() || arguments[1].empty() ||
        arguments[2].size() != 1) {
        return std::nullopt;
    }
    return MakeIdentity(arguments[2][0] - L'0', arguments[0], arguments[1]);
}

}  // namespace PlenxService
