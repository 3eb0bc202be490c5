// The page on the wire protocol, taken apart.

#ifndef PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H
#define PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H

#include <string>
#include <vector>

namespace WirePage {

using Lines = std::vector<std::string>;
using Cells = std::vector<std::string>;

/// Throws when the file is not there.
std::string TextOf(const std::string& path);
Lines LinesOf(const std::string& text);

/// The page itself.
Lines Page();

/// The lines under the heading, up to the next one of its level or above.
Lines Section(const Lines& page, const std::string& heading);

/// The table's rows among the lines, without its two head lines.
std::vector<Cells> RowsOf(const Lines& lines);

/// The text without its code marks.
std::string Unmarked(std::string cell);

}  // namespace WirePage

#endif  // PLENXSDK_TESTS_UNIT_PROTOCOL_PAGE_H
