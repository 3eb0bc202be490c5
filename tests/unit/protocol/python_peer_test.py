"""Tests the Python peer against plenxkit: each takes what the other makes, and both refuse the same
messages.

    python_peer_test.py <folder of plenx_message.py> <plenxkit>
"""

import json
import subprocess
import sys
import unittest

sys.path.insert(0, sys.argv[1])
PLENXKIT = sys.argv[2]

import plenx_message as peer  # noqa: E402

GOOD = {
    "CreateGroup": {"groupName": "g_1", "kind": 2, "groupArg": "a"},
    "DeleteGroup": {"groupName": "Größe_a_1"},
    "DeviceOnline": {"groupName": "g_1", "deviceId": "dev", "isRemote": 0, "length": 3,
                     "data": b"\x01\x02\xff"},
    "DeviceOffline": {"groupName": "g_2", "deviceId": "dev", "isRemote": 1, "trigger": -1},
    "NameChanged": {"name": "Küche ☕"},
    "RecvRemoteMessage": {"msgType": -(2**31), "msgLen": 2, "message": "hi"},
    "SetStringConfig": {"cfgType": 1, "value": "en_US"},
    "SetInt64Config": {"cfgType": 2, "value": -(2**63)},
    "PingService": {"number": 2**63 - 1},
    "SendLocalMessage": {"msgType": 2**31 - 1, "msgLen": 0, "msg": ""},
    "ConnectNotify": {"grpName": "group_1"},
    "DisconnectNotify": {"grpName": "a_b_1"},
    "ReconnectNotify": {"grpName": "_2"},
    "LinkTypeQuery": {"grpName": "group_1", "linkType": 1},
    "StatusNotify": {"grpName": "group_1", "sttsType": 100, "value": 1},
    "ErrorNotify": {"errCode": 5},
    "DiskNameNotify": {"diskName": "P:"},
    "UpdateWindowsExplore": {"length": 10, "path": peer.utf16_path("C:\\D")},
    "ExploreFlushNotify": {"disk": "E:", "expFlushType": 2},
    "reply": {"result": 1001},
}


def plenxkit_message(*words):
    return subprocess.run([PLENXKIT, "message", *words], capture_output=True, encoding="utf-8",
                          timeout=60)


def judged(name, message):
    """Returns what plenxkit message says about the bytes."""
    return json.loads(plenxkit_message("decode", "--json", "--as", name, message.hex(" ")).stdout)


def word(name, value):
    return f"{name}={value.hex(',') if isinstance(value, bytes) else value}"


def plain(value):
    return bytes.fromhex(value["hex"]) if isinstance(value, dict) else value


def put(message, offset, *values):
    """Returns the message with the values in place of its bytes from the offset on."""
    return message[:offset] + bytes(values) + message[offset + len(values):]


# The library refuses a path without a byte.
NO_PATH = b"".join(number.to_bytes(4, "little") for number in (36, 2, 2, 32, 4, 5, 36, 0, 0))


