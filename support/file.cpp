#include "support/file.h"

#include <fstream>
#include <iterator>

namespace PlenxSupport {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    // Linux opens folders too; only reading them fails.
    stream.peek();
    if (!stream.is_open() || stream.bad()) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

}  // namespace PlenxSupport
