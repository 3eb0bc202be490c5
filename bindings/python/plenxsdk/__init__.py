"""plenxsdk runs a distributed file system on this Windows PC. This is a whole host:

    import plenxsdk

    plenx = plenxsdk.load()
    with plenx.open_queue() as queue:
        plenx.init(r"C:\\Plenx\\App", r"C:\\Plenx\\Data")
        plenx.start(plenxsdk.Service.PC, "home", "argument")
        for event in queue.events(timeout=60):
            print(event.kind.name, event.service, event.text, event.value)
            if event.kind == plenxsdk.EventKind.STATUS:
                break

Every call that changes something queues a job and returns at once. The outcome arrives later as an
event. Three calls wait while the office service is started, stopped or told of a device: destroy,
get_office_dir and a second init. A call that the library does not take raises PlenxError.

Text is str here and UTF-8 in the library. Bytes that are not UTF-8 become lone surrogates, as in
Python's own file names ("surrogateescape"), and a text that holds them goes back as the same
bytes. Event.data has the bytes themselves. A text may hold a NUL.

Every function may be called on any thread. A call that waits lets Python's other threads run.
"""

from __future__ import annotations

import ctypes
import enum
import math
import operator
import os
import threading
import time
import weakref
from collections import deque
from dataclasses import dataclass
from pathlib import Path
from types import TracebackType
from typing import Callable, Iterator, NamedTuple, Optional, SupportsIndex, Type, Union

from . import native
from .native import LoadError

__all__ = ["Event", "EventKind", "Key", "LoadError", "OfficeDir", "Plenx", "PlenxError", "Queue",
           "Result", "Service", "Status", "load"]

Text = Union[str, bytes]
Folder = Union[str, "os.PathLike[str]"]


class Service(enum.IntEnum):
    """The service that an operation addresses."""

    OFFICE = 0
    PC = 1
    PHONE = 2
    COMBINED = 3  #: several; plenx.h says which


class Key(enum.IntEnum):
    """The key of a setting, or of a question for Plenx.get_int64."""

    INTEGER_0 = 0
    LOCALE = 1
    INTEGER_2 = 2
    NOT_RUNNING = 5


class Status(enum.IntEnum):
    """The type of an event of the kind STATUS. A service may send further numbers."""

    START = 0
    STOP = 1
    ONLINE = 2
    OFFLINE = 3


class Result(enum.IntEnum):
    """The code of a PlenxError."""

    INVALID_PARAMETER = 26
    ARGUMENT = -1
    BUFFER = -2
    MEMORY = -3
    ABI = -4
    HANDLE = -5
    CANCELLED = -6
    DEADLOCK = -7
    ENDING = -8
    FAILED = -9


class EventKind(enum.IntEnum):
    """What an event reports. A kind of a later DLL has a name such as KIND_17."""

    MESSAGE = 9  #: a message of a service: type, msg_len, text
    CONNECT = 10  #: service, text is the group
    DISCONNECT = 11  #: service, text is the group
    RECONNECT = 12  #: service, text is the group
    LINK_QUERY = 13  #: service, type is the link, value is the answer, text is the group
    STATUS = 14  #: service, type is a Status, value is 0 or 1, text is the group
    ERROR = 15  #: value is the code of a service's own error
    DISK_NAME = 16  #: text is the name under which the disk is mounted

    @classmethod
    def _missing_(cls, value: object) -> Optional[EventKind]:
        if not isinstance(value, int):
            return None
        member = int.__new__(cls, value)
        member._name_ = f"KIND_{value}"
        member._value_ = value
        return member


class PlenxError(Exception):
    """The library did not take a call."""

    def __init__(self, code: int, sentence: str, detail: str = "") -> None:
        super().__init__(code, sentence, detail)
        self.code = code  #: a Result, or another number of a later DLL
        self.sentence = sentence  #: the constant sentence for this code
        self.detail = detail  #: what the library says about this failure; may be empty

    def __str__(self) -> str:
        detail = f" {self.detail}" if self.detail else ""
        return f"{self.sentence}{detail} ({self.code})"


