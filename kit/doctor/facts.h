// Holds the names that the library shares with its services, and turns facts into words.

#ifndef PLENXKIT_DOCTOR_FACTS_H
#define PLENXKIT_DOCTOR_FACTS_H

#include <string>

#include "doctor/system.h"

namespace PlenxHost {

struct ServiceRow {
    const char* name;
    const char* endpoint;
    bool installedByInit;
};

constexpr ServiceRow kServiceRows[] = {
    {"PlenxOfficeSvc", "PLENXOfficeService", false},
    {"PlenxPcSvc", "PLENXPCService", true},
    {"PlenxPhoneSvc", "PLENXPhoneService", true},
};

constexpr const char* kDriverName = "Dokan1";
constexpr const char* kDriverFiles[] = {"dokan1.sys", "dokan1.dll", "dokanfuse1.dll"};
constexpr const char* kServiceProgram = "plenxservice.exe";
constexpr const char* kManagerEndpoint = "Manager";

/// "error 5 (access denied)".
std::string ErrorText(std::uint32_t error);
std::string StateText(const ServiceFacts& facts);
std::string StartTypeText(StartType type);

/// The path without quotes and without the prefix that drivers' paths have.
std::string PlainPath(const std::string& registered);
/// Whether two paths are the same, ignoring the case of letters and the kind of separators.
bool SamePath(const std::string& first, const std::string& second);
/// Whether the path is the folder or lies in it.
bool IsWithin(const std::string& path, const std::string& folder);
/// Whether the name begins with the prefix, ignoring case.
bool HasPrefix(const std::string& name, const std::string& lowerCasePrefix);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_FACTS_H
