// With these functions a test in another language plays the services and looks at what reached
// them. The library that exports them is the plain C interface over the fake platform.

#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "companion/fake_file_manager.h"
#include "companion/recorded_log.h"
#include "fake_process.h"
#include "platform/fake_platform.h"
#include "plenxsdk/plenx.h"
#include "rpc/manager_calls.h"

namespace {

Bytes NotificationOf(std::int32_t kind, const std::string& text, std::int32_t first,
                     std::int32_t second) {
    switch (kind) {
    case PLENX_EVENT_MESSAGE:
        return MessageOf({Int32Arg(first), Int32Arg(second), StringArg(text)});
    case PLENX_EVENT_LINK_QUERY:
        return MessageOf({StringArg(text), Int32Arg(first)});
    case PLENX_EVENT_STATUS:
        return MessageOf({StringArg(text), Int32Arg(first), Int32Arg(second)});
    case PLENX_EVENT_ERROR:
        return MessageOf({Int32Arg(first)});
    default:
        return MessageOf({StringArg(text)});
    }
}

// The job of this call is queued behind all others.
void WaitForJobs() {
    static int marks = 0;
    const std::string mark = "mark " + std::to_string(++marks);
    plenx_device_name_changed(mark.data(), mark.size());
    FakeRpc::Get().WaitForMessage(MessageOf({StringArg(mark)}));
}

std::string Hexadecimal(const Bytes& bytes) {
    const char* const digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming): other languages call them under these names.
extern "C" {

/// Makes the folders that plenx_init needs. They are "C:\App" and "C:\Data".
void fake_machine() {
    FakePlatform::Get().Files().AddFolder(L"C:\\App");
    FakePlatform::Get().Files().AddFolder(L"C:\\Data");
}

/// Waits until the job of plenx_init is done. Then the PC service runs, and the phone service does
/// not.
void fake_wait_for_init() {
    FakeRpc::Get().WaitUntilListening();
    FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
}

/// Sends a notification of that kind, as a service does. The name of a group ends with "_" and the
/// number of its service.
/// @return The last word of the reply, which for PLENX_EVENT_LINK_QUERY is the status.
std::int32_t fake_notify(std::int32_t kind, const char* text, std::size_t length,
                         std::int32_t first, std::int32_t second) {
    const ManagerReply reply =
        CallManager(kind, NotificationOf(kind, std::string(text, length), first, second));
    std::int32_t word = 0;
    for (std::size_t i = 0; i < 4 && i < reply.bytes.size(); ++i) {
        word = static_cast<std::int32_t>(static_cast<std::uint32_t>(word) << 8 |
                                         reply.bytes[reply.bytes.size() - 1 - i]);
    }
    return word;
}

/// Gives what the services and the companion library have received since the last call, one item a
/// line: "PLENXPCService 4 0a0b", with the number and the bytes of the message, or "Start()". The
/// text is valid until the next call.
const char* fake_received() {
    static std::string text;
    WaitForJobs();
    text.clear();
    for (const ServiceCall& call : FakeRpc::Get().ServiceCalls()) {
        text += call.endpoint + " " + std::to_string(call.msgType) + " " + Hexadecimal(call.msg);
        text += "\n";
    }
    for (const std::string& call : FakeFileManager::Get().Calls()) {
        text += call + "\n";
    }
    FakeRpc::Get().ClearRecord();
    FakeFileManager::Get().ClearRecord();
    return text.c_str();
}

/// From now on the companion library answers plenx_get_office_dir with this folder and code.
void fake_office_dir(const char* folder, std::size_t length, std::int32_t code) {
    FakeFileManager::Get().SetNeighbourDir(std::string(folder, length));
    FakeFileManager::Get().SetResult("GetGroupNeighborDistributedDir", code);
}

/// Gives the bytes that are allocated in this process, after the fakes have forgotten what they
/// recorded. Their records keep the room that they have taken.
std::int64_t fake_bytes_in_use() {
    RecordedLog::Get().Clear();
    FakePlatform::Get().ForgetCalls();
    FakeRpc::Get().ClearRecord();
    FakeFileManager::Get().ClearRecord();
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
}

/// Says whether the process is ending.
void fake_ending(std::int32_t ending) {
    LayerProcess::ending = ending != 0;
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
