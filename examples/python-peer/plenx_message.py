#!/usr/bin/env python3
"""Encodes and decodes every message between plenxsdk and its services.

It is plain Python and needs no packages. It was written from the page "The wire protocol" alone, and
is meant as a pattern for a codec in any language.

    encode("CreateGroup", groupName="photos_1", groupArg="a")   ->  bytes
    decode("CreateGroup", data)   ->  {"groupName": "photos_1", "kind": 2, "groupArg": "a"}
    encode_reply(0), decode_reply(data)   ->  bytes, number

Texts are str, arrays are bytes. Decoding is strict: a message that the library would not have sent
raises MessageError, which says what is wrong. On the command line:

    plenx_message.py encode CreateGroup groupName=photos_1 groupArg=a
    plenx_message.py decode CreateGroup 36 00 00 00 ...
"""

import struct
import sys
from typing import NamedTuple, Optional

INT32, INT64, STRING, INT8_ARRAY = 2, 3, 4, 5
TYPE_NAMES = {INT32: "int32", INT64: "int64", STRING: "string", INT8_ARRAY: "int8 array"}

HEADER = struct.Struct("<II")  # total size, number of arguments
DESCRIPTOR = struct.Struct("<III")  # type, offset, size
NUMBERS = {INT32: struct.Struct("<i"), INT64: struct.Struct("<q")}
LARGEST = 2**31 - 1


class MessageError(ValueError):
    """Something breaks the protocol; the text says what."""


class Field(NamedTuple):
    name: str
    type: int
    always: Optional[int] = None  # a number that never varies
    length_of: Optional[str] = None  # the array whose size this number is
    least: Optional[int] = None  # a number that is never less


class Message(NamedTuple):
    id: Optional[int]  # travels beside the bytes, not in them
    name: str
    fields: tuple


REPLY = Message(None, "reply", (Field("result", INT32),))

GROUP = (Field("grpName", STRING),)

MESSAGES = [
    # requests: library to service
    Message(0, "CreateGroup", (
        Field("groupName", STRING), Field("kind", INT32, always=2), Field("groupArg", STRING))),
    Message(1, "DeleteGroup", (Field("groupName", STRING),)),
    Message(2, "DeviceOnline", (
        Field("groupName", STRING), Field("deviceId", STRING), Field("isRemote", INT32),
        Field("length", INT32, length_of="data"), Field("data", INT8_ARRAY))),
    Message(3, "DeviceOffline", (
        Field("groupName", STRING), Field("deviceId", STRING), Field("isRemote", INT32),
        Field("trigger", INT32))),
    Message(4, "NameChanged", (Field("name", STRING),)),
    Message(5, "RecvRemoteMessage", (
        Field("msgType", INT32), Field("msgLen", INT32), Field("message", STRING))),
    Message(7, "SetStringConfig", (Field("cfgType", INT32), Field("value", STRING))),
    Message(8, "SetInt64Config", (Field("cfgType", INT32), Field("value", INT64))),
    Message(19, "PingService", (Field("number", INT64),)),
    # notifications: service to library
    Message(9, "SendLocalMessage", (
        Field("msgType", INT32), Field("msgLen", INT32), Field("msg", STRING))),
    Message(10, "ConnectNotify", GROUP),
    Message(11, "DisconnectNotify", GROUP),
    Message(12, "ReconnectNotify", GROUP),
    Message(13, "LinkTypeQuery", GROUP + (Field("linkType", INT32),)),
    Message(14, "StatusNotify", GROUP + (Field("sttsType", INT32), Field("value", INT32))),
    Message(15, "ErrorNotify", (Field("errCode", INT32),)),
    Message(16, "DiskNameNotify", (Field("diskName", STRING),)),
    Message(17, "UpdateWindowsExplore", (
        Field("length", INT32, length_of="path", least=1), Field("path", INT8_ARRAY))),
    Message(18, "ExploreFlushNotify", (Field("disk", STRING), Field("expFlushType", INT32))),
]


def find(message):
    """Finds a message by its name ("reply" included) or by its id."""
    for candidate in MESSAGES + [REPLY]:
        if message is not None and message in (candidate.name, candidate.id):
            return candidate
    raise MessageError(f"there is no message {message}")


def utf16_path(path):
    """Encodes a path for UpdateWindowsExplore."""
    return (path + "\0").encode("utf-16-le")


# Encoding


def encode(message, /, **values):
    """Returns the bytes of a message. Arguments that can have only one value may be left out."""
    message = find(message)
    given = _completed(message, values)
    data = [_data(field, given[field.name]) for field in message.fields]
    offset = HEADER.size + DESCRIPTOR.size * len(data)
    total = offset + sum(map(len, data))
    if total > LARGEST:
        raise MessageError(f"{message.name}: {total} bytes are more than an int32 can say")
    table = b""
    for field, part in zip(message.fields, data):
        table += DESCRIPTOR.pack(field.type, offset, len(part))
        offset += len(part)
    return HEADER.pack(total, len(data)) + table + b"".join(data)


