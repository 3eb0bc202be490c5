"""The declarations of plenxsdk.native are those of plenx.h, and none is missing."""

import ctypes
import re

import plenx_header
import plenxsdk
from conftest import ROOT
from plenxsdk import native

TYPES = {
    "void": None, "plenx_result": ctypes.c_int32, "int32_t": ctypes.c_int32,
    "uint32_t": ctypes.c_uint32, "int64_t": ctypes.c_int64, "uint64_t": ctypes.c_uint64,
    "size_t": ctypes.c_size_t, "size_t*": ctypes.POINTER(ctypes.c_size_t),
    "int32_t*": ctypes.POINTER(ctypes.c_int32), "int64_t*": ctypes.POINTER(ctypes.c_int64),
    "char*": ctypes.c_char_p, "const char*": ctypes.c_char_p, "const void*": ctypes.c_char_p,
    "void*": ctypes.c_void_p, "plenx_queue*": ctypes.c_void_p,
    "plenx_queue**": ctypes.POINTER(ctypes.c_void_p), "plenx_subscription*": ctypes.c_void_p,
    "plenx_subscription**": ctypes.POINTER(ctypes.c_void_p),
    "const plenx_event*": ctypes.POINTER(native.Event),
    "const plenx_event**": ctypes.POINTER(ctypes.POINTER(native.Event)),
    "const plenx_observer*": ctypes.POINTER(native.Observer)}
STRUCTS = {"plenx_event": native.Event, "plenx_observer": native.Observer}
ENUMS = {"PLENX_E_": plenxsdk.Result, "PLENX_EVENT_": plenxsdk.EventKind,
         "PLENX_KEY_": plenxsdk.Key, "PLENX_STATUS_": plenxsdk.Status}

DECLARED = plenx_header.declarations()


def declared(kind):
    lines = [line.split(" ", 2) for line in DECLARED]
    return {name: value for what, name, value in lines if what == kind}


def python_constants():
    constants = {"PLENX_OK": 0, "PLENX_ABI": native.ABI,
                 "PLENX_SIZE_TO_NUL": ctypes.c_int64(native.SIZE_TO_NUL).value,
                 "PLENX_INVALID_PARAMETER": plenxsdk.Result.INVALID_PARAMETER}
    for prefix, enum in ENUMS.items():
        constants.update({prefix + one.name: one.value for one in enum if one != 26})
    constants.update({"PLENX_" + one.name: one.value for one in plenxsdk.Service})
    return constants


def test_the_header_is_read_as_a_whole():
    exports = (ROOT / "c_interface" / "plenxsdk_c.def").read_text().split("EXPORTS")[1].split()
    assert sorted(declared("function")) == sorted(exports)


def test_every_function_has_its_types_and_there_is_no_other():
    expected = {name: [TYPES[one] for one in types.split(", ")]
                for name, types in declared("function").items()}
    assert {name: [result, *arguments]
            for name, (result, arguments) in native.FUNCTIONS.items()} == expected


def test_every_constant_has_its_value_and_there_is_no_other():
    assert {name: str(int(value)) for name, value in python_constants().items()} == (
        declared("constant"))


def test_the_structs_lie_as_in_c():
    fields = {}
    for name, struct in STRUCTS.items():
        assert declared("struct")[name] == str(ctypes.sizeof(struct))
        for field, *_ in struct._fields_:
            place = getattr(struct, field)
            fields[f"{name}.{field}"] = f"{place.offset} {place.size}"
    assert fields == declared("field")


def test_every_function_has_a_method_but_those_of_observers():
    source = (ROOT / "bindings" / "python" / "plenxsdk" / "__init__.py").read_text()
    used = set(re.findall(r"dll\.(plenx_\w+)", source))
    assert set(native.FUNCTIONS) - used == {"plenx_abi", "plenx_observe", "plenx_unobserve"}
