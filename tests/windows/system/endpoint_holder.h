// Another process that serves the endpoint "Manager" with an interface of nobody's.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H

#include "support/child_process.h"

namespace PlenxTest {

class EndpointHolder {
public:
    EndpointHolder();
    ~EndpointHolder();

    /// Waits until it serves.
    bool Holds() const;

private:
    HANDLE serving_;
    ChildProcess process_;
};

/// For main: true when this process was started as a holder; it has then held the endpoint until
/// it was no longer wanted.
bool RunAsEndpointHolder(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
