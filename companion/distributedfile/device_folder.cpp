#include "distributedfile/device_folder.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace Office {
namespace {

constexpr std::string_view kForbidden = "<>:\"/\\|?*%\x7F";

bool IsForbidden(char character) {
    return static_cast<unsigned char>(character) < 0x20 ||
           kForbidden.find(character) != std::string_view::npos;
}

bool IsDigitFrom1(char character) {
    return character >= '1' && character <= '9';
}

// In every folder, Windows treats these names as devices, in upper or lower case, with any
// extension and with blanks before it. The port number may also be a superscript 1 to 3.
bool IsDeviceName(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    if (stem == "CON" || stem == "PRN" || stem == "AUX" || stem == "NUL" || stem == "CONIN$" ||
        stem == "CONOUT$") {
        return true;
    }
    const std::string port = stem.substr(0, 3);
    const std::string number = stem.size() > 3 ? stem.substr(3) : "";
    return (port == "COM" || port == "LPT") &&
           ((number.size() == 1 && IsDigitFrom1(number[0])) || number == "\u00B9" ||
            number == "\u00B2" || number == "\u00B3");
}

void AppendEscape(std::string& folder, char character) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    folder.push_back('%');
    folder.push_back(kDigits[byte >> 4]);
    folder.push_back(kDigits[byte & 0xF]);
}

}  // namespace

std::string FolderName(const std::string& name) {
    const bool isDevice = IsDeviceName(name);
    std::string folder;
    for (std::size_t i = 0; i != name.size(); ++i) {
        const char character = name[i];
        const bool isLostAtEnd = i + 1 == name.size() && (character == '.' || character == ' ');
        if (IsForbidden(character) || isLostAtEnd || (isDevice && i == 0)) {
            AppendEscape(folder, character);
        } else {
            folder.push_back(character);
        }
    }
    return folder;
}

bool MakeDeviceFolder(const std::string& dataFolder, const std::string& group,
                      const std::string& device, std::string& dir) noexcept {
    try {
        std::filesystem::path folder = std::filesystem::u8path(dataFolder) / "office" /
                                       std::filesystem::u8path(FolderName(group)) /
                                       std::filesystem::u8path(FolderName(device));
        folder.make_preferred();
        std::filesystem::create_directories(folder);
        dir = folder.u8string();
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace Office
