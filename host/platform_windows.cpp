#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>

#include "platform.h"
#include "wide.h"

namespace PlenxHost {
namespace {

bool IsConsole(DWORD standardHandle) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

bool ReadConsoleLine(std::string& line) {
    std::wstring wide;
    wchar_t part[512];
    DWORD count = 0;
    while (ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), part, 512, &count, nullptr) && count != 0) {
        wide.append(part, count);
        if (wide.back() == L'\n') {
            break;
        }
    }
    constexpr wchar_t kControlZ = 0x1A;
    if (wide.empty() || wide[0] == kControlZ) {
        return false;
    }
    line = WideToUtf8(wide);
    return true;
}

bool ReadPipeLine(std::string& line) {
    line.clear();
    int byte = std::getc(stdin);
    if (byte == EOF) {
        return false;
    }
    for (; byte != EOF && byte != '\n'; byte = std::getc(stdin)) {
        line.push_back(static_cast<char>(byte));
    }
    return true;
}

}  // namespace

std::uint32_t CurrentThreadNumber() {
    return GetCurrentThreadId();
}

StandardStreams::StandardStreams() : inputIsConsole_(IsConsole(STD_INPUT_HANDLE)) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (IsConsole(STD_OUTPUT_HANDLE)) {
        consoleCodePage_ = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
    }
}

StandardStreams::~StandardStreams() {
    if (consoleCodePage_ != 0) {
        SetConsoleOutputCP(consoleCodePage_);
    }
}

bool StandardStreams::ReadLine(std::string& line) const {
    return inputIsConsole_ ? ReadConsoleLine(line) : ReadPipeLine(line);
}

void EndProcess(int exitCode) {
    ExitProcess(static_cast<UINT>(exitCode));
}

}  // namespace PlenxHost
