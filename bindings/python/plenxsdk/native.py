"""The functions and structs of plenx.h, as ctypes has them.

A host needs this module only for what the classes of plenxsdk do not offer, such as observers.
plenx.h, which is part of the SDK, describes each function.
"""

from __future__ import annotations

import ctypes
import os
import sys
from ctypes import POINTER, c_char_p, c_int32, c_int64, c_size_t, c_uint32, c_uint64, c_void_p
from pathlib import Path
from typing import Any

ABI = 1
SIZE_TO_NUL = ctypes.c_size_t(-1).value

#: All DLLs that must lie in one folder. The last two are the companion libraries.
DLLS = ("plenxsdk_c.dll", "plenxsdk.dll", "libstdc++-6.dll", "libgcc_s_seh-1.dll",
        "libwinpthread-1.dll", "LogHelper.dll", "distributedfile.dll")


class Event(ctypes.Structure):
    """plenx_event. The text may hold a NUL, so it is read with its length."""

    _fields_ = [("size", c_uint32), ("kind", c_uint32), ("service", c_uint32), ("type", c_int32),
                ("msg_len", c_uint32), ("value", c_int32), ("lost", c_uint64),
                ("text", c_void_p), ("text_length", c_size_t)]


# A Windows process of 64 bits has only one calling convention, which ctypes calls "C" here.
SendLocalMessage = ctypes.CFUNCTYPE(c_int32, c_void_p, c_int32, c_uint32, c_void_p, c_size_t)
NotifyGroup = ctypes.CFUNCTYPE(c_int32, c_void_p, c_uint32, c_void_p, c_size_t)
QueryLinkStatus = ctypes.CFUNCTYPE(c_int32, c_void_p, c_uint32, c_void_p, c_size_t, c_uint32,
                                   POINTER(c_int32))
NotifyStatus = ctypes.CFUNCTYPE(c_int32, c_void_p, c_uint32, c_void_p, c_size_t, c_uint32, c_int32)
NotifyError = ctypes.CFUNCTYPE(c_int32, c_void_p, c_int32)
NotifyDiskName = ctypes.CFUNCTYPE(c_int32, c_void_p, c_void_p, c_size_t)


class Observer(ctypes.Structure):
    """plenx_observer. Keep it and its functions alive until plenx_unobserve has returned."""

    _fields_ = [("size", c_uint32), ("user", c_void_p),
                ("send_local_message", SendLocalMessage), ("notify_connect", NotifyGroup),
                ("notify_disconnect", NotifyGroup), ("notify_reconnect", NotifyGroup),
                ("query_link_status", QueryLinkStatus), ("notify_status", NotifyStatus),
                ("notify_error", NotifyError), ("notify_disk_name", NotifyDiskName)]


_TEXT = (c_char_p, c_size_t)
_BUFFER = (c_char_p, c_size_t, POINTER(c_size_t))

#: The result and the arguments of each function.
FUNCTIONS: dict[str, tuple[Any, tuple[Any, ...]]] = {
    "plenx_open": (c_int32, (c_uint32,)),
    "plenx_abi": (c_uint32, ()),
    "plenx_last_error": (c_int32, _BUFFER),
    "plenx_result_text": (c_char_p, (c_int32,)),
    "plenx_init": (c_int32, (*_TEXT, *_TEXT, *_TEXT, c_int32)),
    "plenx_destroy": (c_int32, ()),
    "plenx_get_int64": (c_int32, (c_uint32, c_uint32, POINTER(c_int64))),
    "plenx_get_string": (c_int32, (c_uint32, c_uint32, *_BUFFER)),
    "plenx_set_int64": (c_int32, (c_uint32, c_uint32, c_int64)),
    "plenx_set_string": (c_int32, (c_uint32, c_uint32, *_TEXT)),
    "plenx_start": (c_int32, (c_uint32, *_TEXT, *_TEXT)),
    "plenx_stop": (c_int32, (c_uint32, *_TEXT)),
    "plenx_local_device_online": (c_int32, (c_uint32, *_TEXT, *_TEXT, c_char_p, c_uint64)),
    "plenx_remote_device_online": (c_int32, (c_uint32, *_TEXT, *_TEXT)),
    "plenx_local_device_offline": (c_int32, (c_uint32, *_TEXT, *_TEXT, c_int32)),
    "plenx_remote_device_offline": (c_int32, (c_uint32, *_TEXT, *_TEXT, c_int32)),
    "plenx_device_name_changed": (c_int32, _TEXT),
    "plenx_recv_remote_message": (c_int32, (c_int32, c_uint32, *_TEXT)),
    "plenx_get_office_dir": (c_int32, (*_TEXT, *_TEXT, *_TEXT, *_BUFFER, POINTER(c_int32))),
    "plenx_queue_open": (c_int32, (c_uint32, POINTER(c_void_p))),
    "plenx_queue_next": (c_int32, (c_void_p, c_uint32, POINTER(POINTER(Event)))),
    "plenx_event_free": (None, (POINTER(Event),)),
    "plenx_queue_wait_handle": (c_void_p, (c_void_p,)),
    "plenx_queue_set_link_status": (c_int32, (c_void_p, c_uint32, *_TEXT, c_uint32, c_int32)),
    "plenx_queue_cancel": (c_int32, (c_void_p,)),
    "plenx_queue_close": (c_int32, (c_void_p,)),
    "plenx_observe": (c_int32, (POINTER(Observer), POINTER(c_void_p))),
    "plenx_unobserve": (c_int32, (c_void_p,)),
}


class LoadError(OSError):
    """The DLLs cannot be used here; the text says why."""


def declare(dll: ctypes.CDLL) -> ctypes.CDLL:
    """Gives the functions of the DLL their types. Only plenx_open must be there."""
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(dll, name, None)
        if function is not None:
            function.restype = result
            function.argtypes = arguments
    return dll


def open_dll(folder: str | os.PathLike[str]) -> ctypes.CDLL:
    """Loads plenxsdk_c.dll from this folder. Windows finds the other DLLs beside it."""
    if sys.platform != "win32":
        raise LoadError(f"plenxsdk runs on 64-bit Windows only, and this system is {sys.platform}.")
    if sys.maxsize < 2**32:
        raise LoadError("plenxsdk needs a 64-bit Python, and this one has 32 bits.")
    path = Path(folder).resolve()
    require_dlls(path)
    # LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR and LOAD_LIBRARY_SEARCH_DEFAULT_DIRS: neither PATH nor the
    # current folder is searched.
    try:
        return ctypes.CDLL(str(path / DLLS[0]), winmode=0x100 | 0x1000)
    except OSError as error:
        raise LoadError(f"Windows cannot load {path / DLLS[0]}: {error}") from error


def require_dlls(folder: Path) -> None:
    """Names the files that are missing, which Windows does not do."""
    missing = [name for name in DLLS if not (folder / name).is_file()]
    if missing:
        raise LoadError(f"{', '.join(missing)}: not in {folder}. All DLLs of plenxsdk must lie in "
                        "one folder.")