@dataclass(frozen=True)
class Event:
    """A notification. What its kind does not use is 0 or empty."""

    kind: EventKind
    service: int
    type: int
    msg_len: int  #: a number of the service's own; never the length of the text
    value: int
    lost: int  #: how many events the full queue has dropped directly before this one
    text: str

    @property
    def data(self) -> bytes:
        """The bytes of the text."""
        return _encode(self.text)


class OfficeDir(NamedTuple):
    """The folder of a device, and the companion library's own code."""

    path: str
    code: int


def _encode(text: Text) -> bytes:
    if isinstance(text, str):
        return text.encode("utf-8", "surrogateescape")
    if isinstance(text, bytes):
        return text
    raise TypeError(f"a text must be str or bytes, not {type(text).__name__}")


def _decode(text: bytes) -> str:
    return text.decode("utf-8", "surrogateescape")


def _text(text: Text) -> tuple[bytes, int]:
    encoded = _encode(text)
    return encoded, len(encoded)


# ctypes would truncate a number that does not fit.
def _number(number: SupportsIndex, least: int, most: int) -> int:
    value = operator.index(number)
    if not least <= value <= most:
        raise ValueError(f"{value} is not between {least} and {most}")
    return value


def _uint32(number: SupportsIndex) -> int:
    return _number(number, 0, 2**32 - 1)


def _int32(number: SupportsIndex) -> int:
    return _number(number, -2**31, 2**31 - 1)


def _int64(number: SupportsIndex) -> int:
    return _number(number, -2**63, 2**63 - 1)


