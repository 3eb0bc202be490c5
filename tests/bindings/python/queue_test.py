"""A queue gives every event once, to whoever waits, and ends every wait when it is told to."""

import gc
import os
import signal
import subprocess
import sys
import threading
import time

import plenxsdk
import pytest
from conftest import LINUX_BUILD, ROOT
from plenxsdk import Event, EventKind, PlenxError, Result, Status


def event(kind, service=0, type=0, msg_len=0, value=0, lost=0, text=""):
    return Event(EventKind(kind), service, type, msg_len, value, lost, text)


def in_thread(function):
    """Runs the function; join gives its result or raises what it has raised."""
    outcome = []

    def run():
        try:
            outcome.append((function(), None))
        except BaseException as error:
            outcome.append((None, error))

    thread = threading.Thread(target=run, daemon=True)
    thread.start()

    def join():
        thread.join(20)
        assert outcome, "the thread still waits"
        result, error = outcome[0]
        if error is not None:
            raise error
        return result
    return join


def test_every_kind_of_notification_comes_with_its_numbers(queue, services):
    services.notify(9, "h\0i", -4, 8)
    services.notify(10, "g_1")
    services.notify(11, "g_2")
    services.notify(12, "g_77")
    services.notify(13, "g_1", 5)
    services.notify(14, "g_1", 3, 1)
    services.notify(15, first=-9)
    services.notify(16, "disk ü")
    assert list(queue.events(timeout=0)) == [
        event(9, type=-4, msg_len=8, text="h\0i"), event(10, 1, text="g"), event(11, 2, text="g"),
        event(12, 77, text="g"), event(13, 1, type=5, text="g"),
        event(14, 1, type=3, value=1, text="g"), event(15, value=-9), event(16, text="disk ü")]


def test_a_kind_of_a_later_dll_has_a_name():
    assert (EventKind(17).name, EventKind(17) == 17) == ("KIND_17", True)
    assert EventKind.STATUS is EventKind(14)


def test_bytes_that_are_no_utf8_come_as_surrogates_and_go_back_as_they_were(plenx, queue, services):
    services.notify(16, b"a\xff\xc3(b")
    taken = queue.next(0)
    assert (taken.text, taken.data) == ("a\udcff\udcc3(b", b"a\xff\xc3(b")
    plenx.device_name_changed(taken.text)
    assert services.has_received(4, b"a\xff\xc3(b\0")
    with pytest.raises(UnicodeEncodeError):
        taken.text.encode()


def test_the_outcome_of_a_call_comes_as_an_event(plenx, dll, queue):
    dll.fake_wait_for_init()
    plenx.start(plenxsdk.Service.PC, "home", "argument")
    assert queue.next(20) == event(14, 1, type=Status.START, value=1, text="home")


def test_next_without_an_event_gives_none_in_time(queue):
    assert queue.next(0) is None
    start = time.monotonic()
    assert queue.next(0.6) is None  # longer than one wait inside
    assert time.monotonic() - start >= 0.6


@pytest.mark.parametrize("timeout", [-1, float("nan")])
def test_a_timeout_that_is_none_raises_value_error(queue, timeout):
    with pytest.raises(ValueError):
        queue.next(timeout)


@pytest.mark.parametrize("timeout", [None, float("inf"), 1e300])
def test_a_waiting_thread_gets_the_event(queue, services, timeout):
    join = in_thread(lambda: queue.next(timeout))
    time.sleep(0.7)  # longer than one wait inside
    services.notify(10, "g_1")
    assert join() == event(10, 1, text="g")


def test_a_wait_lets_other_threads_run(queue):
    join = in_thread(lambda: queue._take(20000))
    time.sleep(0.1)
    start = time.monotonic()
    queue.cancel()
    with pytest.raises(PlenxError):
        join()
    assert time.monotonic() - start < 10


def test_ten_threads_take_every_event_once(queue, services):
    taken = []
    joins = [in_thread(lambda: taken.extend(queue)) for _ in range(10)]
    for number in range(500):
        services.notify(15, first=number)
    while len(taken) < 500:
        time.sleep(0.01)
    queue.cancel()
    for join in joins:
        join()
    assert sorted(one.value for one in taken) == list(range(500))


def test_iteration_ends_when_the_queue_is_cancelled(queue):
    join = in_thread(lambda: list(queue))
    queue.cancel()
    assert join() == []
    with pytest.raises(PlenxError) as caught:
        queue.next(0)
    assert caught.value.code == Result.CANCELLED


def test_iteration_ends_when_the_queue_is_closed(plenx):
    with plenx.open_queue() as queue:
        join = in_thread(lambda: list(queue))
        time.sleep(0.1)
    assert join() == []


def test_a_closed_queue_raises_but_closes_again(plenx):
    queue = plenx.open_queue()
    queue.close()
    queue.close()
    for call in (lambda: queue.next(0), queue.cancel, lambda: queue.set_link_status(1, "g", 1, 1)):
        with pytest.raises(PlenxError) as caught:
            call()
        assert caught.value.code == Result.HANDLE


def test_a_queue_that_is_collected_closes_itself(plenx):
    queue = plenx.open_queue()
    handle = queue._handle
    del queue
    gc.collect()
    assert plenx.dll.plenx_queue_cancel(handle) == Result.HANDLE


def test_a_full_queue_drops_the_oldest_and_counts_it(plenx, services):
    with plenx.open_queue(capacity=2) as queue:
        for number in range(5):
            services.notify(15, first=number)
        assert list(queue.events(0)) == [event(15, value=3, lost=3), event(15, value=4)]


