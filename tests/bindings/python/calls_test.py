"""Each call reaches the library with its arguments, or says in an exception why it failed."""

import ctypes
import pickle

import plenxsdk
import pytest
from plenxsdk import PlenxError, Result, Service, native

TEXT = "näme\0\U0001f600"


def number(value, size=4):
    return (value % 2**(8 * size)).to_bytes(size, "little")


def text(value):
    return value.encode() + b"\0"


# Each call, the number of the request that the service gets, and what is in it.
CALLS = {
    "start": (lambda plenx: plenx.start(Service.PC, TEXT, "argument"), 0,
              [text(TEXT + "_1"), number(2), text("argument")]),
    "stop": (lambda plenx: plenx.stop(Service.PC, TEXT), 1, [text(TEXT + "_1")]),
    "local_device_online": (
        lambda plenx: plenx.local_device_online(1, "g", TEXT, b"\0\xff"), 2,
        [text("g_1"), text(TEXT), number(0), number(2), b"\0\xff"]),
    "remote_device_online": (
        lambda plenx: plenx.remote_device_online(1, TEXT, "device"), 2,
        [text(TEXT + "_1"), text("device"), number(1), number(0)]),
    "local_device_offline": (
        lambda plenx: plenx.local_device_offline(1, "g", TEXT, -5), 3,
        [text("g_1"), text(TEXT), number(0), number(-5)]),
    "remote_device_offline": (
        lambda plenx: plenx.remote_device_offline(1, "g", TEXT, 99), 3,
        [text("g_1"), text(TEXT), number(1), number(99)]),
    "device_name_changed": (lambda plenx: plenx.device_name_changed(TEXT), 4, [text(TEXT)]),
    "recv_remote_message": (
        lambda plenx: plenx.recv_remote_message(-4, 4000000000, TEXT), 5,
        [number(-4), number(4000000000), text(TEXT)]),
    "set_string": (
        lambda plenx: (plenx.set_string(Service.PC, plenxsdk.Key.LOCALE, TEXT),
                       plenx.start(Service.PC, "g", "a")), 7, [number(1), text(TEXT)]),
    "set_int64": (
        lambda plenx: (plenx.set_int64(Service.PC, plenxsdk.Key.INTEGER_2, -9000000000),
                       plenx.start(Service.PC, "g", "a")), 8, [number(2), number(-9000000000, 8)]),
}


@pytest.mark.parametrize("name", CALLS)
def test_a_call_brings_its_arguments_to_the_service(plenx, dll, services, name):
    dll.fake_wait_for_init()  # the PC service runs, whatever an earlier test has stopped
    call, request, arguments = CALLS[name]
    call(plenx)
    assert services.has_received(request, *arguments)


def test_get_int64_tells_whether_a_service_runs(plenx, dll):
    dll.fake_wait_for_init()
    assert plenx.get_int64(Service.PC, plenxsdk.Key.NOT_RUNNING) == 0
    assert plenx.get_int64(Service.PHONE, plenxsdk.Key.NOT_RUNNING) == 1


def test_get_string_gives_the_empty_text(plenx):
    assert plenx.get_string(Service.PC, plenxsdk.Key.LOCALE) == ""


def test_destroy_reaches_the_companion_library(plenx, services):
    plenx.destroy()
    assert "UninstallPackages()" in services.received()


def test_get_office_dir_gives_the_folder_and_the_code(plenx, dll, services):
    folder = "C:\\näme".encode()
    dll.fake_office_dir(folder, len(folder), -7)
    assert plenx.get_office_dir("g", "d", "r\0s") == ("C:\\näme\\r\0s", -7)
    assert "GetGroupNeighborDistributedDir(g, d)" in services.received()


@pytest.mark.parametrize("length", [1021, 1022, 1023, 100000])
def test_a_text_of_any_length_comes_out(plenx, dll, services, length):
    dll.fake_office_dir(b"d" * length, length, 0)
    assert plenx.get_office_dir("g", "d", "r").path == "d" * length + "\\r"


def test_an_empty_text_raises_the_librarys_own_code(plenx):
    plenx.dll.plenx_open(native.ABI + 1)  # another failure, which must not be reported again
    with pytest.raises(PlenxError) as caught:
        plenx.start(Service.PC, "", "a")
    assert (caught.value.code, caught.value.detail) == (Result.INVALID_PARAMETER, "")
    assert str(caught.value) == "A text that must not be empty is empty. (26)"


def test_a_failure_of_the_layer_has_code_sentence_and_detail(plenx):
    with pytest.raises(PlenxError) as caught:
        plenx.open_queue(0)
    error = caught.value
    assert (error.code, error.sentence) == (Result.ARGUMENT, "An argument cannot be used.")
    assert error.detail == "plenx_queue_open: capacity is 0"
    assert str(error) == "An argument cannot be used. plenx_queue_open: capacity is 0 (-1)"


