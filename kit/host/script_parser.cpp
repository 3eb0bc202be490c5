#include "host/script_parser.h"

#include "host/text.h"

namespace PlenxHost {
namespace {

bool IsBlank(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

class LineSplitter {
public:
    explicit LineSplitter(std::string_view line) : rest_(line) {}

    SplitLine Split() {
        SkipBlanks();
        const std::string_view whole = rest_;
        SplitLine split;
        while (!rest_.empty() && rest_[0] != '#') {
            split.words.push_back(TakeWord());
            split.text = whole.substr(0, whole.size() - rest_.size());
            SkipBlanks();
        }
        return split;
    }

private:
    void SkipBlanks() {
        while (!rest_.empty() && IsBlank(rest_[0])) {
            rest_.remove_prefix(1);
        }
    }

    char TakeByte() {
        const char byte = rest_[0];
        rest_.remove_prefix(1);
        return byte;
    }

    Word TakeWord() {
        Word word;
        bool quoted = false;
        while (!rest_.empty() && !IsBlank(rest_[0])) {
            if (rest_[0] == '"') {
                quoted = true;
                TakeQuoted(word.text);
                continue;
            }
            word.text.push_back(TakeByte());
            if (!quoted) {
                ++word.bare;
            }
        }
        return word;
    }

    void TakeQuoted(std::string& text) {
        TakeByte();
        while (!rest_.empty()) {
            const char byte = TakeByte();
            if (byte == '"') {
                return;
            }
            text.push_back(byte == '\\' ? TakeEscape() : byte);
        }
        throw ScriptError("a closing \" is missing");
    }

    char TakeEscape() {
        const char letter = rest_.empty() ? '\0' : TakeByte();
        switch (letter) {
        case '\\':
        case '"':
            return letter;
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'x':
            if (const auto byte = FromHex(rest_.substr(0, 2)); byte && byte->size() == 1) {
                rest_.remove_prefix(2);
                return (*byte)[0];
            }
            throw ScriptError("\\x needs two hexadecimal digits");
        default:
            throw ScriptError("in quotes, write \\\\ \\\" \\n \\r \\t or \\xNN after a backslash");
        }
    }

    std::string_view rest_;
};

}  // namespace

bool Word::Has(std::string_view prefix) const {
    return bare >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

bool Word::Is(std::string_view whole) const {
    return bare == text.size() && text == whole;
}

SplitLine SplitWords(std::string_view line) {
    return LineSplitter(line).Split();
}

}  // namespace PlenxHost