class PythonPeer(unittest.TestCase):
    def test_knows_the_messages_that_plenxkit_knows(self):
        listed = json.loads(plenxkit_message("list", "--json").stdout)
        theirs = {(m["id"], m["message"], tuple((a["name"], a["type"]) for a in m["arguments"]))
                  for m in listed}
        ours = {(m.id, m.name, tuple((f.name, peer.TYPE_NAMES[f.type]) for f in m.fields))
                for m in peer.MESSAGES}
        self.assertEqual(ours, theirs)
        self.assertEqual({m.name for m in peer.MESSAGES + [peer.REPLY]}, set(GOOD))

    def test_what_it_encodes_is_good_to_plenxkit(self):
        for name, values in GOOD.items():
            with self.subTest(name):
                verdict = judged(name, peer.encode(name, **values))
                self.assertEqual(verdict["problems"], [])
                self.assertTrue(verdict["good"])
                self.assertEqual(verdict["id"], peer.find(name).id)
                self.assertEqual({a["name"]: plain(a["value"]) for a in verdict["arguments"]},
                                 values)

    def test_it_decodes_what_plenxkit_encodes(self):
        for name, values in GOOD.items():
            with self.subTest(name):
                made = plenxkit_message("encode", name, *(word(*item) for item in values.items()))
                message = bytes.fromhex(made.stdout)
                self.assertEqual(peer.decode(name, message), values)
                self.assertEqual(peer.encode(name, **values), message)

    def test_a_message_is_found_by_its_id_too(self):
        self.assertEqual(peer.decode(19, peer.encode("PingService", number=3)), {"number": 3})

    def test_what_can_have_one_value_only_may_be_left_out(self):
        self.assertEqual(peer.encode("CreateGroup", groupName="g_1", groupArg="a"),
                         peer.encode("CreateGroup", **GOOD["CreateGroup"]))
        self.assertEqual(peer.encode("UpdateWindowsExplore", path=peer.utf16_path("C:\\D")),
                         peer.encode("UpdateWindowsExplore", **GOOD["UpdateWindowsExplore"]))

    def test_text_that_is_not_utf_8_comes_and_goes_unharmed(self):
        message = put(peer.encode("DiskNameNotify", diskName="P:"), 20, 0xff)
        self.assertTrue(judged("DiskNameNotify", message)["good"])
        values = peer.decode("DiskNameNotify", message)
        self.assertEqual(peer.encode("DiskNameNotify", **values), message)

    def test_a_message_that_is_cut_or_too_long_is_refused(self):
        for name, values in GOOD.items():
            message = peer.encode(name, **values)
            for size in range(len(message)):
                with self.subTest(name, size=size), self.assertRaises(peer.MessageError):
                    peer.decode(name, message[:size])
            with self.subTest(name, size="longer"), self.assertRaises(peer.MessageError):
                peer.decode(name, message + b"\0")

    def test_a_table_with_any_wrong_bit_is_refused(self):
        for name, values in GOOD.items():
            message = peer.encode(name, **values)
            table_end = 8 + 12 * len(values)
            for offset in range(table_end):
                for bit in range(8):
                    broken = put(message, offset, message[offset] ^ 1 << bit)
                    with self.subTest(name, offset=offset, bit=bit), \
                            self.assertRaises(peer.MessageError):
                        peer.decode(name, broken)

    def assert_refused_by_both(self, name, message, complaint):
        with self.assertRaises(peer.MessageError) as refused:
            peer.decode(name, message)
        self.assertEqual(str(refused.exception), complaint)
        self.assertFalse(judged(name, message)["good"], "plenxkit takes it")

    def test_both_refuse_the_same_and_the_peer_says_why(self):
        ping = peer.encode("PingService", number=0)
        query = peer.encode("LinkTypeQuery", grpName="g_1", linkType=1)
        path = peer.encode("UpdateWindowsExplore", path=b"P\0\0\0")
        group = peer.encode("CreateGroup", groupName="g_1", groupArg="a")
        for name, message, complaint in [
            ("PingService", b"", "0 bytes are too few for a message"),
            ("PingService", ping[:7], "7 bytes are too few for a message"),
            ("PingService", ping + b"\0", "the total size is 28, but there are 29 bytes"),
            ("PingService", put(ping, 4, 2), "2 arguments leave no data in 28 bytes"),
            ("PingService", put(ping, 4, 255, 255, 255, 255),
             "4294967295 arguments leave no data in 28 bytes"),
            ("PingService", put(ping, 8, 2),
             "argument 0 (number): type 2 where it must be 3, int64"),
            ("PingService", put(ping, 12, 19),
             "argument 0 (number): its offset is 19 where its data begins at 20"),
            ("PingService", put(ping, 16, 255, 255, 255, 255),
             "argument 0 (number): 4294967295 bytes at 20 do not end within 28"),
            ("PingService", put(ping, 16, 4), "argument 0 (number): size 4 where it must be 8"),
            ("LinkTypeQuery", put(query, 4, 1), "1 arguments where LinkTypeQuery has 2"),
            ("LinkTypeQuery", put(query, 35, 49), "argument 0 (grpName): no NUL at its end"),
            ("ConnectNotify", put(peer.encode("ConnectNotify", grpName=""), 16, 0),
             "argument 0 (grpName): no NUL at its end"),
            ("UpdateWindowsExplore", put(path, 32, 5), "length: 5 where path has 4 bytes"),
            ("UpdateWindowsExplore", NO_PATH, "length: 0 where it must be at least 1"),
            ("CreateGroup", put(group, 48, 3), "kind: 3 where it must be 2"),
            ("ErrorNotify", query, "2 arguments where ErrorNotify has 1"),
        ]:
            with self.subTest(complaint):
                self.assert_refused_by_both(name, message, complaint)

    def test_values_that_cannot_be_encoded_are_refused(self):
        for name, values, complaint in [
            ("Hello", {}, "there is no message Hello"),
            (6, {}, "there is no message 6"),
            ("ErrorNotify", {}, "ErrorNotify: errCode is missing"),
            ("ErrorNotify", {"code": 1}, "ErrorNotify has no argument code; it has errCode"),
            ("ErrorNotify", {"errCode": 2**31}, "errCode: 2147483648 is not of type int32"),
            ("ErrorNotify", {"errCode": "five"}, "errCode: 'five' is not of type int32"),
            ("DiskNameNotify", {"diskName": 5}, "diskName: 5 is not of type string"),
            ("CreateGroup", {"groupName": "g_1", "kind": 1, "groupArg": "a"},
             "kind: 1 where it must be 2"),
            ("UpdateWindowsExplore", {"length": 1, "path": b"P\0\0\0"},
             "length: 1 where path has 4 bytes"),
            ("UpdateWindowsExplore", {"path": b""}, "length: 0 where it must be at least 1"),
        ]:
            with self.subTest(complaint), self.assertRaises(peer.MessageError) as refused:
                peer.encode(name, **values)
            self.assertEqual(str(refused.exception), complaint)

    def on_the_command_line(self, *words):
        return subprocess.run([sys.executable, "-B", peer.__file__, *words], capture_output=True,
                              encoding="utf-8", timeout=60)

    def test_the_command_line_encodes_and_decodes(self):
        made = self.on_the_command_line("encode", "DeviceOnline", "groupName=g_1", "deviceId=dev",
                                        "isRemote=0", "data=01 02 ff")
        self.assertEqual(bytes.fromhex(made.stdout),
                         peer.encode("DeviceOnline", **GOOD["DeviceOnline"]))
        shown = self.on_the_command_line("decode", "DeviceOnline", *made.stdout.split())
        self.assertEqual(shown.stdout, "groupName = 'g_1'\ndeviceId = 'dev'\nisRemote = 0\n"
                                       "length = 3\ndata = 01 02 ff\n")

    def test_the_command_line_says_what_is_wrong(self):
        for words, complaint in [
            (["decode", "reply", "18"], "plenx_message: 1 bytes are too few for a message\n"),
            (["decode", "reply", "xx"],
             "plenx_message: non-hexadecimal number found in fromhex() arg at position 0\n"),
            (["encode", "reply", "result=x"],
             "plenx_message: result=x: the value is not of type int32\n"),
            (["encode", "reply", "code=1"], "plenx_message: code=1: reply has result\n"),
            (["mend", "reply"], "plenx_message: the first word must be encode or decode\n"),
        ]:
            with self.subTest(words):
                run = self.on_the_command_line(*words)
                self.assertEqual((run.returncode, run.stdout, run.stderr), (1, "", complaint))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
