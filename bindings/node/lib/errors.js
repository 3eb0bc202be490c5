'use strict';

/** What a call of the library can return. */
const Result = Object.freeze({
  OK: 0,
  INVALID_PARAMETER: 26,
  E_ARGUMENT: -1,
  E_BUFFER: -2,
  E_MEMORY: -3,
  E_ABI: -4,
  E_HANDLE: -5,
  E_CANCELLED: -6,
  E_DEADLOCK: -7,
  E_ENDING: -8,
  E_FAILED: -9,
});

const names = new Map(Object.entries(Result).map(([name, number]) => [number, `PLENX_${name}`]));

/** Every failure of the library, and of loading it. */
class PlenxError extends Error {
  constructor(code, message, options) {
    super(message, options);
    this.code = code;
  }

  get name() {
    return 'PlenxError';
  }
}

/** The error of a call that returned `result`; `detail` is empty when nothing more is known. */
function errorOf(call, result, sentence, detail) {
  const code = names.get(result) ?? 'PLENX_E_UNKNOWN';
  const error = new PlenxError(code, detail || `${call}: ${sentence}`);
  return Object.assign(error, { result, sentence, detail });
}

module.exports = { Result, PlenxError, errorOf };
