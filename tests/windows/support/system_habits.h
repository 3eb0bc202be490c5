// Lists where the systems that these tests run on differ. These are Windows and Debian's two
// versions of Wine. A test that expects something else of one of them says so in this table, and
// nothing else in the tests asks for a version.
//
//     EXPECT_TRUE(Shows(Habits::kTakenEndpoint, status));
//
// records what was seen as a property of the running test, and fails unless it is what this system
// is known to do. A system that suddenly behaves like another one fails as well, so no row gets
// stale. Where no publication says what Windows does, the cell is kOpen. Then the test records what
// was seen and judges nothing, and its later steps must not depend on what was seen.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>

namespace PlenxTest {

/// Each Wine stands for the later ones too, up to the next in this list.
enum class System { kWindows, kWine8, kWine10 };

/// Nobody knows what the system does.
inline constexpr const char* kOpen = nullptr;

/// One thing to look at, and what each system shows there. This is one text, or several with bars
/// between them when each of them is right. The texts for Wine were measured.
struct Habit {
    /// onWindows: needs a source, unless it is kOpen.
    constexpr Habit(const char* nameText, const char* onWindows, const char* onWine8,
                    const char* onWine10, const char* sourceText)
        : name(nameText), windows(onWindows), wine8(onWine8), wine10(onWine10), source(sourceText) {
        if (onWindows != kOpen && *sourceText == '\0') {
            NoSource();
        }
    }

