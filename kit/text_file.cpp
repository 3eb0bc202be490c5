#include "text_file.h"

#include <fstream>
#include <optional>
#include <utility>

#include "ending.h"
#include "support/file.h"

namespace PlenxKit {

std::string ReadText(const std::filesystem::path& file) {
    std::optional<std::string> text = PlenxSupport::ReadWholeFile(file);
    if (!text) {
        throw UsageError("cannot read " + file.u8string());
    }
    return *std::move(text);
}

void WriteText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.flush();
    if (!stream) {
        throw UsageError("cannot write " + file.u8string());
    }
}

void WriteWanted(const std::string& file, const std::string& text) {
    if (!file.empty()) {
        WriteText(std::filesystem::u8path(file), text);
    }
}

}  // namespace PlenxKit
