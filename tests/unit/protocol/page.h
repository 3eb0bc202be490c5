// These functions take the page on the wire protocol apart.

#ifndef PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H
#define PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H

#include <string>
#include <vector>

namespace WirePage {

using Lines = std::vector<std::string>;
using Cells = std::vector<std::string>;

/// Throws when the file does not exist.
std::string TextOf(const std::string& path);
Lines LinesOf(const std::string& text);

/// Returns the page itself.
Lines Page();

/// Returns the lines under the heading, up to the next heading of its level or above.
Lines Section(const Lines& page, const std::string& heading);

/// Returns the rows of the table among the lines, without its two head lines.
std::vector<Cells> RowsOf(const Lines& lines);

/// Returns the text without its code marks.
std::string Unmarked(std::string cell);

}  // namespace WirePage

#endif  // PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H
