// Makes tests that are host processes. HOST_TEST(Suite, Name) { ... } is a test whose body runs in
// a process of its own. The parent starts this program again for that one test, with a log file of
// its own, and takes over its outcome and what it has recorded. Afterwards nothing of the services
// remains.
//
// Suite is a class derived from HostTest. The body is a member of it. The body, the constructor and
// the destructor run in the child only.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_OWN_PROCESS_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_OWN_PROCESS_H

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

namespace PlenxTest {

class HostTest {
public:
    virtual ~HostTest() = default;
    virtual void Run() = 0;
};

/// GoogleTest sees this of a HOST_TEST.
class InOwnProcess : public testing::Test {
public:
    using Body = void (*)();
    explicit InOwnProcess(Body body) : body_(body) {}

private:
    void TestBody() override;
    void RunChild();

    Body body_;
};

/// Returns the files of the running test: the library's log, the services' log.
std::filesystem::path LibraryLogFile();
std::filesystem::path ServiceLogFile();

/// Replaces RUN_ALL_TESTS in main. longestTest: in milliseconds; a test that takes longer hangs.
int RunAllTests(unsigned long longestTest = 90 * 1000);

}  // namespace PlenxTest

// NOLINTBEGIN(bugprone-macro-parentheses): the name of a base class cannot have any.
#define HOST_TEST(Suite, Name)                                                          \
    class Suite##_##Name : public Suite {                                               \
        void Run() override;                                                            \
    };                                                                                  \
    [[maybe_unused]] const testing::TestInfo* const k##Suite##_##Name =                 \
        testing::RegisterTest(#Suite, #Name, nullptr, nullptr, __FILE__, __LINE__, [] { \
            return new PlenxTest::InOwnProcess([] {                                     \
                PlenxTest::HostTest&& host = Suite##_##Name();                          \
                host.Run();                                                             \
            });                                                                         \
        });                                                                             \
    void Suite##_##Name::Run()
// NOLINTEND(bugprone-macro-parentheses)

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_OWN_PROCESS_H