def test_an_error_can_be_sent_to_another_process():
    error = pickle.loads(pickle.dumps(PlenxError(-1, "sentence", "detail")))
    assert (error.code, error.sentence, error.detail) == (-1, "sentence", "detail")


@pytest.mark.parametrize("call", [
    lambda plenx: plenx.stop(-1, "g"), lambda plenx: plenx.stop(2**32, "g"),
    lambda plenx: plenx.set_int64(1, 2**32, 0), lambda plenx: plenx.set_int64(1, 0, 2**63),
    lambda plenx: plenx.local_device_offline(1, "g", "d", 2**31),
    lambda plenx: plenx.recv_remote_message(-2**31 - 1, 0, "m"),
    lambda plenx: plenx.recv_remote_message(0, -1, "m"), lambda plenx: plenx.open_queue(2**32),
    lambda plenx: plenx.stop(1, "\ud800")])
def test_what_does_not_fit_raises_value_error_and_calls_nothing(plenx, services, call):
    with pytest.raises(ValueError):
        call(plenx)
    assert [line for line in services.received() if "PLENXPCService 4" not in line] == []


@pytest.mark.parametrize("call", [
    lambda plenx: plenx.stop(1, None), lambda plenx: plenx.stop(1, 5),
    lambda plenx: plenx.stop("1", "g"), lambda plenx: plenx.stop(1.0, "g"),
    lambda plenx: plenx.local_device_online(1, "g", "d", None),
    lambda plenx: plenx.init(1, "C:\\Data")])
def test_another_type_raises_type_error(plenx, call):
    with pytest.raises(TypeError):
        call(plenx)


def test_at_the_end_of_the_process_every_call_raises_ending(plenx, dll):
    dll.fake_ending(1)
    try:
        for call in (lambda: plenx.stop(1, "g"), lambda: plenx.get_string(1, 1),
                     lambda: plenx.open_queue()):
            with pytest.raises(PlenxError) as caught:
                call()
            assert caught.value.code == Result.ENDING
        plenx.destroy()
    finally:
        dll.fake_ending(0)


def test_an_observer_hears_everything_through_the_native_functions(plenx, services):
    heard = []

    def hear(name):
        def function(user, *arguments):
            heard.append((name, user, *arguments))
            return 0
        return function

    def heard_text(address, length):
        return ctypes.string_at(address, length).decode()

    def answer(user, service, group, length, link, status):
        heard.append(("link", user, service, heard_text(group, length), link))
        status[0] = 77
        return 0

    observer = native.Observer(
        size=ctypes.sizeof(native.Observer), user=5,
        send_local_message=native.SendLocalMessage(
            lambda user, kind, length, message, size: hear("message")(
                user, kind, length, heard_text(message, size))),
        notify_connect=native.NotifyGroup(
            lambda user, service, group, size: hear("connect")(user, service, heard_text(group, size))),
        notify_disconnect=native.NotifyGroup(
            lambda user, service, group, size: hear("disconnect")(user, service, heard_text(group, size))),
        notify_reconnect=native.NotifyGroup(
            lambda user, service, group, size: hear("reconnect")(user, service, heard_text(group, size))),
        query_link_status=native.QueryLinkStatus(answer),
        notify_status=native.NotifyStatus(
            lambda user, service, group, size, kind, value: hear("status")(
                user, service, heard_text(group, size), kind, value)),
        notify_error=native.NotifyError(hear("error")),
        notify_disk_name=native.NotifyDiskName(
            lambda user, name, size: hear("disk")(user, heard_text(name, size))))
    subscription = ctypes.c_void_p()
    assert plenx.dll.plenx_observe(observer, subscription) == 0
    services.notify(9, "m\0", -4, 7)
    services.notify(10, "g_1")
    services.notify(11, "g_2")
    services.notify(12, "g_3")
    assert services.notify(13, "g_1", 6) == 77
    services.notify(14, "g_1", 3, 1)
    services.notify(15, first=-9)
    services.notify(16, "disk")
    assert plenx.dll.plenx_unobserve(subscription) == 0
    services.notify(10, "g_1")
    assert heard == [("message", 5, -4, 7, "m\0"), ("connect", 5, 1, "g"),
                     ("disconnect", 5, 2, "g"), ("reconnect", 5, 3, "g"), ("link", 5, 1, "g", 6),
                     ("status", 5, 1, "g", 3, 1), ("error", 5, -9), ("disk", 5, "disk")]
