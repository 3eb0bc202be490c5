// A line of a script, split into words.
//
// Words are divided by blanks. A word may hold parts in double quotes, in which blanks
// count and these escapes stand for a byte: \\ \" \n \r \t \xNN. Outside quotes every
// character stands for itself, so that Windows paths need no care. A word that begins
// with # starts a comment.

#ifndef PLENXKIT_HOST_SCRIPT_PARSER_H
#define PLENXKIT_HOST_SCRIPT_PARSER_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace PlenxHost {

/// A mistake in a line. The text is for the person who wrote the line.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Word {
    std::string text;
    /// That many bytes at the front were not quoted. Only there does the parser look for special
    /// forms such as repeat:3:x, so that "repeat:3:x" in quotes is just a text.
    std::size_t bare = 0;

    /// True when the word begins with the unquoted prefix.
    bool Has(std::string_view prefix) const;
    /// True when the word is the given one, unquoted.
    bool Is(std::string_view whole) const;
};

struct SplitLine {
    std::vector<Word> words;
    std::string text;  ///< The line without its comment and the blanks around it.
};

/// @throws ScriptError
SplitLine SplitWords(std::string_view line);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_SCRIPT_PARSER_H