def encode_reply(result=0):
    return encode("reply", result=result)


def _completed(message, values):
    given = dict(values)
    for field in message.fields:
        if field.always is not None:
            given.setdefault(field.name, field.always)
        if field.length_of in given:
            given.setdefault(field.name, len(given[field.length_of]))
    names = [field.name for field in message.fields]
    for name in given:
        if name not in names:
            raise MessageError(f"{message.name} has no argument {name}; it has {', '.join(names)}")
    for name in names:
        if name not in given:
            raise MessageError(f"{message.name}: {name} is missing")
    _check_values(message, given)
    return given


def _data(field, value):
    try:
        if field.type == STRING:
            return value.encode("utf-8", "surrogateescape") + b"\0"
        if field.type == INT8_ARRAY:
            return bytes(value)
        return NUMBERS[field.type].pack(value)
    except (struct.error, AttributeError, TypeError) as error:
        raise MessageError(f"{field.name}: {value!r} is not of type "
                           f"{TYPE_NAMES[field.type]}") from error


# Decoding


def decode(message, data):
    """Returns the arguments of a message by their names."""
    message = find(message)
    count = _read_header(data)
    if count != len(message.fields):
        raise MessageError(
            f"{count} arguments where {message.name} has {len(message.fields)}")
    expected_offset = HEADER.size + DESCRIPTOR.size * count
    values = {}
    for index, field in enumerate(message.fields):
        where = f"argument {index} ({field.name})"
        kind, offset, size = DESCRIPTOR.unpack_from(data, HEADER.size + DESCRIPTOR.size * index)
        if kind != field.type:
            raise MessageError(f"{where}: type {kind} where it must be {field.type}, "
                               f"{TYPE_NAMES[field.type]}")
        if offset != expected_offset:
            raise MessageError(f"{where}: its offset is {offset} where its data begins at "
                               f"{expected_offset}")
        if offset + size > len(data):
            raise MessageError(f"{where}: {size} bytes at {offset} do not end within {len(data)}")
        values[field.name] = _value(where, field, data[offset:offset + size])
        expected_offset = offset + size
    if expected_offset != len(data):
        raise MessageError(f"{len(data) - expected_offset} bytes follow the last argument")
    _check_values(message, values)
    return values


def decode_reply(data):
    return decode("reply", data)["result"]


def _read_header(data):
    if len(data) <= HEADER.size:
        raise MessageError(f"{len(data)} bytes are too few for a message")
    total, count = HEADER.unpack_from(data)
    if total != len(data):
        raise MessageError(f"the total size is {total}, but there are {len(data)} bytes")
    if HEADER.size + DESCRIPTOR.size * count >= len(data):
        raise MessageError(f"{count} arguments leave no data in {len(data)} bytes")
    return count


def _value(where, field, data):
    if field.type in NUMBERS:
        number = NUMBERS[field.type]
        if len(data) != number.size:
            raise MessageError(f"{where}: size {len(data)} where it must be {number.size}")
        return number.unpack(data)[0]
    if field.type == STRING:
        if data[-1:] != b"\0":
            raise MessageError(f"{where}: no NUL at its end")
        return data[:-1].decode("utf-8", "surrogateescape")
    return bytes(data)


def _check_values(message, values):
    for field in message.fields:
        value = values[field.name]
        if field.always is not None and value != field.always:
            raise MessageError(f"{field.name}: {value} where it must be {field.always}")
        if field.length_of and value != len(values[field.length_of]):
            raise MessageError(f"{field.name}: {value} where {field.length_of} has "
                               f"{len(values[field.length_of])} bytes")
        if field.least is not None and value < field.least:
            raise MessageError(f"{field.name}: {value} where it must be at least {field.least}")


# The command line


def _typed(message, word):
    name, equals, text = word.partition("=")
    types = {field.name: field.type for field in message.fields}
    if not equals or name not in types:
        raise MessageError(f"{word}: {message.name} has {', '.join(types)}")
    try:
        if types[name] == STRING:
            return name, text
        return name, bytes.fromhex(text) if types[name] == INT8_ARRAY else int(text)
    except ValueError as error:
        raise MessageError(f"{word}: the value is not of type {TYPE_NAMES[types[name]]}") from error


def main(words):
    if len(words) < 2:
        sys.exit(__doc__)
    action, name, *rest = words
    try:
        if action == "encode":
            message = find(name)
            print(encode(name, **dict(_typed(message, word) for word in rest)).hex(" "))
        elif action == "decode":
            for key, value in decode(name, bytes.fromhex(" ".join(rest))).items():
                print(f"{key} = {value.hex(' ') if isinstance(value, bytes) else repr(value)}")
        else:
            raise MessageError("the first word must be encode or decode")
    except ValueError as error:
        sys.exit(f"plenx_message: {error}")


if __name__ == "__main__":
    main(sys.argv[1:])
