#include "verify/system_facts.h"

#include <windows.h>

#include <string>

#include "doctor/system.h"
#include "support/wide_text.h"

namespace PlenxVerify {
namespace {

constexpr wchar_t kWindows[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr DWORD kMostLetters = 32768;

template <class Function>
Function FunctionOf(const wchar_t* library, const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(library), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

std::string RegisteredText(const wchar_t* name) {
    wchar_t text[256] = {};
    DWORD size = sizeof text - sizeof *text;
    return RegGetValueW(HKEY_LOCAL_MACHINE, kWindows, name, RRF_RT_REG_SZ, nullptr, text, &size) ==
                   ERROR_SUCCESS
               ? PlenxSupport::ToUtf8(text)
               : std::string();
}

std::string RegisteredNumber(const wchar_t* name) {
    DWORD number = 0;
    DWORD size = sizeof number;
    return RegGetValueW(HKEY_LOCAL_MACHINE, kWindows, name, RRF_RT_REG_DWORD, nullptr, &number,
                        &size) == ERROR_SUCCESS
               ? std::to_string(number)
               : std::string();
}

// Most functions report an old version to a program without a manifest. RtlGetVersion does not.
std::string VersionText() {
    const auto getVersion =
        FunctionOf<LONG(WINAPI*)(OSVERSIONINFOEXW*)>(L"ntdll.dll", "RtlGetVersion");
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion == nullptr || getVersion(&version) != 0) {
        return "unknown";
    }
    const std::string revision = RegisteredNumber(L"UBR");
    return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) +
           "." + std::to_string(version.dwBuildNumber) + (revision.empty() ? "" : "." + revision) +
           (version.wProductType == VER_NT_WORKSTATION ? "" : ", a server");
}

// Older versions of Windows do not have all of these texts.
std::string WindowsText() {
    std::string text = VersionText();
    for (const wchar_t* const name : {L"ProductName", L"EditionID", L"DisplayVersion"}) {
        const std::string more = RegisteredText(name);
        text += more.empty() ? "" : ", " + more;
    }
    return text;
}

std::string WineVersion() {
    const auto getVersion = FunctionOf<const char*(__cdecl*)()>(L"ntdll.dll", "wine_get_version");
    return getVersion == nullptr ? "" : getVersion();
}

std::string ProcessorText() {
    SYSTEM_INFO info{};
    GetNativeSystemInfo(&info);
    const std::string kind = info.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64 ? "x64"
                             : info.wProcessorArchitecture == 12                         ? "ARM64"
                                                                                         : "other";
    return std::to_string(info.dwNumberOfProcessors) + ", " + kind;
}

std::string MemoryText() {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    return std::to_string(memory.ullTotalPhys >> 20) + " MiB";
}

std::string LocaleText() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    return PlenxSupport::ToUtf8(name) + ", code page " + std::to_string(GetACP());
}

// Whether drivers need a signature that Microsoft vouches for.
std::string CodeIntegrityText() {
    struct {
        ULONG length = 8;
        ULONG options = 0;
    } information;
    constexpr int kSystemCodeIntegrityInformation = 103;
    constexpr ULONG kEnabled = 1;
    constexpr ULONG kTestSigning = 2;
    constexpr ULONG kHypervisor = 0x400;
    const auto query = FunctionOf<LONG(WINAPI*)(int, void*, ULONG, ULONG*)>(
        L"ntdll.dll", "NtQuerySystemInformation");
    if (query == nullptr ||
        query(kSystemCodeIntegrityInformation, &information, sizeof information, nullptr) != 0) {
        return "unknown";
    }
    return std::string((information.options & kEnabled) != 0 ? "must be signed"
                                                             : "need no signature") +
           ((information.options & kTestSigning) != 0 ? ", test signatures count" : "") +
           ((information.options & kHypervisor) != 0 ? ", watched by the hypervisor" : "");
}

std::string Variable(const wchar_t* name) {
    std::wstring value(kMostLetters, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), kMostLetters));
    return PlenxSupport::ToUtf8(value);
}

// C:\Users\JOHNDO~1
std::string ShortPathOf(const std::string& path) {
    std::wstring text(kMostLetters, L'\0');
    text.resize(GetShortPathNameW(PlenxSupport::ToWide(path).c_str(), text.data(), kMostLetters));
    return PlenxSupport::ToUtf8(text);
}

std::string FolderNameOf(const std::string& path) {
    return path.substr(path.find_last_of('\\') + 1);
}

}  // namespace

Facts FactsOfThisSystem() {
    Facts facts = {
        {"Windows", WindowsText()},
        {"processors", ProcessorText()},
        {"memory", MemoryText()},
        {"locale", LocaleText()},
        {"drivers", CodeIntegrityText()},
        {"rpcrt4.dll", PlenxHost::MakeSystem()
                           ->VersionOf(Variable(L"SystemRoot") + "\\system32\\rpcrt4.dll")
                           .value_or("no version")}};
    if (const std::string wine = WineVersion(); !wine.empty()) {
        facts.insert(facts.begin(), {"Wine", wine + ", which is not Windows"});
    }
    return facts;
}

// The name of the profile's folder often differs from the name of the account.
std::vector<Secret> SecretsOfThisSystem() {
    const std::string profile = Variable(L"USERPROFILE");
    const std::string shortProfile = ShortPathOf(profile);
    return {{profile, "%USERPROFILE%", true},
            {shortProfile, "%USERPROFILE%", true},
            {FolderNameOf(profile), "%USERNAME%"},
            {FolderNameOf(shortProfile), "%USERNAME%"},
            {Variable(L"USERNAME"), "%USERNAME%"},
            {Variable(L"USERDOMAIN"), "%USERDOMAIN%"},
            {Variable(L"COMPUTERNAME"), "%COMPUTERNAME%"}};
}

}  // namespace PlenxVerify
