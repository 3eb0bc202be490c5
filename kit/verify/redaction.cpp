#include "verify/redaction.h"

#include <algorithm>

namespace PlenxVerify {
namespace {

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

char Lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Windows ignores the case of letters in names. To do so for ASCII letters is enough, because the
// other letters come from the same place every time.
bool Begins(const std::string& text, std::size_t at, const std::string& what) {
    return text.size() - at >= what.size() &&
           std::equal(what.begin(), what.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char one, char other) { return Lowered(one) == Lowered(other); });
}

bool IsOfWord(char letter) {
    const char small = Lowered(letter);
    return (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9') ||
           static_cast<unsigned char>(letter) >= 0x80;
}

bool IsWholeWord(const std::string& text, std::size_t at, std::size_t size) {
    return (at == 0 || !IsOfWord(text[at - 1])) &&
           (at + size == text.size() || !IsOfWord(text[at + size]));
}

std::string Without(const Secret& secret, const std::string& text) {
    std::string result;
    for (std::size_t at = 0; at != text.size();) {
        if (Begins(text, at, secret.text) &&
            (secret.isPath || IsWholeWord(text, at, secret.text.size()))) {
            result += secret.replacement;
            at += secret.text.size();
        } else {
            result += text[at++];
        }
    }
    return result;
}

// A text may hold a path as it is or with slashes. JSON and regular expressions hold it with two
// backslashes in place of one.
std::vector<Secret> FormsOf(const Secret& secret) {
    if (!secret.isPath) {
        return {secret};
    }
    return {{Replaced(secret.text, "\\", "\\\\"), secret.replacement, true},
            secret,
            {Replaced(secret.text, "\\", "/"), secret.replacement, true}};
}

}  // namespace

Redaction::Redaction(std::vector<Secret> secrets) {
    for (const Secret& secret : secrets) {
        if (!secret.text.empty()) {
            const std::vector<Secret> forms = FormsOf(secret);
            secrets_.insert(secrets_.end(), forms.begin(), forms.end());
        }
    }
    // A path goes before the name that is a part of it.
    std::stable_sort(secrets_.begin(), secrets_.end(), [](const Secret& one, const Secret& other) {
        return one.text.size() > other.text.size();
    });
}

std::string Redaction::Of(const std::string& text) const {
    std::string result = text;
    for (const Secret& secret : secrets_) {
        result = Without(secret, result);
    }
    return result;
}

RunRecord Redaction::Of(RunRecord run) const {
    const auto clean = [this](std::string& text) { text = Of(text); };
    for (auto& [name, value] : run.system) {
        clean(value);
    }
    std::for_each(run.leftBehind.begin(), run.leftBehind.end(), clean);
    for (StageRecord& stage : run.stages) {
        std::for_each(stage.removed.begin(), stage.removed.end(), clean);
        for (PartRecord& part : stage.parts) {
            clean(part.problem);
            for (Case& one : part.cases) {
                clean(one.name);
                clean(one.text);
                for (auto& [name, value] : one.recorded) {
                    clean(value);
                }
            }
        }
    }
    return run;
}

}  // namespace PlenxVerify
