// Runs a fuzz target over every file of a folder, in order, and checks how many there are. So the
// inputs that the fuzzers found stay tested with any compiler and under every sanitizer.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void Replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    // The copy is on the heap and has the exact size, so that a sanitizer sees a read beyond the
    // end.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: %s FOLDER NUMBER-OF-INPUTS\n", arguments[0]);
        return 2;
    }
    std::size_t inputs = 0;
    for (const std::filesystem::path& file : FilesOf(arguments[1])) {
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);  // after a crash the last name is the one that failed
        Replay(file);
        ++inputs;
    }
    std::printf("%zu inputs replayed of %s\n", inputs, arguments[2]);
    return inputs > 0 && std::to_string(inputs) == arguments[2] ? 0 : 1;
}
