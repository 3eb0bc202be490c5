#include "hostile/caller.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "hostile/expectation.h"
#include "hostile/raw_link.h"
#include "rpc/interface/manager_call.h"
#include "rpc/interface/rpc_memory.h"
#include "support/install_folder.h"
#include "support/test_folder.h"
#include "support/wide_text.h"
#include "wire/catalog.h"
#include "wire/local_binding.h"
#include "wire/render.h"

namespace PlenxTest {
namespace {

constexpr wchar_t kReadyName[] = L"plenx-hostile-ready";
constexpr wchar_t kGoName[] = L"plenx-hostile-go";
constexpr DWORD kReadyMilliseconds = 60 * 1000;
constexpr int kMostComplaints = 5;

std::wstring ComplaintFile(unsigned caller) {
    return TestFolder() / L"plenx-system-logs" / (L"caller" + std::to_wstring(caller) + L".txt");
}

// Where the runtime does not compare sizes, no caller states a size that is larger than the bytes.
// The link is promised as many bytes as the size says, and refuses to deliver fewer.
bool Reaches(const Notification& notification) {
    return !notification.cut && notification.count == notification.message.size() &&
           (notification.statedSize == static_cast<std::int64_t>(notification.count) ||
            !RuntimeComparesSizes());
}

Expected AnswerTo(const Notification& notification) {
    const std::int32_t size = std::max(notification.statedSize, 0);
    return ExpectedOf(notification.id, notification.message.data(), static_cast<std::size_t>(size));
}

RawAnswer CallHonestly(const Notification& notification) {
    RawAnswer answer;
    const PlenxWire::LocalBinding binding(L"Manager");
    answer.status = binding.Status();
    if (answer.status != RPC_S_OK) {
        return answer;
    }
    PlenxManagerReply reply{};
    plenxManagerBinding = binding.Get();
    PlenxCallManager(notification.id, notification.statedSize, notification.message.data(), &reply);
    answer.status = reply.raised != 0 ? static_cast<long>(reply.exceptionCode) : 0;
    answer.result = static_cast<std::int32_t>(reply.result);
    answer.size = static_cast<std::int32_t>(reply.size);
    if (reply.block != nullptr) {
        answer.block.emplace(reply.block, reply.block + std::max(reply.size, 0L));
    }
    MIDL_user_free(reply.block);
    return answer;
}

RawAnswer CallHostilely(const Notification& notification) {
    Bytes request = RequestBytes(notification.id, notification.statedSize, notification.count,
                                 notification.message);
    if (notification.cut) {
        request.resize(notification.message.size() % 12);
    }
    return CallManagerRaw(request);
}

bool IsRight(const Notification& notification, const RawAnswer& answer) {
    if (!Reaches(notification)) {
        return answer.status != 0;
    }
    const Expected expected = AnswerTo(notification);
    if (answer.status != 0 || answer.result != expected.result) {
        return false;
    }
    if (!expected.reply) {
        return answer.size == 0 && !answer.block;
    }
    const Bytes reply = PlenxWire::Encode({*expected.reply});
    return answer.size == static_cast<std::int32_t>(reply.size()) && answer.block == reply;
}

std::string Complaint(const Notification& notification, const RawAnswer& answer) {
    const Expected expected = AnswerTo(notification);
    return "id " + std::to_string(notification.id) + " stated size " +
           std::to_string(notification.statedSize) + " count " +
           std::to_string(notification.count) + (notification.cut ? " cut" : "") + " message " +
           PlenxWire::RenderBytes(notification.message.data(), notification.message.size()) +
           ": status " + std::to_string(answer.status) + " result " +
           std::to_string(answer.result) + " size " + std::to_string(answer.size) +
           (answer.block
                ? " block " + PlenxWire::RenderBytes(answer.block->data(), answer.block->size())
                : " no block") +
           ", expected result " + std::to_string(expected.result) + " reply " +
           (expected.reply ? std::to_string(*expected.reply) : "none") +
           (Reaches(notification) ? "" : ", or rather a refusal by the runtime") + "\n";
}

class Caller {
public:
    Caller(const Storm& storm, unsigned number) : storm_(storm), number_(number) {}

    void Run() {
        NotificationMaker maker(storm_.seed, number_);
        unsigned honest = 0;
        for (unsigned i = 0; i != storm_.hostile; ++i) {
            // the honest ones stand evenly among the others
            for (; honest * std::uint64_t{storm_.hostile} < i * std::uint64_t{storm_.honest};
                 ++honest) {
                CallOne(HonestOne(number_, honest), CallHonestly);
            }
            CallOne(maker.Next(), CallHostilely);
        }
        for (; honest != storm_.honest; ++honest) {
            CallOne(HonestOne(number_, honest), CallHonestly);
        }
    }

