// Tests the paths that services have Explorer refresh, with characters of two bytes as on Windows.
// No honest service sends them over the wire in this way. A window in this process hears what the
// shell was told.

#include <future>
#include <string>
#include <vector>

#include "hostile/raw_link.h"
#include "system/host.h"
#include "system/shell_listener.h"

namespace PlenxTest {
namespace {

constexpr std::int32_t kUpdatePath = 17;
constexpr std::int32_t kFlushDrive = 18;
const std::string kFolderChanged = std::to_string(SHCNE_UPDATEDIR) + " ";

Bytes Utf16(const std::wstring& text) {
    Bytes bytes;
    for (const wchar_t unit : text) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    return bytes;
}

class ExplorerPath : public Host {
protected:
    ExplorerPath() {
        Init();
        // The endpoint is served a moment after Init has done its work.
        EXPECT_TRUE(WaitFor([] { return RpcMgmtIsServerListening(nullptr) == RPC_S_OK; }));
        listener_.Pump();
    }

    /// The shell waits for its listeners, so this thread listens while another one calls.
    void Send(std::int32_t id, const PlenxWire::Arguments& arguments) {
        const Bytes message = PlenxWire::Encode(arguments);
        const auto size = static_cast<std::uint32_t>(message.size());
        auto call = std::async(std::launch::async, [&] {
            return CallManagerRaw(RequestBytes(id, static_cast<std::int32_t>(size), size, message));
        });
        EXPECT_TRUE(WaitFor([&] {
            listener_.Pump();
            return call.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        }));
        const RawAnswer answer = call.get();
        EXPECT_EQ(answer.status, 0);
        EXPECT_EQ(answer.result, 0);
        EXPECT_EQ(answer.block, PlenxWire::Encode({0}));
    }

    /// Returns what the shell was told about a path of these bytes. The drive that follows ends the
    /// wait.
    Lines Told(const Bytes& path) {
        const std::size_t before = listener_.Events().size();
        Send(kUpdatePath, {static_cast<std::int32_t>(path.size()), path});
        Send(kFlushDrive, {std::string("Q:"), 2});
        const auto ends = [&] {
            return listener_.Events().size() > before &&
                   listener_.Events().back() == kFolderChanged + "Q:\\";
        };
        WaitFor(
            [&] {
                listener_.Pump();
                return ends();
            },
            ShellListener::Patience());
        const Lines& all = listener_.Events();
        return Lines(all.begin() + static_cast<std::ptrdiff_t>(before),
                     all.end() - (ends() ? 1 : 0));
    }

    /// Expects that the shell is told of one path.
    void ExpectTold(const Bytes& path, const std::string& expected) {
        const Lines told = Told(path);
        EXPECT_TRUE(ShowsNews(told == Lines{kFolderChanged + expected}, told));
    }

    ShellListener listener_;
};

HOST_TEST(ExplorerPath, BytesFrom0x80_ArriveAsTheyAre) {
    ASSERT_TRUE(listener_.Listens());
    ExpectTold(Utf16(L"C:\\t\x00E4st\x00FF" + std::wstring(1, L'\0')), "C:\\t\xC3\xA4st\xC3\xBF");
    ExpectTold(Utf16(L"C:\\\x8080\xFFFD\x20AC" + std::wstring(1, L'\0')),
               "C:\\\xE8\x82\x80\xEF\xBF\xBD\xE2\x82\xAC");
}

HOST_TEST(ExplorerPath, WithoutItsNul_EndsWithItsLastCharacter) {
    ASSERT_TRUE(listener_.Listens());
    std::wstring path = L"C:\\";
    for (unsigned length = 1; length != 9; ++length) {
        path += L'\x00E9';
        std::string expected = "C:\\";
        for (unsigned i = 0; i != length; ++i) {
            expected += "\xC3\xA9";
        }
        ExpectTold(Utf16(path), expected);
    }
}

HOST_TEST(ExplorerPath, OddLastByte_IsTheLowHalfOfACharacter) {
    ASSERT_TRUE(listener_.Listens());
    std::wstring path = L"C:\\";
    for (unsigned length = 1; length != 9; ++length) {
        Bytes bytes = Utf16(path);
        bytes.push_back(0xE9);
        ExpectTold(bytes, "C:\\" + std::string(length - 1, 'x') + "\xC3\xA9");
        path += L'x';
    }
}

HOST_TEST(ExplorerPath, BehindItsNul_IsNotLookedAt) {
    ASSERT_TRUE(listener_.Listens());
    ExpectTold(Utf16(L"C:\\a" + std::wstring(1, L'\0') + L"\x00E4"), "C:\\a");
}

HOST_TEST(ExplorerPath, DiskThatBeginsWithAByteFrom0x80_IsIgnored) {
    ASSERT_TRUE(listener_.Listens());
    for (const char* const disk : {"\x80", "\xC1:", "\xE4:", "\xFF"}) {
        Send(kFlushDrive, {std::string(disk), 2});
    }
    Send(kFlushDrive, {std::string("Q\xE4"), 2});
    listener_.WaitForEvents(1);
    const Lines expected = {kFolderChanged + "Q:\\"};
    EXPECT_TRUE(ShowsNews(listener_.Events() == expected, listener_.Events()));
    EXPECT_THAT(LinesOf("RpcManager::FlushExplorer"), testing::SizeIs(3))
        << "only the last disk may leave lines";
}

}  // namespace
}  // namespace PlenxTest
