// The files of page/, which the build puts into the program.

#ifndef PLENXKIT_TRACE_PAGE_PARTS_H
#define PLENXKIT_TRACE_PAGE_PARTS_H

#include <string_view>

namespace PlenxTrace {

/// The page with the places {{title}}, {{style}}, {{data}} and {{script}}.
extern const std::string_view kPageHtml;
extern const std::string_view kStyleCss;
extern const std::string_view kScriptJs;

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_PAGE_PARTS_H
