// Failures on request, so that a host's handling of them can be tried out.

#ifndef COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H
#define COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H

#include <string_view>

namespace Office {

/// The code that a list such as "Start=7,LocalDeviceOffline=12" names for the operation; 0
/// when it names none. Blanks around the parts do not count, a part that makes no sense is
/// passed over, and the first of two parts for one operation holds.
int RequestedFailure(std::string_view list, std::string_view operation) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_REQUESTED_FAILURE_H