def test_the_answer_to_a_link_query_is_what_was_set(queue, services):
    queue.set_link_status(1, "g", 5, 42)
    assert services.notify(13, "g_1", 5) == 42
    assert services.notify(13, "g_1", 6) == 0
    assert [one.value for one in queue.events(0)] == [42, 0]


def test_a_system_without_events_gives_no_wait_handle(queue):
    assert queue.wait_handle() is None


def script(text, **options):
    """A Python of its own, in which `plenx` is the library."""
    head = ("import ctypes, sys, os\n"
            f"sys.path.insert(0, {str(ROOT / 'bindings' / 'python')!r})\n"
            f"import plenxsdk\nplenx = plenxsdk.Plenx(ctypes.CDLL({LINUX_BUILD!r}))\n")
    return subprocess.Popen([sys.executable, "-c", head + text], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, encoding="utf-8", **options)


def test_ctrl_c_ends_a_wait_without_an_end():
    process = script("queue = plenx.open_queue()\nprint('waits', flush=True)\nqueue.next()\n")
    assert process.stdout.readline() == "waits\n"
    time.sleep(0.2)
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate(timeout=20)
    assert "KeyboardInterrupt" in errors


def test_an_event_that_comes_just_after_ctrl_c_is_given_by_the_next_call(tmp_path):
    process = script("import signal, threading, time\n"
                     "plenx.dll.fake_machine()\n"
                     "queue = plenx.open_queue()\n"
                     "plenx.init('C:\\\\App', 'C:\\\\Data')\n"
                     "plenx.dll.fake_wait_for_init()\n"
                     "def interrupt():\n"
                     "    time.sleep(0.2)\n"
                     "    os.kill(os.getpid(), signal.SIGINT)\n"
                     "    time.sleep(0.05)\n"
                     "    for number in 7, 8:\n"
                     "        plenx.dll.fake_notify(15, b'', ctypes.c_size_t(0), number, 0)\n"
                     "threading.Thread(target=interrupt).start()\n"
                     "try:\n"
                     "    queue.next()\n"
                     "except KeyboardInterrupt:\n"
                     "    print('interrupted', flush=True)\n"
                     "print(queue.next(5).value, queue.next(5).value, queue.next(0), flush=True)\n",
                     cwd=tmp_path)
    output, errors = process.communicate(timeout=20)
    assert (output, errors) == ("interrupted\n7 8 None\n", "")


@pytest.fixture
def interrupted(plenx, monkeypatch):
    """Gives a function: after the next call of that name, Ctrl-C is raised, as Python does it."""
    def interrupt(name):
        function = getattr(plenx.dll, name)

        def call(*arguments):
            monkeypatch.setattr(plenx.dll, name, function)
            function(*arguments)
            raise KeyboardInterrupt
        monkeypatch.setattr(plenx.dll, name, call)
    return interrupt


@pytest.fixture
def freed(plenx, monkeypatch):
    """The numbers of the events that were given back."""
    numbers = []
    free = plenx.dll.plenx_event_free

    def count(pointer):
        if pointer:
            numbers.append(pointer.contents.value)
        free(pointer)
    monkeypatch.setattr(plenx.dll, "plenx_event_free", count)
    return numbers


@pytest.mark.parametrize("name", ["plenx_queue_next", "plenx_event_free"])
def test_an_event_is_kept_and_freed_when_ctrl_c_follows_a_call(
        queue, services, freed, interrupted, name):
    services.notify(15, first=7)
    services.notify(15, first=8)
    interrupted(name)
    with pytest.raises(KeyboardInterrupt):
        queue.next(0)
    assert freed == [7]
    assert list(queue.events(0)) == [event(15, value=7), event(15, value=8)]
    assert freed == [7, 8]


def test_ctrl_c_without_an_event_keeps_nothing(queue, freed, interrupted):
    interrupted("plenx_queue_next")
    with pytest.raises(KeyboardInterrupt):
        queue.next(0)
    assert (queue.next(0), freed) == (None, [])


@pytest.mark.parametrize("end, code", [("cancel", Result.CANCELLED), ("close", Result.HANDLE)])
def test_the_end_of_a_queue_drops_what_ctrl_c_has_kept(queue, services, interrupted, end, code):
    services.notify(15, first=7)
    interrupted("plenx_queue_next")
    with pytest.raises(KeyboardInterrupt):
        queue.next(0)
    getattr(queue, end)()
    with pytest.raises(PlenxError) as caught:
        queue.next(0)
    assert caught.value.code == code


@pytest.mark.parametrize("ending", ["", "sys.exit(0)", "os._exit(0)"])
def test_a_process_ends_while_threads_wait(ending):
    process = script("import threading\nqueue = plenx.open_queue()\n"
                     "for _ in range(5):\n"
                     "    threading.Thread(target=queue.next, daemon=True).start()\n"
                     "print('ends', flush=True)\n" + ending)
    output, errors = process.communicate(timeout=20)
    assert (process.returncode, output, errors) == (0, "ends\n", "")


def test_memory_is_back_after_many_events(queue, services):
    def megabytes():
        gc.collect()
        with open("/proc/self/statm", encoding="ascii") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE") / 2**20

    def pass_on(events):
        for number in range(events):
            services.notify(9, b"x" * 10000, number)
            assert queue.next(0).type == number

    pass_on(200)
    before = megabytes()
    pass_on(5000)  # 50 MB of text
    assert megabytes() - before < 15
