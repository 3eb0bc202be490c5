#include "host/console.h"

#include <windows.h>

#include "host/commands.h"
#include "support/wide_text.h"

namespace PlenxHost {
namespace {

constexpr DWORD kLookAgain = 200;  // milliseconds between looks at whether the run has ended
constexpr wchar_t kControlD = 0x04;
constexpr wchar_t kControlZ = 0x1A;

HANDLE Input() {
    return GetStdHandle(STD_INPUT_HANDLE);
}

void Put(const std::wstring& text) {
    DWORD count = 0;
    WriteConsoleW(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()),
                  &count, nullptr);
}

std::size_t Columns() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) && info.dwSize.X > 0
               ? static_cast<std::size_t>(info.dwSize.X)
               : 80;
}

std::vector<std::wstring> CommandNames() {
    std::vector<std::wstring> names;
    for (const Command& command : Commands()) {
        names.push_back(PlenxSupport::ToWide(command.name));
    }
    return names;
}

}  // namespace

Console::Console(Output& output) : output_(output), words_(CommandNames()) {
    output_.Attach(this);
}

Console::~Console() {
    output_.Attach(nullptr);
}

bool Console::ReadLine(std::string& line, const std::function<bool()>& hasEnded) {
    output_.Exclusively([&] { Begin(); });
    Step step = Step::kGoOn;
    while (step == Step::kGoOn) {
        if (hasEnded()) {
            step = Step::kEnd;
        } else if (WaitForSingleObject(Input(), kLookAgain) == WAIT_OBJECT_0) {
            step = TakeKey();
        }
    }
    output_.Exclusively([&] {
        line = PlenxSupport::ToUtf8(editor_.Text());
        Finish();
    });
    return step == Step::kLine;
}

Console::Step Console::TakeKey() {
    INPUT_RECORD record{};
    DWORD count = 0;
    if (!ReadConsoleInputW(Input(), &record, 1, &count) || count == 0) {
        return Step::kEnd;
    }
    if (record.EventType != KEY_EVENT) {
        return Step::kGoOn;
    }
    const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
    // A character that is typed with Alt and the number pad comes when Alt goes up.
    const bool composed = key.wVirtualKeyCode == VK_MENU && key.uChar.UnicodeChar != 0;
    if (!key.bKeyDown && !composed) {
        return Step::kGoOn;
    }
    Step step = Step::kGoOn;
    output_.Exclusively([&] {
        for (WORD n = 0; n < key.wRepeatCount && step == Step::kGoOn; ++n) {
            step = Press(key.wVirtualKeyCode, key.uChar.UnicodeChar);
        }
        Show();
    });
    return step;
}

Console::Step Console::Press(unsigned key, wchar_t unit) {
    switch (key) {
    case VK_RETURN:
        return Step::kLine;
    case VK_BACK:
        editor_.Backspace();
        return Step::kGoOn;
    case VK_DELETE:
        editor_.Delete();
        return Step::kGoOn;
    case VK_LEFT:
        editor_.Left();
        return Step::kGoOn;
    case VK_RIGHT:
        editor_.Right();
        return Step::kGoOn;
    case VK_HOME:
        editor_.Home();
        return Step::kGoOn;
    case VK_END:
        editor_.End();
        return Step::kGoOn;
    case VK_ESCAPE:
        editor_.Clear();
        return Step::kGoOn;
    case VK_TAB:
        editor_.Complete(words_);
        return Step::kGoOn;
    default:
        break;
    }
    if (unit == L'\r') {
        return Step::kLine;
    }
    if (editor_.Empty() && (unit == kControlZ || unit == kControlD)) {
        return Step::kEnd;
    }
    editor_.Insert(unit);
    return Step::kGoOn;
}

void Console::Begin() {
    editor_.Clear();
    reading_ = true;
    drawn_ = 0;
    Show();
}

void Console::Finish() {
    editor_.End();
    Show();
    Put(L"\r\n");
    reading_ = false;
}

// Writes blanks over the drawn text, because every console can do that.
void Console::Hide() {
    if (reading_) {
        Put(L"\r" + std::wstring(drawn_, L' ') + L"\r");
        drawn_ = 0;
    }
}

void Console::Show() {
    if (!reading_) {
        return;
    }
    const LineEditor::View view = editor_.Show(PlenxSupport::ToWide(state_.Prompt()), Columns());
    const std::size_t length = view.line.size();
    const std::wstring rest(drawn_ > length ? drawn_ - length : 0, L' ');
    Put(L"\r" + view.line + rest + std::wstring(length + rest.size() - view.cursor, L'\b'));
    drawn_ = length;
}

}  // namespace PlenxHost
