// plenxtrace: makes a page from logs, to look at in a browser.

#include <iostream>

#include "command_line.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "text/text.h"
#endif

namespace PlenxTrace {
namespace {

int RunOnStandardStreams(const std::vector<std::string>& arguments) {
    std::ios::sync_with_stdio(false);
    const int code = Run(arguments, {std::cout, std::cerr});
    std::cout.flush();
    return code;
}

}  // namespace
}  // namespace PlenxTrace

#ifdef _WIN32
extern "C" int wmain(int count, wchar_t** arguments) {
    SetConsoleOutputCP(CP_UTF8);
    // Text gets the same line ends as on every other system.
    _setmode(_fileno(stdout), _O_BINARY);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(PlenxText::ToUtf8(arguments[i]));
    }
    return PlenxTrace::RunOnStandardStreams(texts);
}
#else
int main(int count, char** arguments) {
    return PlenxTrace::RunOnStandardStreams({arguments + 1, arguments + count});
}
#endif
