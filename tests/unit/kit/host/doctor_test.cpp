// Tests each check of the doctor over a system that says what the test wants. The tests compare
// whole texts.

#include "doctor/doctor.h"

#include <gmock/gmock.h>

#include "doctor/fake_system.h"

namespace PlenxHost {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class DoctorTest : public testing::Test {
protected:
    // Returns the findings of one check as "level: text" and, if there is any, "| advice".
    std::vector<std::string> Run(const std::string& name) {
        std::vector<std::string> lines;
        Examine(patient_, system_, [&](const Check& check, const std::vector<Finding>& findings) {
            if (check.name != name) {
                return;
            }
            for (const Finding& finding : findings) {
                lines.push_back(std::string(NameOf(finding.level)) + ": " + finding.text +
                                (finding.advice.empty() ? "" : " | " + finding.advice));
            }
        });
        return lines;
    }

    // Returns the same, without the findings that something is well.
    std::vector<std::string> Complaints(const std::string& name) {
        std::vector<std::string> complaints;
        for (const std::string& line : Run(name)) {
            if (line.rfind("ok: ", 0) != 0) {
                complaints.push_back(line);
            }
        }
        return complaints;
    }

    Diagnosis Count() {
        return Examine(patient_, system_, [](const Check&, const std::vector<Finding>&) {});
    }

    ServiceFacts& Register(const std::string& name, ServiceState state) {
        ServiceFacts& facts = system_.services[name];
        facts.program = "C:\\app\\plenxservice.exe";
        facts.state = state;
        facts.processId = state == ServiceState::kStopped ? 0 : 312;
        return facts;
    }

    void Serve(const std::string& endpoint, PingAnswer::Kind kind = PingAnswer::Kind::kAnswered,
               std::int32_t code = 0, std::int64_t milliseconds = 3) {
        PingAnswer answer;
        answer.kind = kind;
        answer.code = code;
        answer.milliseconds = milliseconds;
        system_.pings[endpoint] = answer;
    }

