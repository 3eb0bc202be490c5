// plenxkit: the tools for the users of plenxsdk, each of them a command.

#include <iostream>
#include <string>
#include <vector>

#include "command_line.h"

namespace {

int RunOnStandardStreams(const std::vector<std::string>& arguments) {
    std::ios::sync_with_stdio(false);
    const PlenxKit::StandardStreams process;
    const int code = PlenxKit::Run(arguments, {std::cin, std::cout, std::cerr, process});
    std::cout.flush();
    return code;
}

}  // namespace

#ifdef _WIN32
#include "support/wide_text.h"

extern "C" int wmain(int count, wchar_t** arguments) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(PlenxSupport::ToUtf8(arguments[i]));
    }
    return RunOnStandardStreams(texts);
}
#else
int main(int count, char** arguments) {
    return RunOnStandardStreams({arguments + 1, arguments + count});
}
#endif
