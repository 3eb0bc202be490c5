'use strict';

// Where the members of struct plenx_event lie.
const at = {
  kind: 4,
  service: 8,
  type: 12,
  msg_len: 16,
  value: 20,
  lost: 24,
  text: 32,
  text_length: 40,
};
const head = Buffer.alloc(48);
const longestText = 2 ** 28; // in bytes; V8 makes no string of more than twice that

const service = () => head.readUInt32LE(at.service);
const type = () => head.readInt32LE(at.type);
const msgLen = () => head.readUInt32LE(at.msg_len);
const value = () => head.readInt32LE(at.value);
const lost = () => Number(head.readBigUInt64LE(at.lost));

const textOf = (bytes) => bytes.toString('utf8', 0, longestText);
const ofGroup = (bytes) => ({ service: service(), group: textOf(bytes) });

const members = {
  message: (bytes) => ({ type: type(), msgLen: msgLen(), text: textOf(bytes), bytes }),
  connect: ofGroup,
  disconnect: ofGroup,
  reconnect: ofGroup,
  linkQuery: (bytes) => ({ ...ofGroup(bytes), link: type() >>> 0, answer: value() }),
  status: (bytes) => ({ ...ofGroup(bytes), status: type() >>> 0, value: value() !== 0 }),
  serviceError: () => ({ error: value() }),
  diskName: (bytes) => ({ name: textOf(bytes), bytes }),
};

const firstKind = 9;
const kinds = Object.keys(members);

/** What a later library may send: a kind that this package does not know. */
function unknown(number, bytes) {
  return { kind: 'unknown', number, ...ofGroup(bytes), type: type(), value: value(), bytes };
}

/** Copies the event at that address. */
function readEvent(copy, address) {
  copy(head, address, head.length);
  const bytes = Buffer.allocUnsafe(Number(head.readBigUInt64LE(at.text_length)));
  copy(bytes, head.readBigUInt64LE(at.text), bytes.length);
  const number = head.readUInt32LE(at.kind);
  const kind = kinds[number - firstKind];
  const event = kind ? { kind, ...members[kind](bytes) } : unknown(number, bytes);
  return Object.assign(event, { lost: lost() });
}

module.exports = { readEvent, at, kinds, firstKind };