class Plenx:
    """The library. plenxsdk.load gives it; a process has only one."""

    def __init__(self, dll: ctypes.CDLL) -> None:
        """Takes a DLL that is loaded.

        Raises LoadError when it is another DLL, and PlenxError when it is too old.
        """
        if not hasattr(dll, "plenx_open"):
            raise LoadError(f"{dll._name} is not plenxsdk_c.dll.")
        self.dll = native.declare(dll)  #: the functions of plenx.h themselves
        self._check(dll.plenx_open(native.ABI))

    def init(self, install: Folder, data: Folder, third: Text = "", flag: bool = False) -> None:
        """Makes the library ready. The process must be elevated. Call it after open_queue.

        The install folder holds plenxservice.exe and the driver. DELETES the folder "plenx" in the
        data folder with everything in it. third and flag are for the companion library only.

        The first call of a process waits for no job. Every later one waits while the office service
        is started, stopped or told of a device.
        """
        self._check(self.dll.plenx_init(*_text(os.fspath(install)), *_text(os.fspath(data)),
                                        *_text(third), int(bool(flag))))

    def destroy(self) -> None:
        """Asks the companion library to uninstall its packages. A host need not call it.

        Waits while the office service is started, stopped or told of a device.
        """
        self._check(self.dll.plenx_destroy())

    def get_int64(self, service: int, key: int) -> int:
        """Tells whether a service runs: with Key.NOT_RUNNING it gives 1 while the service does not.

        Every other key gives 0. Waits while the job of the first init is running.
        """
        value = ctypes.c_int64()
        self._check(self.dll.plenx_get_int64(_uint32(service), _uint32(key), value))
        return value.value

    def get_string(self, service: int, key: int) -> str:
        """Always gives the empty text, because string settings cannot be read back."""
        return self._read(lambda *buffer: self.dll.plenx_get_string(
            _uint32(service), _uint32(key), *buffer))

    def set_int64(self, service: int, key: int, value: int) -> None:
        """Queues a change of a setting, which the service receives at its next start."""
        self._check(self.dll.plenx_set_int64(_uint32(service), _uint32(key), _int64(value)))

    def set_string(self, service: int, key: int, value: Text) -> None:
        """Queues a change of a setting, which the service receives at its next start."""
        self._check(self.dll.plenx_set_string(_uint32(service), _uint32(key), *_text(value)))

    def start(self, service: int, group: Text, argument: Text) -> None:
        """Queues the start of a service with a group. The outcome comes as Status.START."""
        self._check(self.dll.plenx_start(_uint32(service), *_text(group), *_text(argument)))

    def stop(self, service: int, group: Text) -> None:
        """Queues the stop of a service. The outcome comes as Status.STOP."""
        self._check(self.dll.plenx_stop(_uint32(service), *_text(group)))

    def local_device_online(self, service: int, group: Text, device: Text,
                            data: bytes = b"") -> None:
        """Queues the news that the local device is online. Status.ONLINE comes if that fails."""
        self._check(self.dll.plenx_local_device_online(
            _uint32(service), *_text(group), *_text(device), *_text(data)))

    def remote_device_online(self, service: int, group: Text, device: Text) -> None:
        """Queues the news that a remote device is online. Status.ONLINE may follow."""
        self._check(self.dll.plenx_remote_device_online(
            _uint32(service), *_text(group), *_text(device)))

    def local_device_offline(self, service: int, group: Text, device: Text,
                             trigger: int = 0) -> None:
        """Queues the news that the local device goes offline. Status.OFFLINE may follow."""
        self._check(self.dll.plenx_local_device_offline(
            _uint32(service), *_text(group), *_text(device), _int32(trigger)))

    def remote_device_offline(self, service: int, group: Text, device: Text,
                              trigger: int = 0) -> None:
        """Queues the news that a remote device goes offline. Status.OFFLINE may follow."""
        self._check(self.dll.plenx_remote_device_offline(
            _uint32(service), *_text(group), *_text(device), _int32(trigger)))

    def device_name_changed(self, name: Text) -> None:
        """Queues the news, for the PC service, that this device has a new name."""
        self._check(self.dll.plenx_device_name_changed(*_text(name)))

    def recv_remote_message(self, type: int, msg_len: int, message: Text) -> None:
        """Queues, for the PC service, a message that a remote device has sent.

        The service gets type and msg_len unchanged; msg_len need not be the message's length.
        """
        self._check(self.dll.plenx_recv_remote_message(
            _int32(type), _uint32(msg_len), *_text(message)))

    def get_office_dir(self, group: Text, device: Text, relative: Text) -> OfficeDir:
        """Asks the companion library for the folder of a device of a group.

        Waits while the office service is started, stopped or told of a device.
        """
        code = ctypes.c_int32()
        path = self._read(lambda *buffer: self.dll.plenx_get_office_dir(
            *_text(group), *_text(device), *_text(relative), *buffer, code))
        return OfficeDir(path, code.value)

    def open_queue(self, capacity: int = 1000) -> Queue:
        """Opens a queue, which takes every event from now on.

        It holds capacity events. When it is full, it drops the oldest; Event.lost counts them.
        """
        handle = ctypes.c_void_p()
        self._check(self.dll.plenx_queue_open(_uint32(capacity), handle))
        assert handle.value is not None
        return Queue(self, handle.value)

    def _check(self, result: int) -> None:
        if result != 0:
            sentence = _decode(self.dll.plenx_result_text(result))
            raise PlenxError(_known_result(result), sentence, self._last_error(result))

    # 26 comes from the library itself, and plenx_last_error knows nothing of the library's
    # failures.
    def _last_error(self, result: int) -> str:
        if result > 0:
            return ""
        buffer = ctypes.create_string_buffer(1024)
        length = ctypes.c_size_t()
        self.dll.plenx_last_error(buffer, len(buffer), length)
        return _decode(buffer.raw[:min(length.value, len(buffer) - 1)])

    # Calls again while the text does not fit into the buffer.
    def _read(self, call: Callable[..., int]) -> str:
        capacity = 1024
        while True:
            buffer = ctypes.create_string_buffer(capacity)
            length = ctypes.c_size_t()
            result = call(buffer, capacity, length)
            if result != Result.BUFFER:
                self._check(result)
                return _decode(buffer.raw[:length.value])
            capacity = length.value + 1


def _known_result(result: int) -> int:
    try:
        return Result(result)
    except ValueError:
        return result


# Python handles Ctrl-C only between calls of the DLL, so a long wait is many short ones.
_LONGEST_WAIT = 0.5


