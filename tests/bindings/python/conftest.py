"""The tests use the plain C interface that is built for Linux over the fake platform. Its functions
fake_... play the services; tests/bindings/fake_services.cpp describes them."""

import ctypes
import os
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]
LINUX_BUILD = os.environ["PLENX_C_LINUX"]
sys.path[:0] = [str(ROOT / "bindings" / "python"), str(ROOT / "tests" / "bindings")]

import plenxsdk  # noqa: E402


class Services:
    """Sends notifications, and tells what has reached the services."""

    def __init__(self, dll):
        self.dll = dll
        dll.fake_notify.argtypes = (ctypes.c_int32, ctypes.c_char_p, ctypes.c_size_t,
                                    ctypes.c_int32, ctypes.c_int32)
        dll.fake_received.restype = ctypes.c_char_p
        dll.fake_office_dir.argtypes = (ctypes.c_char_p, ctypes.c_size_t, ctypes.c_int32)

    def notify(self, kind, text=b"", first=0, second=0):
        text = text.encode() if isinstance(text, str) else text
        return self.dll.fake_notify(kind, text, len(text), first, second)

    def received(self):
        return self.dll.fake_received().decode().splitlines()

    def has_received(self, request, *arguments):
        """Whether the PC service got this request; the arguments are the end of a message."""
        head, end = f"PLENXPCService {request} ", b"".join(arguments).hex()
        return any(line.startswith(head) and line.endswith(end) for line in self.received())


@pytest.fixture(scope="session")
def dll(tmp_path_factory):
    os.chdir(tmp_path_factory.mktemp("machine"))  # the icons of the services go into it
    dll = ctypes.CDLL(LINUX_BUILD)
    dll.fake_machine()
    return dll


@pytest.fixture(scope="session")
def plenx(dll):
    plenx = plenxsdk.Plenx(dll)
    plenx.init("C:\\App", Path("C:\\Data"), "third", True)
    dll.fake_wait_for_init()
    return plenx


@pytest.fixture
def services(plenx):
    services = Services(plenx.dll)
    services.received()
    return services


@pytest.fixture
def queue(plenx, services):
    with plenx.open_queue() as queue:
        yield queue
