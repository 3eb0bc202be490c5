// A job: a set of processes that end together.

#ifndef PLENXSUPPORT_JOB_H
#define PLENXSUPPORT_JOB_H

#include <windows.h>

#include "support/handle.h"

namespace PlenxSupport {

/// The processes of the job, and those that they start, end when the handle is closed. A process
/// that crashes shows no window.
inline Handle MakeJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_JOB_H
