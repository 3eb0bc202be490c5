// A DLL of the host's own. The destructor of a static object in it calls every function of the
// plain C interface. When the process ends, this runs after the system has ended all other threads.
//
//     PLENX_LATE_CALLS    the file that gets a line for each call, once it has returned

#include <windows.h>

#include <cstdint>
#include <string>

#include "plenxsdk/plenx.h"

namespace {

class LateCaller {
public:
    // This opens the file now. Under Wine, a thread that is ended while it opens a file can leave
    // the process unable to open another.
    LateCaller() {
        wchar_t path[MAX_PATH] = {};
        GetEnvironmentVariableW(L"PLENX_LATE_CALLS", path, MAX_PATH);
        file_ = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    ~LateCaller() { CallAll(); }

private:
    void CallAll() const {
        std::int64_t number = 0;
        std::int32_t code = 0;
        char text[64];
        std::size_t length = 0;
        auto* const noQueue = reinterpret_cast<plenx_queue*>(std::uintptr_t{1} << 32);
        auto* const noSubscription = reinterpret_cast<plenx_subscription*>(noQueue);
        plenx_queue* queue = nullptr;
        plenx_subscription* subscription = nullptr;
        const plenx_event* event = nullptr;
        plenx_observer observer{};
        observer.size = sizeof(observer);

        Say("plenx_abi", Function<decltype(plenx_abi)>("plenx_abi")());
        Call<decltype(plenx_open)>("plenx_open", PLENX_ABI);
        Call<decltype(plenx_last_error)>("plenx_last_error", text, sizeof(text), &length);
        Call<decltype(plenx_init)>("plenx_init", PLENX_TEXT("C:\\late"), PLENX_TEXT("C:\\late"),
                                   PLENX_TEXT(""), 0);
        Call<decltype(plenx_destroy)>("plenx_destroy");
        Call<decltype(plenx_get_int64)>("plenx_get_int64", 1, 5, &number);
        Call<decltype(plenx_get_string)>("plenx_get_string", 1, 1, text, sizeof(text), &length);
        Call<decltype(plenx_set_int64)>("plenx_set_int64", 1, 0, 1);
        Call<decltype(plenx_set_string)>("plenx_set_string", 1, 1, PLENX_TEXT("late"));
        Call<decltype(plenx_start)>("plenx_start", 1, PLENX_TEXT("g"), PLENX_TEXT("a"));
        Call<decltype(plenx_stop)>("plenx_stop", 1, PLENX_TEXT("g"));
        Call<decltype(plenx_local_device_online)>("plenx_local_device_online", 1, PLENX_TEXT("g"),
                                                  PLENX_TEXT("d"), nullptr, 0);
        Call<decltype(plenx_remote_device_online)>("plenx_remote_device_online", 1, PLENX_TEXT("g"),
                                                   PLENX_TEXT("d"));
        Call<decltype(plenx_local_device_offline)>("plenx_local_device_offline", 1, PLENX_TEXT("g"),
                                                   PLENX_TEXT("d"), 0);
        Call<decltype(plenx_remote_device_offline)>("plenx_remote_device_offline", 1,
                                                    PLENX_TEXT("g"), PLENX_TEXT("d"), 0);
        Call<decltype(plenx_device_name_changed)>("plenx_device_name_changed", PLENX_TEXT("n"));
        Call<decltype(plenx_recv_remote_message)>("plenx_recv_remote_message", 1, 2,
                                                  PLENX_TEXT("m"));
        Call<decltype(plenx_get_office_dir)>("plenx_get_office_dir", PLENX_TEXT("g"),
                                             PLENX_TEXT("d"), PLENX_TEXT("r"), text, sizeof(text),
                                             &length, &code);
        Call<decltype(plenx_queue_open)>("plenx_queue_open", 1, &queue);
        Call<decltype(plenx_queue_next)>("plenx_queue_next", noQueue, UINT32_MAX, &event);
        Function<decltype(plenx_event_free)>("plenx_event_free")(event);
        Say("plenx_event_free", 0);
        const void* const handle =
            Function<decltype(plenx_queue_wait_handle)>("plenx_queue_wait_handle")(noQueue);
        Say("plenx_queue_wait_handle", handle == nullptr ? 0 : 1);
        Call<decltype(plenx_queue_set_link_status)>("plenx_queue_set_link_status", noQueue, 1,
                                                    PLENX_TEXT("g"), 2, 3);
        Call<decltype(plenx_queue_cancel)>("plenx_queue_cancel", noQueue);
        Call<decltype(plenx_queue_close)>("plenx_queue_close", noQueue);
        Call<decltype(plenx_observe)>("plenx_observe", &observer, &subscription);
        Call<decltype(plenx_unobserve)>("plenx_unobserve", noSubscription);
        const char* const words =
            Function<decltype(plenx_result_text)>("plenx_result_text")(PLENX_E_ENDING);
        Say(words, 0);
    }

    template <class Type>
    static Type* Function(const char* name) {
        const HMODULE module = GetModuleHandleW(L"plenxsdk_c.dll");
        return reinterpret_cast<Type*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    }

    template <class Type, class... Arguments>
    void Call(const char* name, Arguments... arguments) const {
        Say(name, Function<Type>(name)(arguments...));
    }

    void Say(const char* name, std::int64_t result) const {
        const std::string line = std::string(name) + " " + std::to_string(result) + "\n";
        DWORD written = 0;
        WriteFile(file_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }

    HANDLE file_;
};

const LateCaller kLateCaller;

}  // namespace
