'use strict';

// koffi converts whatever it is given. These functions refuse every value that would not reach the
// library as it was meant.

const { toUSVString } = require('node:util');

function refuse(Type, code, name, wanted, value) {
  const given =
    typeof value === 'object' && value !== null ? value.constructor?.name : String(value);
  return Object.assign(new Type(`${name} must be ${wanted}, and is ${given}`), { code });
}

const wrongType = (...rest) => refuse(TypeError, 'ERR_INVALID_ARG_TYPE', ...rest);
const outOfRange = (...rest) => refuse(RangeError, 'ERR_OUT_OF_RANGE', ...rest);

function integer(name, value, least, most) {
  if (typeof value !== 'number') throw wrongType(name, 'a number', value);
  if (!Number.isInteger(value) || value < least || value > most) {
    throw outOfRange(name, `an integer from ${least} to ${most}`, value);
  }
  return value;
}

const uint32 = (name, value) => integer(name, value, 0, 2 ** 32 - 1);
const int32 = (name, value) => integer(name, value, -(2 ** 31), 2 ** 31 - 1);

function int64(name, value) {
  if (typeof value !== 'bigint' && !Number.isSafeInteger(value)) {
    throw wrongType(name, 'a bigint or a safe integer', value);
  }
  if (BigInt.asIntN(64, BigInt(value)) !== BigInt(value)) {
    throw outOfRange(name, 'an integer of 64 bits', value);
  }
  return BigInt(value);
}

/** The bytes of a text. A lone surrogate has none. */
function text(name, value) {
  if (typeof value !== 'string') throw wrongType(name, 'a string', value);
  if (toUSVString(value) !== value) {
    throw wrongType(name, 'a string without a lone surrogate', value);
  }
  return Buffer.from(value);
}

function bytes(name, value) {
  if (!(value instanceof Uint8Array)) throw wrongType(name, 'a Uint8Array', value);
  return value;
}

/** Text or any bytes. */
function message(name, value) {
  return typeof value === 'string' ? text(name, value) : bytes(name, value);
}

module.exports = { integer, uint32, int32, int64, text, bytes, message };
