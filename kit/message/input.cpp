#include "message/input.h"

#include <filesystem>
#include <iterator>

#include "message/hex.h"
#include "text_file.h"

namespace PlenxMessage {

std::string ContentOf(const std::string& file, std::istream& standardInput) {
    if (file == "-") {
        return {std::istreambuf_iterator<char>(standardInput), {}};
    }
    return PlenxKit::ReadText(std::filesystem::u8path(file));
}

PlenxWire::Bytes MessageBytes(const std::string& content) {
    return LooksLikeHex(content) ? FromHex(content)
                                 : PlenxWire::Bytes(content.begin(), content.end());
}

}  // namespace PlenxMessage
