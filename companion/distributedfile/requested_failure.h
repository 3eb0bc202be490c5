// Operations fail on request, so that a host can test how it handles failures.

#ifndef COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H
#define COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H

#include <string_view>

namespace Office {

/// Returns the code that a list such as "Start=7,LocalDeviceOffline=12" names for the operation,
/// or 0 when it names none. Blanks around the parts do not count. A part that makes no sense is
/// skipped. The first of two parts for one operation wins.
int RequestedFailure(std::string_view list, std::string_view operation) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H
