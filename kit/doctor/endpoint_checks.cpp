// Checks who serves which RPC endpoint, and whether the services answer.

#include <string>

#include "doctor/checks.h"
#include "doctor/facts.h"

namespace PlenxHost {
namespace {

bool HasInstalledServices(System& system) {
    for (const ServiceRow& row : kServiceRows) {
        if (row.installedByInit && system.Service(row.name).error == kNoError) {
            return true;
        }
    }
    return false;
}

void CheckManager(System& system, Findings& findings) {
    const std::string name = kManagerEndpoint;
    if (!system.IsServed(name)) {
        findings.Ok(name + " is free: no host is running");
    } else if (HasInstalledServices(system)) {
        findings.Note(
            name + " is taken: a host is running",
            "Only one host at a time can hear the services. End this one before you start another; "
            "this one is fine.");
    } else {
        findings.Problem(
            name + " is taken, but no host has registered its services",
            "End the program that serves it. It is a host whose Init failed, or another "
            "product. Until then it gets the services' notifications.");
    }
}

void CheckPing(const ServiceRow& row, System& system, Findings& findings) {
    const std::string endpoint = row.endpoint;
    const PingAnswer answer = system.Ping(endpoint);
    switch (answer.kind) {
    case PingAnswer::Kind::kAnswered:
        if (answer.code == 0) {
            findings.Ok(endpoint + " answers a ping (" + std::to_string(answer.milliseconds) +
                        " ms)");
        } else {
            findings.Problem(endpoint + " answers a ping with " + std::to_string(answer.code),
                             "A Start waits five seconds for a 0 and then goes on. Look at the "
                             "service's log.");
        }
        break;
    case PingAnswer::Kind::kFailed:
        findings.Problem(
            endpoint +
                " failed to answer a ping: " + ErrorText(static_cast<std::uint32_t>(answer.code)),
            "Look at the service's log. 1717 means that the program which serves the endpoint does "
            "not know the interface.");
        break;
    case PingAnswer::Kind::kTimedOut:
        findings.Problem(endpoint + " has not answered a ping within " +
                             std::to_string(answer.milliseconds) + " ms",
                         "The service hangs, and so does every call of the library to it. End its "
                         "process.");
        break;
    }
}

void CheckEndpoint(const ServiceRow& row, System& system, Findings& findings) {
    const std::string endpoint = row.endpoint;
    const ServiceFacts facts = system.Service(row.name);
    const bool runs = facts.error == kNoError && facts.state == ServiceState::kRunning;
    if (!system.IsServed(endpoint)) {
        if (runs) {
            findings.Problem(endpoint + " is not served, though " + row.name + " is running",
                             "Every call to this service will fail. Look at the service's log for "
                             "why it did not listen, and restart it.");
        } else {
            findings.Ok(endpoint + " is free: its service is not running");
        }
        return;
    }
    if (!runs) {
        findings.Note(endpoint + " is served, though " + row.name + " is not running",
                      "Another program serves it, such as plenxservice --console. The service "
                      "cannot serve it until that program ends.");
    }
    CheckPing(row, system, findings);
}

}  // namespace

void CheckEndpoints(const Patient&, System& system, Findings& findings) {
    CheckManager(system, findings);
    for (const ServiceRow& row : kServiceRows) {
        CheckEndpoint(row, system, findings);
    }
}

}  // namespace PlenxHost
