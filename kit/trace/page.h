// The page: one HTML file with its style, its script and its data inside.

#ifndef PLENXKIT_TRACE_PAGE_H
#define PLENXKIT_TRACE_PAGE_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "trace/merge.h"
#include "trace/selection.h"
#include "trace/summary.h"

namespace PlenxTrace {

struct PageHead {
    std::string title;
    std::vector<LogFile> logs;
    const Summary& summary;
    const Totals& totals;
    const Plan& plan;
};

/// Writes the page in pieces; the events come one after the other. The stream must outlive it.
class PageWriter {
public:
    PageWriter(std::ostream& out, const PageHead& head);
    void Write(const Shown& shown);
    void Finish();

private:
    std::ostream& out_;
    std::size_t mostLineBytes_;
    std::string rest_;  // the rest of the page, behind the data
    bool first_ = true;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_PAGE_H
