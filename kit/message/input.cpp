#include "message/input.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

#include "message/hex.h"
#include "message/usage.h"
#include "support/file.h"

namespace PlenxMessage {

std::string ContentOf(const std::string& file, std::istream& standardInput) {
    if (file == "-") {
        return {std::istreambuf_iterator<char>(standardInput), {}};
    }
    std::optional<std::string> content = PlenxSupport::ReadWholeFile(std::filesystem::u8path(file));
    if (!content) {
        throw UsageError("cannot read " + file);
    }
    return *std::move(content);
}

PlenxWire::Bytes MessageBytes(const std::string& content) {
    return LooksLikeHex(content) ? FromHex(content)
                                 : PlenxWire::Bytes(content.begin(), content.end());
}

void WriteFile(const std::string& file, const std::string& content) {
    std::ofstream stream(std::filesystem::u8path(file), std::ios::binary);
    if (!stream.write(content.data(), static_cast<std::streamsize>(content.size())).flush()) {
        throw UsageError("cannot write " + file);
    }
}

}  // namespace PlenxMessage
