// Another process, which holds the endpoint "Manager".

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H

#include "support/child_process.h"

#include "support/handle.h"

namespace PlenxTest {

class EndpointHolder {
public:
    enum class By {
        kServing,     // a made-up interface; some systems let others serve there as well
        kKeepingOut,  // nobody else can serve there
    };

    explicit EndpointHolder(By how);

    /// Waits until the process holds it.
    bool Holds() const;

private:
    PlenxSupport::Handle serving_;
    ChildProcess process_;
};

/// For main: returns true when this process was started as a holder. It has then held the endpoint
/// until nobody needed it any more.
bool RunAsEndpointHolder(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
