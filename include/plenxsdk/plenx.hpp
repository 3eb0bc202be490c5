/// @file
/// plenx.h for C++17 and any compiler. It adds handles that close themselves and std::string_view.
/// A call gives its result as a value, or throws it as an exception where you ask for one. This is
/// a header only, so exceptions stay on the host's own side and never cross the border of the DLL.
///
/// @code
///     plenx::Library sdk = plenx::Library::linked();
///     plenx::Queue queue = sdk.open_queue(1000).or_throw();
///     sdk.init("C:\\Plenx\\App", "C:\\Plenx\\Data", "", false).or_throw();
///     sdk.start(PLENX_PC, "home", "argument").or_throw();
///     while (plenx::Event event = queue.next(60000).or_throw()) {
///         std::cout << event.kind() << ' ' << event.text() << '\n';
///     }
/// @endcode
///
/// Library::linked() needs the import library. A host that ships the DLLs in a folder of their own
/// defines PLENX_LOAD before it includes this header, calls Library::load with the path of
/// plenxsdk_c.dll, and links nothing.
///
/// plenx.h says what each operation means, at the function of the same name.

#ifndef PLENXSDK_PLENX_HPP
#define PLENXSDK_PLENX_HPP

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "plenx.h"

#if defined(PLENX_LOAD)
#include <windows.h>
#endif

namespace plenx {

/// Names all functions of plenx.h: PLENX_HPP_EACH calls its argument with each of their names.
#define PLENX_HPP_EACH(name_is)                                                                  \
    name_is(abi) name_is(open) name_is(last_error) name_is(result_text) name_is(init)            \
        name_is(destroy) name_is(get_int64) name_is(get_string) name_is(set_int64)               \
            name_is(set_string) name_is(start) name_is(stop) name_is(local_device_online)        \
                name_is(remote_device_online) name_is(local_device_offline)                      \
                    name_is(remote_device_offline) name_is(device_name_changed)                  \
                        name_is(recv_remote_message) name_is(get_office_dir) name_is(queue_open) \
                            name_is(queue_next) name_is(event_free) name_is(queue_wait_handle)   \
                                name_is(queue_set_link_status) name_is(queue_cancel)             \
                                    name_is(queue_close) name_is(observe) name_is(unobserve)

/// The addresses of the functions, either linked with the host or found in a loaded DLL.
struct Functions {
// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a member cannot have any.
#define PLENX_HPP_MEMBER(name) decltype(&::plenx_##name) name;
    PLENX_HPP_EACH(PLENX_HPP_MEMBER)  // NOLINT(readability-identifier-naming)
#undef PLENX_HPP_MEMBER
};

/// The exception that or_throw throws.
class Error : public std::runtime_error {
public:
    /// @param code   The result.
    /// @param words  A sentence that says what went wrong.
    Error(plenx_result code, const std::string& words) : std::runtime_error(words), code_(code) {}

    /// The result of the call.
    plenx_result code() const noexcept { return code_; }

private:
    plenx_result code_;
};

/// The result of a call, and words for it if the call failed.
class [[nodiscard]] Result {
public:
    /// @param code   The result.
    /// @param words  A sentence; empty for success.
    Result(plenx_result code, std::string words) : code_(code), words_(std::move(words)) {}

    /// The number: 0, 26, or one of the PLENX_E numbers.
    plenx_result code() const noexcept { return code_; }
    /// A sentence that says what went wrong; empty for success.
    const std::string& words() const noexcept { return words_; }
    /// True when the call succeeded.
    explicit operator bool() const noexcept { return code_ == PLENX_OK; }

    /// Throws an Error unless the call succeeded.
    void or_throw() const {
        if (code_ != PLENX_OK) {
            throw Error(code_, words_);
        }
    }

private:
    plenx_result code_;
    std::string words_;
};

/// The result of a call, and the value that the call gave.
template <class T>
class [[nodiscard]] Value {
public:
    /// @param result  A success exactly when there is a value.
    /// @param value   The value that the call gave.
    Value(Result result, std::optional<T> value)
        : result_(std::move(result)), value_(std::move(value)) {}

    /// The result without the value.
    const Result& result() const noexcept { return result_; }
    /// True when the call succeeded and there is a value.
    explicit operator bool() const noexcept { return value_.has_value(); }
    /// The value. Use it after a success only.
    T& operator*() noexcept { return *value_; }
    /// A member of the value. Use it after a success only.
    T* operator->() noexcept { return &*value_; }

