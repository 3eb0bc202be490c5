#include "companion/run_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "companion/logging_hosts.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

constexpr DWORD kDeadline = 20000;

}  // namespace

std::wstring HostCommand(const std::string& mode) {
    return ChildProcess::Self(L"--host " + PlenxSupport::ToWide(mode));
}

void ExpectHostExits(ChildProcess& host, const std::string& mode) {
    ASSERT_TRUE(host.Started());
    const auto code = host.WaitForExit(kDeadline);
    ASSERT_TRUE(code.has_value()) << "the host hangs";
    ASSERT_EQ(*code, static_cast<DWORD>(FindLoggingHost(mode)->exitCode));
}

void RunHost(const std::string& mode) {
    ChildProcess host(HostCommand(mode));
    ExpectHostExits(host, mode);
}

int Repetitions() {
    const char* const text = std::getenv("PLENX_TEST_ENDINGS");
    return text != nullptr ? std::stoi(text) : 50;
}

}  // namespace PlenxTest
