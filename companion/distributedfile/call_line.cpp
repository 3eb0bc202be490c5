#include "distributedfile/call_line.h"

#include <fstream>

namespace Office {
namespace {

void AppendHex(std::string& text, unsigned char byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xF]);
}

}  // namespace

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            quoted += "\\x";
            AppendHex(quoted, byte);
            continue;
        }
        if (character == '"' || character == '\\') {
            quoted.push_back('\\');
        }
        quoted.push_back(character);
    }
    quoted.push_back('"');
    return quoted;
}

std::string Hex(const unsigned char* data, int size) {
    std::string hex;
    for (int i = 0; data != nullptr && i < size; ++i) {
        AppendHex(hex, data[i]);
    }
    return hex;
}

void AppendCallLine(const std::filesystem::path& file, const std::string& line) noexcept {
    try {
        std::ofstream(file, std::ios::app | std::ios::binary) << line + '\n';
    } catch (...) {
        // The line must not fail the call that it describes.
    }
}

}  // namespace Office