    /// The value; throws an Error when there is none.
    T or_throw() && {
        result_.or_throw();
        return std::move(*value_);
    }

private:
    Result result_;
    std::optional<T> value_;
};

/// One notification, or no notification. It may outlive its queue.
class Event {
public:
    /// Holds no notification.
    Event() = default;
    /// Owns the event from now on, and frees it when this object is destroyed.
    Event(const Functions& functions, const plenx_event* event) noexcept
        : functions_(&functions), event_(event) {}
    ~Event() { free(); }
    /// Takes the other one's event.
    Event(Event&& other) noexcept
        : functions_(other.functions_), event_(std::exchange(other.event_, nullptr)) {}
    /// Swaps the two events.
    Event& operator=(Event&& other) noexcept {
        std::swap(functions_, other.functions_);
        std::swap(event_, other.event_);
        return *this;
    }

    /// True when there is a notification. If there is none, do not call the functions below.
    explicit operator bool() const noexcept { return event_ != nullptr; }
    /// A PLENX_EVENT number.
    std::uint32_t kind() const noexcept { return event_->kind; }
    /// Its meaning depends on the kind; see the PLENX_EVENT numbers.
    std::uint32_t service() const noexcept { return event_->service; }
    /// Its meaning depends on the kind; see the PLENX_EVENT numbers.
    std::int32_t type() const noexcept { return event_->type; }
    /// See PLENX_EVENT_MESSAGE.
    std::uint32_t msg_len() const noexcept { return event_->msg_len; }
    /// Its meaning depends on the kind; see the PLENX_EVENT numbers.
    std::int32_t value() const noexcept { return event_->value; }
    /// How many notifications were dropped directly before this one.
    std::uint64_t lost() const noexcept { return event_->lost; }
    /// Its meaning depends on the kind; see the PLENX_EVENT numbers.
    std::string_view text() const noexcept { return {event_->text, event_->text_length}; }

private:
    void free() noexcept {
        if (event_ != nullptr) {
            functions_->event_free(event_);
        }
    }

    const Functions* functions_ = nullptr;
    const plenx_event* event_ = nullptr;
};

/// The base class of both kinds of handles. It closes its handle when it is destroyed, and it can
/// be moved.
template <class Handle, plenx_result (PLENX_CALL* Functions::*close_function)(Handle*)>
class Owned {
public:
    Owned(const Functions& functions, Handle* handle) noexcept
        : functions_(&functions), handle_(handle) {}
    ~Owned() {
        if (handle_ != nullptr) {
            (functions_->*close_function)(handle_);
        }
    }
    /// Takes the other one's handle.
    Owned(Owned&& other) noexcept
        : functions_(other.functions_), handle_(std::exchange(other.handle_, nullptr)) {}
    /// Swaps the two handles, so the other object later closes the handle that this one had.
    Owned& operator=(Owned&& other) noexcept {
        std::swap(functions_, other.functions_);
        std::swap(handle_, other.handle_);
        return *this;
    }

    /// The handle, for a call of the functions of plenx.h.
    Handle* handle() const noexcept { return handle_; }

protected:
    /// Never null.
    const Functions* functions_;

private:
    Handle* handle_;
};

/// Makes the result, with its words, of a call that has just been made on this thread.
inline Result result_of(const Functions& functions, plenx_result code) {
    if (code == PLENX_OK) {
        return {code, {}};
    }
    if (code > PLENX_OK) {  // the library's own code: last_error has no words for it
        return {code, functions.result_text(code)};
    }
    char words[1024] = "";
    std::size_t length = 0;
    if (functions.last_error(words, sizeof(words), &length) != PLENX_OK) {
        return {code, functions.result_text(code)};
    }
    return {code, std::string(words, length)};
}

/// A queue of notifications, which closes itself when it is destroyed. Do not destroy it inside a
/// function of an observer: there the library refuses, and the queue stays open without an owner.
class Queue : public Owned<plenx_queue, &Functions::queue_close> {
public:
    using Owned::Owned;

    /// Takes the oldest event, or waits for one. The Event is empty when no event came in time.
    /// @param milliseconds  How long to wait; UINT32_MAX waits for ever.
    Value<Event> next(std::uint32_t milliseconds) {
        const plenx_event* event = nullptr;
        const plenx_result code = functions_->queue_next(handle(), milliseconds, &event);
        if (code != PLENX_OK) {
            return {result_of(*functions_, code), std::nullopt};
        }
        return {Result(code, {}), Event(*functions_, event)};
    }

