#include "page.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "support/file.h"

namespace WirePage {
namespace {

std::size_t LevelOf(const std::string& line) {
    const std::size_t level = line.find_first_not_of('#');
    return level != std::string::npos && level > 0 && line[level] == ' ' ? level : 0;
}

std::string Trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

Cells CellsOf(const std::string& row) {
    std::istringstream stream(row.substr(1));
    Cells cells;
    for (std::string cell; std::getline(stream, cell, '|');) {
        cells.push_back(Trimmed(cell));
    }
    return cells;
}

bool IsRow(const std::string& line) {
    return !line.empty() && line.front() == '|';
}

}  // namespace

std::string TextOf(const std::string& path) {
    auto text = PlenxSupport::ReadWholeFile(path);
    if (!text) {
        throw std::runtime_error("no " + path);
    }
    return *text;
}

Lines LinesOf(const std::string& text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

Lines Page() {
    return LinesOf(TextOf(DOCS "/wire-protocol.md"));
}

Lines Section(const Lines& page, const std::string& heading) {
    const auto begin = std::find(page.begin(), page.end(), heading);
    if (begin == page.end()) {
        throw std::runtime_error("the page has no " + heading);
    }
    const auto end = std::find_if(begin + 1, page.end(), [&](const std::string& line) {
        const std::size_t level = LevelOf(line);
        return level > 0 && level <= LevelOf(heading);
    });
    return {begin + 1, end};
}

std::vector<Cells> RowsOf(const Lines& lines) {
    std::vector<Cells> rows;
    for (const std::string& line : lines) {
        if (IsRow(line)) {
            rows.push_back(CellsOf(line));
        }
    }
    rows.erase(rows.begin(), rows.begin() + std::min<std::ptrdiff_t>(2, rows.end() - rows.begin()));
    return rows;
}

std::string Unmarked(std::string cell) {
    cell.erase(std::remove(cell.begin(), cell.end(), '`'), cell.end());
    return cell;
}

}  // namespace WirePage