    const std::string& Complaints() const { return complaints_; }

private:
    void CallOne(const Notification& notification, RawAnswer (*call)(const Notification&)) {
        const RawAnswer answer = call(notification);
        if (!IsRight(notification, answer) && ++wrong_ <= kMostComplaints) {
            complaints_ += Complaint(notification, answer);
        }
    }

    const Storm storm_;
    const unsigned number_;
    int wrong_ = 0;
    std::string complaints_;
};

}  // namespace

Notification HonestOne(unsigned caller, unsigned number) {
    const std::string name = "x" + std::to_string(caller) + "n" + std::to_string(number);
    const auto unique = static_cast<std::int32_t>(caller * 10000000 + number);
    const std::int32_t id = PlenxWire::kSendLocalMessage + static_cast<std::int32_t>(number % 10);
    switch (id) {
    case PlenxWire::kSendLocalMessage:
        return Honest(id, {unique, 1, name});
    case PlenxWire::kLinkTypeQuery:
        return Honest(id, {name + "_1", unique});
    case PlenxWire::kStatusNotify:
        return Honest(id, {name + "_2", unique, 1});
    case PlenxWire::kErrorNotify:
        return Honest(id, {unique});
    case PlenxWire::kDiskNameNotify:
        return Honest(id, {name});
    case PlenxWire::kUpdateWindowsExplore: {
        const Bytes path = {'C', 0, ':', 0, '\\', 0, 0, 0};  // the one path that it refreshes
        return Honest(id, {static_cast<std::int32_t>(path.size()), path});
    }
    case PlenxWire::kExploreFlushNotify:
        return Honest(id, {std::string(1, static_cast<char>('N' + caller)) + ":", 2});
    default:
        return Honest(id, {name + "_3"});
    }
}

Tally TallyOf(const Storm& storm) {
    Tally tally;
    const auto add = [&tally](const Notification& notification) {
        const std::string heard =
            Reaches(notification) ? AnswerTo(notification).heard : std::string();
        if (!heard.empty()) {
            ++tally[heard];
        }
    };
    for (unsigned caller = 0; caller != kCallers; ++caller) {
        NotificationMaker maker(storm.seed, caller);
        for (unsigned i = 0; i != storm.hostile; ++i) {
            add(maker.Next());
        }
        for (unsigned i = 0; i != storm.honest; ++i) {
            add(HonestOne(caller, i));
        }
    }
    return tally;
}

CallerCrowd::CallerCrowd(const Storm& storm)
    : readyCount_(CreateSemaphoreW(nullptr, 0, kCallers, kReadyName)),
      go_(PlenxSupport::MakeEvent(kGoName)) {
    for (unsigned caller = 0; caller != kCallers; ++caller) {
        DeleteFileW(ComplaintFile(caller).c_str());
        const std::string arguments =
            "--caller " + std::to_string(caller) + " " + std::to_string(storm.seed) + " " +
            std::to_string(storm.hostile) + " " + std::to_string(storm.honest);
        callers_.push_back(
            std::make_unique<ChildProcess>(ChildProcess::Self(PlenxSupport::ToWide(arguments))));
    }
    ready_ = true;
    for (unsigned caller = 0; caller != kCallers && ready_; ++caller) {
        ready_ = WaitForSingleObject(readyCount_.Get(), kReadyMilliseconds) == WAIT_OBJECT_0;
    }
}

void CallerCrowd::Go() {
    SetEvent(go_.Get());
}

bool CallerCrowd::IsOver() {
    return std::all_of(callers_.begin(), callers_.end(),
                       [](const auto& caller) { return caller->WaitForExit(0).has_value(); });
}

std::string CallerCrowd::Complaints() {
    std::string complaints;
    for (unsigned caller = 0; caller != callers_.size(); ++caller) {
        const auto code = callers_[caller]->WaitForExit(0);
        if (code != DWORD{0}) {
            complaints += "caller " + std::to_string(caller) +
                          (code ? " ended with " + std::to_string(*code) : " does not end") +
                          ":\n" + ReadFile(ComplaintFile(caller));
        }
    }
    return complaints;
}

std::optional<int> RunAsCaller(int argc, char** argv) {
    if (argc != 6 || std::string(argv[1]) != "--caller") {
        return std::nullopt;
    }
    const auto number = [argv](int i) {
        return static_cast<std::uint32_t>(std::strtoul(argv[i], nullptr, 10));
    };
    Caller caller({number(3), number(4), number(5)}, number(2));
    ReleaseSemaphore(OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, kReadyName), 1, nullptr);
    if (WaitForSingleObject(OpenEventW(SYNCHRONIZE, FALSE, kGoName), kReadyMilliseconds) !=
        WAIT_OBJECT_0) {
        return 2;
    }
    caller.Run();
    WriteFile(ComplaintFile(number(2)), caller.Complaints());
    return caller.Complaints().empty() ? 0 : 1;
}

}  // namespace PlenxTest
