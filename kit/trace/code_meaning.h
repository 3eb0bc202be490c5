// Says in a few words what a result code means.

#ifndef PLENXKIT_TRACE_CODE_MEANING_H
#define PLENXKIT_TRACE_CODE_MEANING_H

#include <cstdint>
#include <string_view>

namespace PlenxTrace {

/// Knows the codes of failed calls: the library's own and those of the RPC runtime. The text is
/// empty for an unknown code, such as a service's own.
std::string_view CodeMeaning(std::int64_t code);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_CODE_MEANING_H