    Patient patient_{"C:\\app", "C:\\data", "C:\\host"};
    FakeSystem system_;
};

TEST_F(DoctorTest, FreshSystemIsWell) {
    const Diagnosis diagnosis = Count();
    EXPECT_EQ(diagnosis.problems, 0);
    EXPECT_EQ(diagnosis.notes, 0);
    EXPECT_THAT(system_.pinged, IsEmpty());
}

TEST_F(DoctorTest, RunningHostIsWellAndItsWorkingFolderIsLeftAlone) {
    Register("PlenxPcSvc", ServiceState::kRunning);
    Register("PlenxPhoneSvc", ServiceState::kStopped);
    Serve("Manager");
    Serve("PLENXPCService");
    system_.paths["C:\\data\\plenx"] = PathKind::kFolder;
    system_.held["C:\\data\\plenx"] = "C:\\data\\plenx\\pc\\service.log";
    EXPECT_THAT(Run("services"),
                ElementsAre("ok: PlenxOfficeSvc is not registered; a product's installer does "
                            "that, not Init",
                            "ok: PlenxPcSvc is registered, starts on demand, is running as process "
                            "312: C:\\app\\plenxservice.exe",
                            "ok: PlenxPhoneSvc is registered, starts on demand, is stopped: "
                            "C:\\app\\plenxservice.exe"));
    EXPECT_THAT(
        Run("endpoints"),
        ElementsAre("note: Manager is taken: a host is running | Only one host at a time can hear "
                    "the services. End this one before you start another; this one is fine.",
                    "ok: PLENXOfficeService is free: its service is not running",
                    "ok: PLENXPCService answers a ping (3 ms)",
                    "ok: PLENXPhoneService is free: its service is not running"));
    EXPECT_THAT(Run("data"),
                ElementsAre("ok: a host is running, so its working folder is left alone"));
    EXPECT_EQ(Count().problems, 0);
    EXPECT_THAT(system_.pinged, Contains("PLENXPCService"));
    EXPECT_THAT(system_.pinged, Not(Contains("Manager")));
}

TEST_F(DoctorTest, FilesOfTheLibraryHaveVersions) {
    system_.versions["C:\\host\\plenxsdk.dll"] = "1.0.0.0";
    system_.paths.erase("C:\\host\\libstdc++-6.dll");
    system_.paths["C:\\host\\LogHelper.dll"] = PathKind::kFolder;
    const std::string advice =
        "Copy it from the package's bin folder to C:\\host; without it no host starts.";
    EXPECT_THAT(Run("library"), ElementsAre("ok: plenxsdk.dll 1.0.0.0",
                                            "problem: LogHelper.dll is a folder | " + advice,
                                            "ok: distributedfile.dll, which has no version",
                                            "problem: libstdc++-6.dll is missing | " + advice));
}

TEST_F(DoctorTest, TheRunTimeIsWhatTheLibraryImports) {
    system_.imports["C:\\host\\plenxsdk.dll"] = {"MSVCP140.dll", "VCRUNTIME140.dll"};
    system_.paths["C:\\host\\MSVCP140.dll"] = PathKind::kFile;
    system_.imports["C:\\host\\MSVCP140.dll"] = {"VCRUNTIME140.dll", "KERNEL32.dll"};
    EXPECT_THAT(Run("library"),
                ElementsAre("ok: plenxsdk.dll, which has no version",
                            "ok: LogHelper.dll, which has no version",
                            "ok: distributedfile.dll, which has no version",
                            "ok: MSVCP140.dll, which has no version",
                            "problem: VCRUNTIME140.dll is missing | Install Microsoft's Visual C++ "
                            "Redistributable for x64; without it no host starts."));
}

TEST_F(DoctorTest, VisualCppsRunTimeOfTheServiceProgramComesFromMicrosoft) {
    system_.imports["C:\\app\\plenxservice.exe"] = {"MSVCP140.dll", "KERNEL32.dll"};
    EXPECT_THAT(
        Run("install"),
        Contains("problem: MSVCP140.dll is missing: plenxservice.exe needs it | Install "
                 "Microsoft's Visual C++ Redistributable for x64; without it Windows cannot "
                 "start the services."));
}

TEST_F(DoctorTest, DllsThatTheServiceProgramLacksAreReported) {
    const std::string advice =
        " needs it | Install it beside plenxservice.exe; without it Windows cannot start the "
        "services.";
    system_.imports["C:\\app\\plenxservice.exe"] = {
        "KERNEL32.dll", "api-ms-win-crt-heap-l1-1-0.dll", "Spdlog.dll", "gone.dll"};
    system_.imports["C:\\app\\Spdlog.dll"] = {"API-MS-Win-Core.dll", "Fmt.dll", "gone.dll",
                                              "plenxservice.exe"};
    system_.paths["C:\\app\\Spdlog.dll"] = PathKind::kFile;
    EXPECT_THAT(Complaints("install"),
                ElementsAre("problem: gone.dll is missing: plenxservice.exe" + advice,
                            "problem: Fmt.dll is missing: Spdlog.dll" + advice));
    system_.paths["C:\\app\\gone.dll"] = PathKind::kFile;
    system_.systemDlls.insert("Fmt.dll");
    EXPECT_THAT(Complaints("install"), IsEmpty());
}

TEST_F(DoctorTest, MissingInstallFolderIsOneProblem) {
    patient_.install = "C:\\other";
    EXPECT_THAT(Run("install"),
                ElementsAre("problem: C:\\other is not a folder | Install the product there, or "
                            "give --install the folder that the host gives Init as its first "
                            "argument."));
}

TEST_F(DoctorTest, MissingFilesOfTheInstallFolderAreReported) {
    system_.paths.erase("C:\\app\\plenxservice.exe");
    system_.paths.erase("C:\\app\\dokan1.sys");
    system_.paths.erase("C:\\app\\res\\plenx\\icon\\audio");
    system_.paths.erase("C:\\app\\res\\plenx\\icon\\video");
    EXPECT_THAT(
        Complaints("install"),
        ElementsAre("problem: plenxservice.exe is missing | Install it; without it every Start of "
                    "the PC or phone service fails.",
                    "problem: dokan1.sys is missing | Install the driver's three files; without "
                    "them no disk can be mounted.",
                    "note: res\\plenx\\icon has no folder for: audio, video | Install the icon "
                    "folders. Without them these categories show no icon of their own. Nothing "
                    "else depends on them."));
}

TEST_F(DoctorTest, PathsThatCauseTroubleAreReported) {
    patient_.install = "Küche\\";
    EXPECT_THAT(Complaints("install"),
                ElementsAre(StartsWith("problem: Küche\\ is not a full path | Give Init a path "),
                            "note: Küche\\ ends in a separator | Give Init the path without it.",
                            StartsWith("note: Küche\\ has letters beyond ASCII | "),
                            StartsWith("problem: Küche\\ is not a folder | ")));
    patient_.install = "C:\\Program Files\\App";
    EXPECT_THAT(Complaints("install"),
                Contains("note: C:\\Program Files\\App has blanks | Use a path without blanks. "
                         "Service paths are registered without quotes, so a program planted at a "
                         "blank would be started as LocalSystem."));
    system_.paths["C:\\Program.exe"] = PathKind::kFile;
    EXPECT_THAT(Complaints("install"),
                Contains("problem: C:\\Program.exe would be started as LocalSystem instead of the "
                         "service program | Remove it, and find out who put it there. Service "
                         "paths are registered without quotes, so use an install folder without "
                         "blanks."));
}

TEST_F(DoctorTest, SeparatorsAtTheEndOfTheInstallFolderMakeNoRegistrationWrong) {
    Serve("Manager");
    Register("PlenxPcSvc", ServiceState::kStopped);
    // A host that gives Init such a folder registers the service in this way.
    Register("PlenxPhoneSvc", ServiceState::kStopped).program = "C:\\app\\\\plenxservice.exe";
    ServiceFacts& driver = system_.services["Dokan1"];
    driver.program = "\\??\\C:\\app\\dokan1.sys";
    driver.state = ServiceState::kRunning;
    for (const char* install :
         {"C:\\app", "C:\\app\\", "C:/app/", "C:\\app\\\\\\", "C:\\app\\/", "c:\\App//"}) {
        patient_.install = install;
        EXPECT_THAT(Complaints("services"), IsEmpty()) << install;
        EXPECT_THAT(Complaints("driver"), IsEmpty()) << install;
    }
    patient_.install = "C:\\ap\\";
    EXPECT_THAT(Complaints("services"),
                Contains(StartsWith("problem: PlenxPcSvc is registered with a program outside")));
    EXPECT_THAT(Complaints("driver"), Contains(StartsWith("note: Dokan1 is registered with")));
}

TEST_F(DoctorTest, SeparatorOfADriveBelongsToThePath) {
    Serve("Manager");
    Register("PlenxPcSvc", ServiceState::kStopped).program = "C:\\plenxservice.exe";
    patient_.install = "C:\\";
    EXPECT_THAT(Complaints("services"), IsEmpty());
    EXPECT_THAT(Complaints("install"), Not(Contains(testing::HasSubstr("separator"))));
    patient_.install = "C:\\\\";
    EXPECT_THAT(Complaints("services"), IsEmpty());
    EXPECT_THAT(Complaints("install"),
                Contains("note: C:\\\\ ends in a separator | Give Init the path without it."));
}

TEST_F(DoctorTest, InstallFolderInTheWorkingFolderIsAProblemWhateverItsEnd) {
    for (const char* data : {"C:\\data", "C:\\data\\", "C:/data//"}) {
        patient_ = {"C:\\data\\plenx\\app\\", data, "C:\\host"};
        system_.paths[data] = PathKind::kFolder;
        EXPECT_THAT(Run("data"),
                    ElementsAre("problem: the install folder lies in " + std::string(data) +
                                "\\plenx, which Init DELETES | Use a data folder that holds "
                                "nothing but the library's working folder."));
    }
}

TEST_F(DoctorTest, WaitingUpgradeIsReported) {
    EXPECT_THAT(Run("upgrade"), ElementsAre("ok: no driver file waits in upgrade"));
    system_.paths["C:\\app\\upgrade\\dokan1.sys"] = PathKind::kFile;
    system_.versions["C:\\app\\upgrade\\dokan1.sys"] = "1.1.0.0";
    system_.paths["C:\\app\\dokan1.dll.old"] = PathKind::kFile;
    EXPECT_THAT(Run("upgrade"),
                ElementsAre("note: dokan1.sys 1.1.0.0 waits in upgrade | The next Init moves it "
                            "over the installed one. If it still waits after that, the old one "
                            "is in use.",
                            "note: dokan1.dll.old is left from an upgrade | It was in use then. "
                            "Delete it once Windows has been restarted, or leave it: the next "
                            "upgrade takes its place."));
}

TEST_F(DoctorTest, MissingRightsAreReported) {
    system_.elevated = false;
    system_.serviceManagerError = kErrorAccessDenied;
    system_.writeErrors["C:\\app"] = kErrorAccessDenied;
    EXPECT_THAT(
        Run("rights"),
        ElementsAre(
            "problem: this program does not run as administrator | Run the host as administrator, "
            "because Init registers services, and run the doctor as the host is run.",
            "problem: the service manager may not be opened with all access: error 5 "
            "(access denied) | Run the host as administrator. Otherwise no service can be "
            "registered, started or stopped.",
            "problem: C:\\app may not be written to: error 5 (access denied) | Init writes "
            "desktop.ini files and upgrades the driver there. Run the host as "
            "administrator, or correct the folder's rights.",
            "ok: C:\\data may be written to"));
}

TEST_F(DoctorTest, RightsThatAreTooWideAreReported) {
    system_.paths["C:\\app\\upgrade"] = PathKind::kFolder;
    system_.writers["C:\\app"] = {"Everyone", "Users"};
    system_.writers["C:\\app\\upgrade"] = {"Users"};
    const std::string advice =
        "Let only administrators write there, because whoever can replace plenxservice.exe or the "
        "driver can run code as LocalSystem.";
    EXPECT_THAT(Complaints("rights"),
                ElementsAre("problem: C:\\app may be written to by Everyone | " + advice,
                            "problem: C:\\app may be written to by Users | " + advice,
                            "problem: C:\\app\\upgrade may be written to by Users | " + advice));
}

TEST_F(DoctorTest, ServiceOfAnotherFolderIsAProblem) {
    Serve("Manager");
    Register("PlenxPcSvc", ServiceState::kStopped).program = "C:\\old one\\plenxservice.exe";
    EXPECT_THAT(
        Complaints("services"),
        ElementsAre(
            "problem: PlenxPcSvc is registered with a program outside of the install "
            "folder | The library leaves a registration as it is and would start that "
            "program. Delete it with: sc delete PlenxPcSvc. The next Init registers it again.",
            "problem: C:\\old one\\plenxservice.exe is missing | Delete it with: sc delete "
            "PlenxPcSvc. The next Init registers it again.",
            "note: PlenxPcSvc is registered with blanks and without quotes | Use an "
            "install folder without blanks."));
    Register("PlenxPcSvc", ServiceState::kStopped).program = "\"C:\\APP\\PlenxService.exe\" -x";
    EXPECT_THAT(Complaints("services"), IsEmpty());
}

TEST_F(DoctorTest, ServiceInTroubleIsAProblem) {
    Serve("Manager");
    ServiceFacts& facts = Register("PlenxPhoneSvc", ServiceState::kStopPending);
    facts.markedForDelete = true;
    facts.startType = StartType::kDisabled;
    EXPECT_THAT(
        Run("services"),
        Contains("ok: PlenxPhoneSvc is registered, starts disabled, is being stopped as process "
                 "312: C:\\app\\plenxservice.exe"));
    EXPECT_THAT(
        Complaints("services"),
        ElementsAre(
            "problem: PlenxPhoneSvc is marked for deletion | Close what holds it open (the "
            "Services window, the Task Manager, another host), or restart Windows. Until it "
            "is gone, it cannot be registered.",
            "problem: PlenxPhoneSvc is disabled | Delete it with: sc delete PlenxPhoneSvc. The "
            "next Init registers it again.",
            "problem: PlenxPhoneSvc is being stopped as process 312 | Look again in a few "
            "seconds. If nothing has changed, the service hangs: look at its log, then end its "
            "process. A Stop of the library ends it as well."));
}

TEST_F(DoctorTest, ServiceWhoseProcessIsGoneIsAProblem) {
    Serve("Manager");
    Register("PlenxPcSvc", ServiceState::kRunning).processIsThere = false;
    EXPECT_THAT(
        Complaints("services"),
        ElementsAre("problem: PlenxPcSvc is reported as running, but its process is gone | Restart "
                    "Windows, or delete the service with: sc delete PlenxPcSvc. Then run Init."));
}

TEST_F(DoctorTest, ServiceWithoutAHostIsLeftOver) {
    Register("PlenxPcSvc", ServiceState::kStopped);
    Register("PlenxOfficeSvc", ServiceState::kStopped);
    EXPECT_THAT(Complaints("services"),
                ElementsAre("note: PlenxPcSvc is left over: no host is running | The next Init "
                            "stops it and takes it over. A host that ends by itself removes its "
                            "services; this one was ended by force or has crashed."));
}

TEST_F(DoctorTest, ServiceThatMayNotBeLookedAtIsAProblem) {
    system_.services["PlenxPcSvc"].error = kErrorAccessDenied;
    EXPECT_THAT(Complaints("services"),
                ElementsAre("problem: PlenxPcSvc cannot be queried: error 5 (access denied) | "
                            "Run the doctor as administrator."));
}

TEST_F(DoctorTest, DriverIsReportedWithItsFileAndState) {
    EXPECT_THAT(Run("driver"), ElementsAre("ok: Dokan1 is not registered; Init registers it"));
    ServiceFacts& facts = system_.services["Dokan1"];
    facts.program = "\\??\\C:\\app\\dokan1.sys";
    facts.startType = StartType::kSystem;
    facts.state = ServiceState::kRunning;
    EXPECT_THAT(Run("driver"), ElementsAre("ok: Dokan1 is registered, starts with the system, is "
                                           "running: \\??\\C:\\app\\dokan1.sys"));
    facts.program = "C:\\other\\dokan1.sys";
    facts.state = ServiceState::kStopped;
    EXPECT_THAT(
        Complaints("driver"),
        ElementsAre("note: Dokan1 is registered with a file outside of the install folder | The "
                    "library uses it as it is. Unless another product installed it, delete it "
                    "with: sc delete Dokan1. Then restart Windows.",
                    "note: Dokan1 is not running | Init starts it. If it does not run after an "
                    "Init, look for \"start dokan service error\" in the library's log, and check "
                    "the driver's signature."));
}

TEST_F(DoctorTest, ManagerWithoutServicesIsAProblem) {
    Serve("Manager");
    EXPECT_THAT(Complaints("endpoints"),
                ElementsAre("problem: Manager is taken, but no host has registered its services | "
                            "End the program that serves it. It is a host whose Init failed, or "
                            "another product. Until then it gets the services' notifications."));
}

TEST_F(DoctorTest, EndpointThatIsServedByAnotherProgramIsANote) {
    Serve("PLENXPCService");
    EXPECT_THAT(Run("endpoints"),
                Contains("note: PLENXPCService is served, though PlenxPcSvc is not running | "
                         "Another program serves it, such as plenxservice --console. The service "
                         "cannot serve it until that program ends."));
    EXPECT_THAT(Run("endpoints"), Contains("ok: PLENXPCService answers a ping (3 ms)"));
}

TEST_F(DoctorTest, ServiceThatDoesNotListenIsAProblem) {
    Register("PlenxPcSvc", ServiceState::kRunning);
    EXPECT_THAT(Complaints("endpoints"),
                ElementsAre("problem: PLENXPCService is not served, though PlenxPcSvc is running | "
                            "Every call to this service will fail. Look at the service's log for "
                            "why it did not listen, and restart it."));
    EXPECT_THAT(system_.pinged, IsEmpty());
}

TEST_F(DoctorTest, PingThatFailsIsAProblem) {
    Register("PlenxPcSvc", ServiceState::kRunning);
    Serve("PLENXPCService", PingAnswer::Kind::kAnswered, 1001);
    EXPECT_THAT(Complaints("endpoints"),
                ElementsAre("problem: PLENXPCService answers a ping with 1001 | A Start waits five "
                            "seconds for a 0 and then goes on. Look at the service's log."));
    Serve("PLENXPCService", PingAnswer::Kind::kFailed, 1717);
    EXPECT_THAT(
        Complaints("endpoints"),
        ElementsAre("problem: PLENXPCService failed to answer a ping: error 1717 | Look at the "
                    "service's log. 1717 means that the program which serves the endpoint "
                    "does not know the interface."));
    Serve("PLENXPCService", PingAnswer::Kind::kTimedOut, 0, 5001);
    EXPECT_THAT(Complaints("endpoints"),
                ElementsAre("problem: PLENXPCService has not answered a ping within 5001 ms | The "
                            "service hangs, and so does every call of the library to it. End its "
                            "process."));
}

TEST_F(DoctorTest, WorkingFolderIsTheFirstNameThatCanBeTaken) {
    EXPECT_THAT(Run("data"), ElementsAre("ok: the next Init works in C:\\data\\plenx"));
    system_.paths["C:\\data\\plenx"] = PathKind::kFile;
    system_.paths["C:\\data\\plenx0"] = PathKind::kFolder;
    system_.held["C:\\data\\plenx0"] = "C:\\data\\plenx0\\pc";
    system_.paths["C:\\data\\plenx1"] = PathKind::kFolder;
    EXPECT_THAT(
        Run("data"),
        ElementsAre(
            "note: plenx is a file, which Init does not remove | Delete C:\\data\\plenx.",
            "note: plenx0 cannot be removed: C:\\data\\plenx0\\pc is in use | End the "
            "program that has it open, such as a service that was left running, a window or a "
            "command prompt. Until then Init takes the next name.",
            "note: plenx1 was left by a host that was ended by force | The next Init DELETES "
            "it with everything in it.",
            "ok: the next Init works in C:\\data\\plenx1"));
}

TEST_F(DoctorTest, NoNameForAWorkingFolderIsAProblem) {
    system_.paths["C:\\data\\plenx"] = PathKind::kFile;
    for (int n = 0; n != 100; ++n) {
        system_.paths["C:\\data\\plenx" + std::to_string(n)] = PathKind::kFile;
    }
    const auto complaints = Complaints("data");
    EXPECT_EQ(complaints.size(), 102U);
    EXPECT_EQ(complaints.back(),
              "problem: Init can take no name for a working folder | Empty the data folder. Until "
              "then Init fails, and every Start with it.");
}

TEST_F(DoctorTest, DataFolderThatIsMissingOrDangerousIsAProblem) {
    patient_.data = "C:\\none";
    EXPECT_THAT(Run("data"), ElementsAre("problem: C:\\none is not a folder | Make it before Init. "
                                         "Init makes its working folder in it, but not the data "
                                         "folder itself."));
    patient_.data = "C:\\data";
    patient_.install = "c:\\DATA\\plenx\\app";
    EXPECT_THAT(
        Run("data"),
        ElementsAre("problem: the install folder lies in C:\\data\\plenx, which Init DELETES "
                    "| Use a data folder that holds nothing but the library's working "
                    "folder."));
}

TEST_F(DoctorTest, ProblemsAndNotesAreCounted) {
    system_.elevated = false;
    system_.paths.erase("C:\\app\\dokan1.dll");
    Register("PlenxPcSvc", ServiceState::kStopped);
    const Diagnosis diagnosis = Count();
    EXPECT_EQ(diagnosis.problems, 2);
    EXPECT_EQ(diagnosis.notes, 1);
}

}  // namespace
}  // namespace PlenxHost
