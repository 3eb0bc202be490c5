// The parts that the reports for the browser share. Each report is one page that loads nothing from
// the network.

#ifndef PLENXKIT_REPORT_PAGE_H
#define PLENXKIT_REPORT_PAGE_H

#include <string>

namespace PlenxKit {

/// The beginning of a page. style: the rules that this page adds. The classes "passed" and "failed"
/// are known.
std::string PageHead(const std::string& title, const std::string& style);

/// A text in the style of that class.
std::string Marked(const std::string& style, const std::string& text);

constexpr const char* kPageEnd = "</body>\n</html>\n";

}  // namespace PlenxKit

#endif  // PLENXKIT_REPORT_PAGE_H
