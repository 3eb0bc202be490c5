// Text in columns.

#ifndef PLENXKIT_MESSAGE_COLUMNS_H
#define PLENXKIT_MESSAGE_COLUMNS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace PlenxMessage {

constexpr std::size_t kPageWidth = 100;

/// Cuts text into lines with at most that many characters. It cuts after a comma, or else at a
/// blank, if the last third of the line has one.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

/// Two blanks, then the label, then the text, wrapped to the page beside the label.
std::string Hanging(const std::string& label, std::string_view text);

std::string PadLeft(const std::string& text, std::size_t width);
std::string PadRight(const std::string& text, std::size_t width);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_COLUMNS_H