    /// Gives a HANDLE to wait on; see plenx_queue_wait_handle.
    void* wait_handle() noexcept { return functions_->queue_wait_handle(handle()); }

    /// Sets the answer to a service's question; see plenx_queue_set_link_status.
    Result set_link_status(std::uint32_t service, std::string_view group, std::uint32_t link,
                           std::int32_t status) {
        return result_of(*functions_,
                         functions_->queue_set_link_status(handle(), service, group.data(),
                                                           group.size(), link, status));
    }

    /// Ends all waiting for good; see plenx_queue_cancel.
    Result cancel() { return result_of(*functions_, functions_->queue_cancel(handle())); }
};

/// The base class of a host's observers. Override the functions that the library should call; it
/// calls them on its own threads. Each returns 0 when it has handled the notification. This class
/// catches every exception that a function throws, and the library logs the code PLENX_E_FAILED.
class Observer {
public:
    Observer() = default;
    virtual ~Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    /// See PLENX_EVENT_MESSAGE.
    virtual std::int32_t send_local_message(std::int32_t type, std::uint32_t msg_len,
                                            std::string_view message) {
        return unused(type, msg_len, message);
    }
    /// See PLENX_EVENT_CONNECT.
    virtual std::int32_t notify_connect(std::uint32_t service, std::string_view group) {
        return unused(service, group);
    }
    /// See PLENX_EVENT_DISCONNECT.
    virtual std::int32_t notify_disconnect(std::uint32_t service, std::string_view group) {
        return unused(service, group);
    }
    /// See PLENX_EVENT_RECONNECT.
    virtual std::int32_t notify_reconnect(std::uint32_t service, std::string_view group) {
        return unused(service, group);
    }
    /// See plenx_observer. The value that the function leaves in status is its answer.
    virtual std::int32_t query_link_status(std::uint32_t service, std::string_view group,
                                           std::uint32_t link, std::int32_t& status) {
        return unused(service, group, link, status);
    }
    /// See PLENX_EVENT_STATUS.
    virtual std::int32_t notify_status(std::uint32_t service, std::string_view group,
                                       std::uint32_t kind, bool value) {
        return unused(service, group, kind, value);
    }
    /// See PLENX_EVENT_ERROR.
    virtual std::int32_t notify_error(std::int32_t code) { return unused(code); }
    /// See PLENX_EVENT_DISK_NAME.
    virtual std::int32_t notify_disk_name(std::string_view name) { return unused(name); }

    /// Makes the struct of plenx.h whose functions call those of this object.
    plenx_observer functions() noexcept {
        plenx_observer observer{};
        observer.size = sizeof(observer);
        observer.user = this;
        observer.send_local_message = [](void* user, std::int32_t type, std::uint32_t msg_len,
                                         const char* message, std::size_t length) {
            return call(user, [&](Observer& to) {
                return to.send_local_message(type, msg_len, {message, length});
            });
        };
        observer.notify_connect = [](void* user, std::uint32_t service, const char* group,
                                     std::size_t length) {
            return call(user,
                        [&](Observer& to) { return to.notify_connect(service, {group, length}); });
        };
        observer.notify_disconnect = [](void* user, std::uint32_t service, const char* group,
                                        std::size_t length) {
            return call(
                user, [&](Observer& to) { return to.notify_disconnect(service, {group, length}); });
        };
        observer.notify_reconnect = [](void* user, std::uint32_t service, const char* group,
                                       std::size_t length) {
            return call(
                user, [&](Observer& to) { return to.notify_reconnect(service, {group, length}); });
        };
        observer.query_link_status = [](void* user, std::uint32_t service, const char* group,
                                        std::size_t length, std::uint32_t link,
                                        std::int32_t* status) {
            return call(user, [&](Observer& to) {
                return to.query_link_status(service, {group, length}, link, *status);
            });
        };
        observer.notify_status = [](void* user, std::uint32_t service, const char* group,
                                    std::size_t length, std::uint32_t kind, std::int32_t value) {
            return call(user, [&](Observer& to) {
                return to.notify_status(service, {group, length}, kind, value != 0);
            });
        };
        observer.notify_error = [](void* user, std::int32_t code) {
            return call(user, [&](Observer& to) { return to.notify_error(code); });
        };
        observer.notify_disk_name = [](void* user, const char* name, std::size_t length) {
            return call(user, [&](Observer& to) { return to.notify_disk_name({name, length}); });
        };
        return observer;
    }

private:
    template <class... Arguments>
    static std::int32_t unused(const Arguments&...) noexcept {
        return PLENX_OK;
    }

