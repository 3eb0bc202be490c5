"""A peer without Windows that answers with the Python example alone. The test plays the judge's
caller, through pipes, as judge/caller_wire.h says.

    python_subject.py <folder of plenx_message.py>
"""

import struct
import sys

sys.path.insert(0, sys.argv[1])

import plenx_message as peer  # noqa: E402

REQUESTS = {0, 1, 2, 3, 4, 5, 7, 8, 19}
CREATE_GROUP, NAME_CHANGED, RECV_REMOTE_MESSAGE = 0, 4, 5
BROKEN, UNKNOWN = 1001, 1002

WORD = struct.Struct("<I")
REQUEST_HEAD = struct.Struct("<iI")
ANSWER_HEAD = struct.Struct("<IIiiIII")


def notifications_after(request, arguments):
    if request == CREATE_GROUP:
        group = arguments["groupName"]
        yield "ConnectNotify", {"grpName": group}
        yield "StatusNotify", {"grpName": group, "sttsType": 100, "value": 1}
    elif request == NAME_CHANGED:
        path = peer.utf16_path("C:\\Data")
        yield "UpdateWindowsExplore", {"length": len(path), "path": path}
        yield "ExploreFlushNotify", {"disk": "P:", "expFlushType": 2}
    elif request == RECV_REMOTE_MESSAGE:
        text = arguments["message"]
        yield "SendLocalMessage", {
            "msgType": arguments["msgType"],
            "msgLen": len(text.encode("utf-8", "surrogateescape")),
            "msg": text,
        }


def answer_to(request, message):
    """Returns the code of the reply, and the notifications that follow."""
    if request not in REQUESTS:
        return UNKNOWN, []
    try:
        arguments = peer.decode(request, message)
    except peer.MessageError:
        return BROKEN, []
    return 0, list(notifications_after(request, arguments))


def main():
    read, write = sys.stdin.buffer.read, sys.stdout.buffer.write
    while len(count := read(WORD.size)) == WORD.size:
        for _ in range(WORD.unpack(count)[0]):
            request, size = REQUEST_HEAD.unpack(read(REQUEST_HEAD.size))
            code, notifications = answer_to(request, read(size))
            reply = peer.encode_reply(code)
            write(ANSWER_HEAD.pack(0, 0, 0, len(reply), 1, 0, len(reply)) + reply)
            write(WORD.pack(len(notifications)))
            for name, arguments in notifications:
                message = peer.encode(name, **arguments)
                write(REQUEST_HEAD.pack(peer.find(name).id, len(message)) + message)
        sys.stdout.buffer.flush()


if __name__ == "__main__":
    main()