    const char* name;
    const char* windows;
    const char* wine8;
    const char* wine10;
    const char* source;  // the page that says what Windows does

private:
    static void NoSource() {}  // no constant can come from it, so such a row does not compile
};

#define PLENX_LEARN "https://learn.microsoft.com/en-us/"

namespace Habits {

// Services. The codes are those of GetLastError, and 0 is success.
inline constexpr Habit kServiceWhoseProcessWasEnded{
    "state of a service whose process was ended", "stopped", "running", "stopped",
    PLENX_LEARN "windows/win32/api/winsvc/ns-winsvc-service_failure_actionsw"};
inline constexpr Habit kStartOfAServiceThatGoes{
    "code of starting a service that is marked for deletion", "1072", "0", "0",
    PLENX_LEARN "windows/win32/api/winsvc/nf-winsvc-startservicew"};
inline constexpr Habit kStopOfAServiceThatStarts{
    "code of stopping a service that is starting", "1061", "1052", "1052",
    PLENX_LEARN "windows/win32/api/winsvc/nf-winsvc-controlservice"};
inline constexpr Habit kStopThatIsNotAccepted{
    "code of a stop that the service does not accept", "1052", "1052", "1052",
    PLENX_LEARN "windows/win32/api/winsvc/nf-winsvc-controlservice"};
inline constexpr Habit kStartOfAMissingProgram{
    "code of starting a service whose program is missing", "2|3", "2", "2",
    PLENX_LEARN "windows/win32/api/winsvc/nf-winsvc-startservicew"};
// Wine now and then takes such a service for one that never began.
inline constexpr Habit kStartOfAServiceThatIsGoneAtOnce{
    "code of starting a service that stops at once", "0", "0|1053", "0|1053",
    PLENX_LEARN "windows/win32/api/winsvc/nf-winsvc-startservicew"};
// The driver of these tests has no signature.
inline constexpr Habit kStartOfTheDriver{"code of starting an unsigned driver", "577", "0", "0",
                                         PLENX_LEARN
                                         "windows-hardware/drivers/install/driver-signing"};
inline constexpr Habit kElevation{"rights of a test", "elevated", "elevated", "all, not elevated",
                                  PLENX_LEARN
                                  "windows/win32/secauthz/running-with-special-privileges"};

// Local RPC. The codes are statuses or exceptions, and 0 is success.
inline constexpr Habit kTakenEndpoint{
    "code of serving an endpoint that another process serves", "1740", "0", "0",
    PLENX_LEARN "windows/win32/api/rpcdce/nf-rpcdce-rpcserveruseprotseqep"};
inline constexpr Habit kRefusedEndpoint{
    "code of serving an endpoint that is refused", "1740", "1720", "1720",
    PLENX_LEARN "windows/win32/api/rpcdce/nf-rpcdce-rpcserveruseprotseqep"};
inline constexpr Habit kEndpointIsAPipe{
    "pipe of an endpoint of local RPC", "none", "there", "there",
    PLENX_LEARN "windows/win32/rpc/selecting-a-protocol-sequence"};
inline constexpr Habit kSizeBeyondTheBytes{"code of a call that states more bytes than it has",
                                           "1734|1783", "0", "0",
                                           PLENX_LEARN "windows/win32/midl/-robust"};
// Wine 8 takes such a call for one that has succeeded.
inline constexpr Habit kCallWithoutABinding{"exception of a call through a null handle", "1702",
                                            "0", "1702",
                                            PLENX_LEARN "windows/win32/rpc/rpc-return-values"};
inline constexpr Habit kServerThatEnds{"exception of a call whose server ends", "1726|1727",
                                       "1726|1727", "1726|1727",
                                       PLENX_LEARN "windows/win32/rpc/rpc-return-values"};
inline constexpr Habit kSyntaxOfTwoThatOfferBoth{
    "transfer syntax of two ends that offer NDR 2.0 and NDR64", kOpen, "NDR 2.0", "NDR 2.0", ""};
inline constexpr Habit kCodeThatTheServerRaises{
    "whether a code that the server raises is the exception", kOpen, "yes", "yes", ""};
inline constexpr Habit kAccessViolationOfTheServer{
    "exception of a call in which the server's routine has an access violation", kOpen, "998",
    "998", ""};
inline constexpr Habit kFaultInACall{"what a fault of the caller's own code in a call does", kOpen,
                                     "ends the process", "ends the process", ""};

// The rest.
inline constexpr Habit kFolderWithoutAName{"errno of _wrmdir with an empty path", "2", "22", "22",
                                           PLENX_LEARN
                                           "cpp/c-runtime-library/reference/rmdir-wrmdir"};
inline constexpr Habit kFoldersInADataFolderOf245{
    "folders in a data folder of 245 characters", "none", "there", "there",
    PLENX_LEARN "windows/win32/fileio/maximum-file-path-limitation"};
inline constexpr Habit kHiddenFileThatIsOverwritten{
    "hidden file that is opened to be written anew", "kept", "replaced", "replaced",
    PLENX_LEARN "windows/win32/api/fileapi/nf-fileapi-createfilew"};
inline constexpr Habit kLinkInAFolderThatIsRemoved{
    "link to a folder, once the folder that it is in was removed", "gone", "there", "there",
    PLENX_LEARN "windows/win32/api/fileapi/nf-fileapi-removedirectoryw"};
inline constexpr Habit kNewsOfTheShell{
    "whether a listener hears each news of the shell, in order and nothing else", kOpen, "yes",
    "yes", ""};
inline constexpr Habit kFootprintOfAStorm{"what a storm of calls leaves in the process", kOpen,
                                          "nothing", "nothing", ""};
inline constexpr Habit kGrowthInASoak{"what grows in a soak", kOpen, "nothing", "nothing", ""};
inline constexpr Habit kServiceHandlesInTheHeap{
    "service handles that show in the heap with Wine's mark", kOpen, "2", "0", ""};

}  // namespace Habits

#undef PLENX_LEARN

/// Returns the system that this process runs on. A process that is not for Windows runs over the
/// fake platform, which follows Windows.
System ThisSystem();

/// Returns the habit's cell.
const char* CellOf(const Habit& habit, System system);

/// Returns what is wrong with what was seen, or nothing.
std::optional<std::string> Complaint(const Habit& habit, const std::string& seen, System system);

/// Returns whether nobody knows what this system does.
bool IsOpen(const Habit& habit);

/// Returns whether this system is known to show that. A test may then go on in another way.
bool IsUsual(const Habit& habit, const std::string& seen);

/// Records what was seen, and succeeds when this system shows it, or when nobody knows.
testing::AssertionResult Shows(const Habit& habit, const std::string& seen);

template <class Number>
std::enable_if_t<std::is_integral_v<Number>, testing::AssertionResult> Shows(const Habit& habit,
                                                                             Number seen) {
    return Shows(habit, std::to_string(seen));
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_SYSTEM_HABITS_H
