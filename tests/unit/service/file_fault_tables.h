// Tables that say what each operation on folders does when one of its platform calls fails.

#ifndef PLENXSDK_UNIT_SERVICE_FILE_FAULT_TABLES_H
#define PLENXSDK_UNIT_SERVICE_FILE_FAULT_TABLES_H

#include <string>
#include <vector>

#include "fault_table.h"
#include "service/service_room_test.h"

namespace file_faults {

const std::string kMake = "FileUtils::MakeDirectory";
const std::string kRemove = "FileUtils::RemoveDirectoryW";
const std::string kForce = "FileUtils::ForceRemoveDirectory";
const std::string kExists = "FileUtils::FileExists";
const std::string kSource = "ServiceManager::MakeSourcePath";
const std::string kServicePath = "ServiceManager::MakeServicePath";

using Row = FaultRow;
using Rows = std::vector<FaultRow>;

// Return the lines for a failing call. Some calls may find that the path is absent, which is no
// error.
inline FaultLines Access(const Fault& fault) {
    return fault.IsAbsence() ? FaultLines()
                             : FaultLines{Error("access error " + fault.Errno(), kExists)};
}
inline FaultLines Mkdir(const Fault& fault) {
    return {Error("mkdir error " + fault.Error(), kMake)};
}
inline FaultLines Rmdir(const std::string& error) {
    return {Error("rmdir error " + error, kRemove)};
}
inline FaultLines RmdirOfEntry(const std::string& number) {
    return {Error("rmdir error " + number, kForce)};
}
inline FaultLines FindFirst(const Fault& fault) {
    return {Error("find first error " + fault.ListingErrno(), kForce)};
}
inline FaultLines Unlink(const Fault& fault) {
    return {Error("unlink error " + fault.Errno(), kForce)};
}

// FileExists takes a path that it cannot check as absent.
inline Outcome Missing(const Fault& fault) {
    return {0, Access(fault)};
}

// RemoveDirectoryW takes an absent folder as removed.
inline Outcome NotRemoved(const Fault& fault) {
    return fault.IsAbsence() ? Outcome{0, {}} : Outcome{28, Rmdir(fault.Error())};
}

const Outcome kNotEmpty = {28, Rmdir("145")};

// The listing ended early, so the folder is not empty and cannot be removed.
inline Outcome Unseen(const Fault& fault) {
    return fault.forEver ? NotRemoved(fault) : kNotEmpty;
}

// The listing was complete; only later calls can still fail.
inline Outcome AllSeen(const Fault& fault) {
    return fault.forEver ? NotRemoved(fault) : Outcome{0, {}};
}

/// ForceRemoveDirectory of an empty folder.
inline FaultTable RemoveEmpty() {
    return {
        {0, {}},
        {Row{"_waccess", Missing}, Row{"GetFileAttributesW", AllSeen},
         Row{"_wfindfirst64i32", [](const Fault& fault) { return Outcome{28, FindFirst(fault)}; }},
         Row{"_wfindnext64i32", AllSeen, 2}, Row{"_wrmdir", NotRemoved}}};
}

/// The same for a folder inside the one to be removed. Its failure ends the removal with a second
/// line. When it only counts as removed, the upper folder is not empty.
inline Rows RemoveEntryFolder(const Rows& own, bool hasContent = false) {
    // The upper folder still has the entry that counted as removed.
    const auto takenForRemoved = [](const Fault& fault, const FaultLines& lines) {
        const Outcome upper = Unseen(fault);
        return Outcome{upper.code, lines + upper.lines};
    };
    const auto failed = [](const Outcome& entry, const std::string& number) {
        return Outcome{28, entry.lines + RmdirOfEntry(number)};
    };
    const auto removal = [=](const Fault& fault) {
        return fault.IsAbsence() ? takenForRemoved(fault, {})
                                 : failed(NotRemoved(fault), fault.Errno());
    };
    // Without its listing, the entry can be removed only when it is empty.
    const auto unseen = [=](const Fault& fault) {
        if (fault.forEver) {
            return removal(fault);
        }
        return hasContent ? failed(kNotEmpty, "41") : Outcome{0, {}};
    };
    const auto allSeen = [=](const Fault& fault) {
        return fault.forEver ? removal(fault) : Outcome{0, {}};
    };
    const Rows begin = {
        Row{"_waccess", [=](const Fault& fault) { return takenForRemoved(fault, Access(fault)); }},
        Row{"GetFileAttributesW", unseen},
        Row{"_wfindfirst64i32",
            [=](const Fault& fault) {
                return failed({28, FindFirst(fault)}, fault.ListingErrno());
            }},
        Row{"_wfindnext64i32", unseen, hasContent ? 2U : 1U}};
    return begin + own + Rows{Row{"_wfindnext64i32", allSeen}, Row{"_wrmdir", removal}};
}

/// ForceRemoveDirectory of a folder with two entries.
inline FaultTable RemoveFolderOf(const Rows& first, const Rows& second) {
    const Rows begin = {
        Row{"_waccess", Missing}, Row{"GetFileAttributesW", Unseen},
        Row{"_wfindfirst64i32", [](const Fault& fault) { return Outcome{28, FindFirst(fault)}; }},
        Row{"_wfindnext64i32", Unseen, 2}};
    return {{0, {}},
            begin + first + Rows{Row{"_wfindnext64i32", Unseen}} + second +
                Rows{Row{"_wfindnext64i32", AllSeen}, Row{"_wrmdir", NotRemoved}}};
}

inline Rows UnlinkEntry() {
    return {Row{"_wunlink", [](const Fault& fault) { return Outcome{28, Unlink(fault)}; }}};
}

// The link itself is removed. It is a failure if the link is gone already.
inline Rows RemoveLinkEntry() {
    return {Row{"_wrmdir",
                [](const Fault& fault) { return Outcome{28, RmdirOfEntry(fault.Errno())}; }}};
}

/// ForceRemoveDirectory of a\deep and b.
inline FaultTable RemoveTree() {
    const Rows deep = {Row{"_wunlink", [](const Fault& fault) {
                               return Outcome{28, Unlink(fault) + RmdirOfEntry(fault.Errno())};
                           }}};
    return RemoveFolderOf(RemoveEntryFolder(deep, true), UnlinkEntry());
}

/// ForceRemoveDirectory of the working folder: pc and phone.
inline FaultTable RemoveWorkingFolder() {
    return RemoveFolderOf(RemoveEntryFolder({}), RemoveEntryFolder({}));
}

/// ForceRemoveDirectory of a link to a folder.
inline FaultTable RemoveLink() {
    return {{0, {}},
            Rows{Row{"_waccess", Missing}, Row{"GetFileAttributesW", AllSeen}} + RemoveLinkEntry()};
}

// MakeServicePath

inline Outcome FolderGone(const Fault& fault) {
    return {32, Access(fault) + FaultLines{Error("src directory not exit", kServicePath)}};
}
inline Outcome SubfolderRefused(const Fault& fault) {
    return {32, Mkdir(fault)};
}

inline FaultTable MakeServicePath() {
    return {{0, {}}, {Row{"_waccess", FolderGone}, Row{"_wmkdir", SubfolderRefused, 2}}};
}

// MakeSourcePath

// When nothing works, a candidate seems to be absent, cannot be made, and seems to be absent again.
inline FaultLines HopelessCandidate(const Fault& fault) {
    return Access(fault) + Mkdir(fault) + Access(fault);
}

// The first candidate has failed. The next one succeeds, or all 100 others fail.
inline Outcome NextCandidates(const Fault& fault, FaultLines lines) {
    if (!fault.forEver) {
        return {0, lines};
    }
    for (int n = 0; n != 100; ++n) {
        lines = lines + HopelessCandidate(fault);
    }
    return {31, lines};
}

// Making the first candidate failed with the lines, and it is removed again as far as possible.
inline Outcome CandidateFailed(const Fault& fault, const FaultLines& lines) {
    return NextCandidates(fault, lines + (fault.forEver ? Access(fault) : FaultLines()));
}

inline Rows MakeCandidate() {
    return {
        Row{"_wmkdir", [](const Fault& fault) { return CandidateFailed(fault, Mkdir(fault)); }},
        Row{"_waccess",
            [](const Fault& fault) { return CandidateFailed(fault, FolderGone(fault).lines); }},
        Row{"_wmkdir", [](const Fault& fault) { return CandidateFailed(fault, Mkdir(fault)); }, 2}};
}

/// MakeSourcePath in a data folder that is empty.
inline FaultTable MakeSourcePathAfresh() {
    const Row exists = {"_waccess", [](const Fault& fault) {
                            return fault.forEver ? NextCandidates(fault, HopelessCandidate(fault))
                                                 : Outcome{0, Access(fault)};
                        }};
    return {{0, {}}, Rows{exists} + MakeCandidate()};
}

/// MakeSourcePath in a data folder that has an empty folder of the first candidate's name. When the
/// check misses that folder, making it succeeds because it exists.
inline FaultTable MakeSourcePathOverOld() {
    const auto removed = [](const Fault& fault, const FaultLines& lines) {
        return fault.forEver ? CandidateFailed(fault, lines + Mkdir(fault)) : Outcome{0, lines};
    };
    Rows removal;
    for (const Row& row : RemoveEmpty().rows) {
        removal.push_back({row.call,
                           [=](const Fault& fault) {
                               const Outcome own = row.outcome(fault);
                               return own.code == 0 ? removed(fault, own.lines)
                                                    : NextCandidates(fault, own.lines);
                           },
                           row.times});
    }
    FaultTable table = MakeSourcePathAfresh();
    table.rows.insert(table.rows.begin() + 1, removal.begin(), removal.end());
    return table;
}

}  // namespace file_faults

#endif  // PLENXSDK_UNIT_SERVICE_FILE_FAULT_TABLES_H
