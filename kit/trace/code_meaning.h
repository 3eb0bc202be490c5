// In a few words what a result code says.

#ifndef PLENXKIT_TRACE_CODE_MEANING_H
#define PLENXKIT_TRACE_CODE_MEANING_H

#include <cstdint>
#include <string_view>

namespace PlenxTrace {

/// Of a failed call: the library's own codes and those of the RPC runtime. Empty if unknown, as a
/// service's own codes are.
std::string_view CodeMeaning(std::int64_t code);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_CODE_MEANING_H
