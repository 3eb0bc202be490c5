#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "standard_streams.h"
#include "support/wide_text.h"

namespace PlenxKit {
namespace {

bool IsConsole(DWORD standardHandle) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

// Not every console that accepts the mode obeys it. One that writes the sequence out as characters
// moves its cursor. This looks for that, and switches the mode off again.
bool ObeysSequences(HANDLE console) {
    constexpr wchar_t kNothing[] = L"\x1b[m";
    constexpr DWORD kLength = 3;
    CONSOLE_SCREEN_BUFFER_INFO before{};
    CONSOLE_SCREEN_BUFFER_INFO after{};
    DWORD count = 0;
    if (!GetConsoleScreenBufferInfo(console, &before) ||
        !WriteConsoleW(console, kNothing, kLength, &count, nullptr) ||
        !GetConsoleScreenBufferInfo(console, &after)) {
        return false;
    }
    const COORD from = before.dwCursorPosition;
    if (from.X == after.dwCursorPosition.X && from.Y == after.dwCursorPosition.Y) {
        return true;
    }
    FillConsoleOutputCharacterW(console, L' ', kLength, from, &count);
    SetConsoleCursorPosition(console, from);
    return false;
}

// The console obeys escape sequences from now on, if it can.
bool MakeTerminal(DWORD standardHandle) {
    const HANDLE console = GetStdHandle(standardHandle);
    DWORD mode = 0;
    if (!GetConsoleMode(console, &mode) ||
        !SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING)) {
        return false;
    }
    if (!ObeysSequences(console)) {
        SetConsoleMode(console, mode);
        return false;
    }
    return true;
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
    line = PlenxSupport::ToUtf8(wide);
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

StandardStreams::StandardStreams()
    : inputIsConsole_(IsConsole(STD_INPUT_HANDLE)), outputIsConsole_(IsConsole(STD_OUTPUT_HANDLE)) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (outputIsConsole_) {
        outputCodePage_ = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
        DWORD mode = 0;
        GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode);
        outputMode_ = mode;
    }
    outputIsTerminal_ = MakeTerminal(STD_OUTPUT_HANDLE);
    errorsAreTerminal_ = MakeTerminal(STD_ERROR_HANDLE);
}

StandardStreams::~StandardStreams() {
    if (outputIsConsole_) {
        SetConsoleOutputCP(outputCodePage_);
        SetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), outputMode_);
    }
}

bool StandardStreams::ReadLine(std::string& line) const {
    return inputIsConsole_ ? ReadConsoleLine(line) : ReadPipeLine(line);
}

}  // namespace PlenxKit
