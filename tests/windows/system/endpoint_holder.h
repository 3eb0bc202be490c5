// Another process that has the endpoint "Manager".

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H

#include "support/child_process.h"

#include "support/handle.h"

namespace PlenxTest {

class EndpointHolder {
public:
    enum class By {
        kServing,     // an interface of nobody's; Wine lets others serve there as well
        kKeepingOut,  // the place where Wine makes the endpoint's pipe: nobody else can
    };

    explicit EndpointHolder(By how);

    /// Waits until it does.
    bool Holds() const;

private:
    PlenxSupport::Handle serving_;
    ChildProcess process_;
};

/// For main: true when this process was started as a holder; it has then held the endpoint until
/// it was no longer wanted.
bool RunAsEndpointHolder(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_ENDPOINT_HOLDER_H
