// Tests how a line is typed, and which part of it is shown.

#include "host/line_editor.h"

#include <gtest/gtest.h>

namespace PlenxHost {
namespace {

void Type(LineEditor& editor, const std::wstring& text) {
    for (const wchar_t unit : text) {
        editor.Insert(unit);
    }
}

TEST(LineEditor, TakesWhatIsTypedAtTheCursor) {
    LineEditor editor;
    Type(editor, L"strt\t\x1b pc");  // no control characters
    editor.Home();
    editor.Right();
    editor.Right();
    editor.Insert(L'a');
    EXPECT_EQ(editor.Text(), L"start pc");
    editor.End();
    editor.Backspace();
    editor.Left();
    editor.Delete();
    editor.Delete();
    EXPECT_EQ(editor.Text(), L"start ");
    editor.Clear();
    EXPECT_TRUE(editor.Empty());
}

TEST(LineEditor, StaysWithinTheLine) {
    LineEditor editor;
    editor.Backspace();
    editor.Delete();
    editor.Left();
    editor.Right();
    editor.Insert(L'x');
    editor.Right();
    editor.Delete();
    EXPECT_EQ(editor.Text(), L"x");
    editor.Home();
    editor.Backspace();
    EXPECT_EQ(editor.Text(), L"x");
}

TEST(LineEditor, TakesAPairAsOneCharacter) {
    LineEditor editor;
    Type(editor, {L'a', wchar_t{0xD83D}, wchar_t{0xDE00}, L'b'});
    editor.Left();
    editor.Left();
    editor.Delete();
    EXPECT_EQ(editor.Text(), L"ab");
    Type(editor, {wchar_t{0xD83D}, wchar_t{0xDE00}});
    editor.Backspace();
    EXPECT_EQ(editor.Text(), L"ab");
}

TEST(LineEditor, ShowsOneRowAroundTheCursor) {
    LineEditor editor;
    Type(editor, L"0123456789abcdef");
    const auto expect = [&](std::size_t columns, const std::wstring& line, std::size_t cursor) {
        const LineEditor::View view = editor.Show(L"p> ", columns);
        EXPECT_EQ(view.line, line);
        EXPECT_EQ(view.cursor, cursor);
    };
    expect(80, L"p> 0123456789abcdef", 19);
    expect(20, L"p> 0123456789abcdef", 19);
    expect(19, L"p> 123456789abcdef", 18);
    expect(12, L"56789abcdef", 11);
    editor.Home();
    expect(19, L"p> 0123456789abcde", 3);
    expect(1, L"0", 0);
}

TEST(LineEditor, CompletesCommands) {
    const std::vector<std::wstring> words = {L"start", L"stop", L"set-int", L"set-string"};
    LineEditor editor;
    const auto complete = [&](const std::wstring& text) {
        editor.Clear();
        Type(editor, text);
        editor.Complete(words);
        return editor.Text();
    };
    EXPECT_EQ(complete(L"sta"), L"start ");
    EXPECT_EQ(complete(L"se"), L"set-");
    EXPECT_EQ(complete(L"s"), L"s");
    EXPECT_EQ(complete(L"x"), L"x");
    EXPECT_EQ(complete(L"stop pc"), L"stop pc");
}

}  // namespace
}  // namespace PlenxHost