    template <class Call>
    static std::int32_t call(void* user, Call call) noexcept {
        try {
            return call(*static_cast<Observer*>(user));
        } catch (...) {
            return PLENX_E_FAILED;
        }
    }
};

/// The registration of an observer. It ends when this object is destroyed. Do not destroy it inside
/// a function of an observer: there the library refuses, and it keeps calling the observer.
class Subscription : public Owned<plenx_subscription, &Functions::unobserve> {
public:
    using Owned::Owned;
};

/// The library. An object holds no more than an address, so a host may copy it freely.
class Library {
public:
    /// Gives the DLL that the host was linked with.
    static Library linked() noexcept {
        static const Functions functions = {
#define PLENX_HPP_ADDRESS(name) &::plenx_##name,
            PLENX_HPP_EACH(PLENX_HPP_ADDRESS)
#undef PLENX_HPP_ADDRESS
        };
        return Library(functions);
    }

#if defined(PLENX_LOAD)
    /// Loads the DLL, which then stays loaded. Windows finds the DLLs that it needs in the folder
    /// of the DLL itself, whatever folders the process searches otherwise.
    /// @param path  The absolute path of plenxsdk_c.dll.
    /// @return PLENX_E_FAILED when the DLL cannot be loaded, or PLENX_E_ABI when it is older than
    ///         this header.
    static Value<Library> load(const wchar_t* path) {
        constexpr DWORD kOwnFolderAndSystem = 0x00000100 | 0x00001000;
        const HMODULE module = LoadLibraryExW(path, nullptr, kOwnFolderAndSystem);
        if (module == nullptr) {
            return {Result(PLENX_E_FAILED, "plenxsdk_c.dll cannot be loaded: Windows error " +
                                               std::to_string(GetLastError())),
                    std::nullopt};
        }
        Functions found{};
        bool all = true;
        const auto find = [&](auto& function, const char* name) {
            function = reinterpret_cast<std::decay_t<decltype(function)>>(
                reinterpret_cast<void*>(GetProcAddress(module, name)));
            all = all && function != nullptr;
        };
#define PLENX_HPP_FIND(name) find(found.name, "plenx_" #name);
        PLENX_HPP_EACH(PLENX_HPP_FIND)
#undef PLENX_HPP_FIND
        if (!all) {
            return {Result(PLENX_E_ABI, "plenxsdk_c.dll is older than this host's plenx.hpp"),
                    std::nullopt};
        }
        const plenx_result code = found.open(PLENX_ABI);
        if (code != PLENX_OK) {
            return {result_of(found, code), std::nullopt};
        }
        return {Result(PLENX_OK, {}), Library(*new Functions(found))};  // it stays, as the DLL does
    }
#endif

    /// The functions of plenx.h, for a direct call.
    const Functions& functions() const noexcept { return *functions_; }

    /// Compares this header with the DLL; see plenx_open.
    Result open() const { return result(functions_->open(PLENX_ABI)); }

    /// See plenx_init.
    Result init(std::string_view install, std::string_view data, std::string_view third,
                bool flag) const {
        return result(functions_->init(install.data(), install.size(), data.data(), data.size(),
                                       third.data(), third.size(), flag ? 1 : 0));
    }
    /// See plenx_destroy.
    Result destroy() const { return result(functions_->destroy()); }

    /// See plenx_get_int64.
    Value<std::int64_t> get_int64(std::uint32_t service, std::uint32_t key) const {
        std::int64_t value = 0;
        const plenx_result code = functions_->get_int64(service, key, &value);
        return valued(code, value);
    }
    /// See plenx_get_string.
    Value<std::string> get_string(std::uint32_t service, std::uint32_t key) const {
        std::string text;
        const plenx_result code =
            filled(text, [&](char* buffer, std::size_t size, std::size_t* length) {
                return functions_->get_string(service, key, buffer, size, length);
            });
        return valued(code, std::move(text));
    }
    /// See plenx_set_int64.
    Result set_int64(std::uint32_t service, std::uint32_t key, std::int64_t value) const {
        return result(functions_->set_int64(service, key, value));
    }
    /// See plenx_set_string.
    Result set_string(std::uint32_t service, std::uint32_t key, std::string_view value) const {
        return result(functions_->set_string(service, key, value.data(), value.size()));
    }

