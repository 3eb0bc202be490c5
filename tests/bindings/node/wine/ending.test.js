'use strict';

const assert = require('node:assert/strict');
const path = require('node:path');
const { test } = require('node:test');
const { Place, leftServices } = require('./wine');

// Stopping a service takes a moment; a thread that waited for events would take for ever.
const longest = 15000; // milliseconds

const endings = {
  'exits while events come': 3,
  'throws in a listener': 1,
  'lets go': 0,
  'closes everything': 0,
  'exits while ten queues wait': 4,
};

// The job of init may have come to any point. The next run takes over what it has made by then.
const endingsWithinInit = {
  'exits right after init': 5,
  'exits while a promise waits': 6,
};

/** Runs the host, and expects that it ends with that code and soon after its exit event. */
async function expectEnd(name, code) {
  const place = new Place(name.replaceAll(' ', '-'));
  const { status, lines } = await place.run(path.join(__dirname, 'ending_host.js'), name);
  const end = Date.now();
  assert.equal(status, code, lines.join('\n'));
  const errors = lines.filter((line) => line.startsWith('Error:'));
  assert.deepEqual(errors, code === 1 ? ['Error: of a listener'] : []);
  const [exit] = lines.map((line) => line.match(/^exit (\d+)$/)).filter(Boolean);
  assert.ok(end - exit[1] < longest, `${end - exit[1]} ms`);
  return place;
}

for (const [name, code] of Object.entries(endings)) {
  test(`a host that ${name} ends in time, and leaves nothing`, async () => {
    const place = await expectEnd(name, code);
    assert.deepEqual(leftServices(), []);
    assert.ok(!place.hasWorkingFolder());
  });
}

for (const [name, code] of Object.entries(endingsWithinInit)) {
  test(`a host that ${name} ends in time`, () => expectEnd(name, code));
}