class Queue:
    """Holds events until a thread takes them. Any number of threads may wait.

    Leaving the with block closes it. A queue that is garbage-collected closes itself, too.
    """

    def __init__(self, plenx: Plenx, handle: int) -> None:
        self._plenx = plenx
        self._handle = handle
        self._kept: deque[Event] = deque()
        self._close = weakref.finalize(self, plenx.dll.plenx_queue_close, handle)
        # At the end of the process there is nothing to close.
        self._close.atexit = False

    def __enter__(self) -> Queue:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def __iter__(self) -> Iterator[Event]:
        return self.events()

    def events(self, timeout: Optional[float] = None) -> Iterator[Event]:
        """Gives one event after another.

        Ends when none has come for timeout seconds, or when the queue is cancelled or closed.
        Without a timeout it waits for ever.
        """
        while True:
            try:
                event = self.next(timeout)
            except PlenxError as error:
                if error.code in (Result.CANCELLED, Result.HANDLE):
                    return
                raise
            if event is None:
                return
            yield event

    def next(self, timeout: Optional[float] = None) -> Optional[Event]:
        """Takes the oldest event. Waits timeout seconds for one, or for ever; 0 does not wait.

        Gives None when none has come. Raises PlenxError with Result.CANCELLED or Result.HANDLE
        when the queue was cancelled or closed.
        """
        end = _end_of(timeout)
        while True:
            left = max(0.0, end - time.monotonic())
            event = self._take(math.ceil(min(left, _LONGEST_WAIT) * 1000))
            if event is not None or left <= _LONGEST_WAIT:
                return event

    def set_link_status(self, service: int, group: Text, link: int, status: int) -> None:
        """Sets the answer to a service that asks for the status of this link."""
        self._check(self._plenx.dll.plenx_queue_set_link_status(
            self._handle, _uint32(service), *_text(group), _uint32(link), _int32(status)))

    def wait_handle(self) -> Optional[int]:
        """Gives a Windows event (HANDLE), set while the queue holds something. Never close it.

        Gives None when the system gives no event.
        """
        handle: Optional[int] = self._plenx.dll.plenx_queue_wait_handle(self._handle)
        return handle

    def cancel(self) -> None:
        """Ends all waiting for good, on every thread. May be called on any thread."""
        self._check(self._plenx.dll.plenx_queue_cancel(self._handle))
        self._kept.clear()

    def close(self) -> None:
        """Closes the queue and ends all waiting. A second call does nothing."""
        result = self._plenx.dll.plenx_queue_close(self._handle)
        if result != Result.HANDLE:
            self._check(result)
        self._close.detach()
        self._kept.clear()

    # Python raises KeyboardInterrupt right after a call of the DLL, which may have taken an event by
    # then. The next call gives that event.
    def _take(self, milliseconds: int) -> Optional[Event]:
        taken = self._take_kept()
        try:
            if not taken:
                self._take_into(taken, milliseconds)
        except BaseException:
            self._kept.extend(taken)
            raise
        return taken[0] if taken else None

    def _take_kept(self) -> list[Event]:
        try:
            return [self._kept.popleft()]
        except IndexError:
            return []

    def _take_into(self, taken: list[Event], milliseconds: int) -> None:
        dll = self._plenx.dll
        pointer = ctypes.POINTER(native.Event)()
        try:
            self._check(dll.plenx_queue_next(self._handle, milliseconds, pointer))
        finally:
            try:
                if pointer:
                    taken.append(_copy_of(pointer.contents))
            finally:
                dll.plenx_event_free(pointer)

    def _check(self, result: int) -> None:
        self._plenx._check(result)


def _end_of(timeout: Optional[float]) -> float:
    if timeout is None:
        return math.inf
    if not timeout >= 0:
        raise ValueError(f"a timeout must be a number of seconds, 0 or more, not {timeout}")
    return time.monotonic() + timeout


def _copy_of(event: native.Event) -> Event:
    return Event(EventKind(event.kind), event.service, event.type, event.msg_len, event.value,
                 event.lost, _decode(ctypes.string_at(event.text, event.text_length)))


_loading = threading.Lock()
_loaded: dict[Path, Plenx] = {}


def load(folder: Optional[Folder] = None) -> Plenx:
    """Loads the DLLs, once in a process. They lie in this package, or in the folder given.

    Raises LoadError when they cannot be loaded, and PlenxError with Result.ABI when they are older
    than this module.
    """
    path = Path(folder) if folder is not None else Path(__file__).parent
    path = path.resolve()
    with _loading:
        for other in _loaded:
            if other != path:
                raise LoadError(f"This process has already loaded the DLLs of {other}.")
        if path not in _loaded:
            _loaded[path] = Plenx(native.open_dll(path))
        return _loaded[path]