    /// See plenx_start.
    Result start(std::uint32_t service, std::string_view group, std::string_view argument) const {
        return result(functions_->start(service, group.data(), group.size(), argument.data(),
                                        argument.size()));
    }
    /// See plenx_stop.
    Result stop(std::uint32_t service, std::string_view group) const {
        return result(functions_->stop(service, group.data(), group.size()));
    }
    /// See plenx_local_device_online.
    Result local_device_online(std::uint32_t service, std::string_view group,
                               std::string_view device, std::string_view data) const {
        return result(functions_->local_device_online(service, group.data(), group.size(),
                                                      device.data(), device.size(), data.data(),
                                                      data.size()));
    }
    /// See plenx_remote_device_online.
    Result remote_device_online(std::uint32_t service, std::string_view group,
                                std::string_view device) const {
        return result(functions_->remote_device_online(service, group.data(), group.size(),
                                                       device.data(), device.size()));
    }
    /// See plenx_local_device_offline.
    Result local_device_offline(std::uint32_t service, std::string_view group,
                                std::string_view device, std::int32_t trigger) const {
        return result(functions_->local_device_offline(service, group.data(), group.size(),
                                                       device.data(), device.size(), trigger));
    }
    /// See plenx_remote_device_offline.
    Result remote_device_offline(std::uint32_t service, std::string_view group,
                                 std::string_view device, std::int32_t trigger) const {
        return result(functions_->remote_device_offline(service, group.data(), group.size(),
                                                        device.data(), device.size(), trigger));
    }
    /// See plenx_device_name_changed.
    Result device_name_changed(std::string_view name) const {
        return result(functions_->device_name_changed(name.data(), name.size()));
    }
    /// See plenx_recv_remote_message.
    Result recv_remote_message(std::int32_t type, std::uint32_t msg_len,
                               std::string_view message) const {
        return result(
            functions_->recv_remote_message(type, msg_len, message.data(), message.size()));
    }
    /// See plenx_get_office_dir. The pair holds the companion library's code and the folder.
    Value<std::pair<std::int32_t, std::string>> get_office_dir(std::string_view group,
                                                               std::string_view device,
                                                               std::string_view relative) const {
        std::pair<std::int32_t, std::string> answer;
        const plenx_result code =
            filled(answer.second, [&](char* buffer, std::size_t size, std::size_t* length) {
                return functions_->get_office_dir(group.data(), group.size(), device.data(),
                                                  device.size(), relative.data(), relative.size(),
                                                  buffer, size, length, &answer.first);
            });
        return valued(code, std::move(answer));
    }

    /// See plenx_queue_open.
    Value<Queue> open_queue(std::uint32_t capacity) const {
        plenx_queue* queue = nullptr;
        const plenx_result code = functions_->queue_open(capacity, &queue);
        return valued(code, Queue(*functions_, queue));
    }
    /// See plenx_observe.
    /// @param observer  It must live longer than the subscription.
    Value<Subscription> observe(Observer& observer) const {
        const plenx_observer functions = observer.functions();
        plenx_subscription* subscription = nullptr;
        const plenx_result code = functions_->observe(&functions, &subscription);
        return valued(code, Subscription(*functions_, subscription));
    }

private:
    explicit Library(const Functions& functions) noexcept : functions_(&functions) {}

    Result result(plenx_result code) const { return result_of(*functions_, code); }

    template <class T>
    Value<T> valued(plenx_result code, T value) const {
        Result result = result_of(*functions_, code);
        if (!result) {
            return {std::move(result), std::nullopt};
        }
        return {std::move(result), std::move(value)};
    }

    // Asks with larger and larger buffers, because the text may grow between two calls.
    template <class Ask>
    static plenx_result filled(std::string& text, Ask ask) {
        std::size_t length = 255;
        plenx_result code = PLENX_E_BUFFER;
        while (code == PLENX_E_BUFFER) {
            text.resize(length + 1);
            code = ask(text.data(), text.size(), &length);
        }
        text.resize(code == PLENX_OK ? length : 0);
        return code;
    }

    const Functions* functions_;
};

#undef PLENX_HPP_EACH

}  // namespace plenx

#endif  // PLENXSDK_PLENX_HPP
