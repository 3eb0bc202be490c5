'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { Place, leftServices, nodeModules, windowsPath } = require('./wine');

test('the example does what its page shows', async () => {
  const place = new Place('example');
  // Modules are looked for from the folder of the program on.
  const program = path.join(path.dirname(nodeModules), 'host.mjs');
  fs.cpSync(path.join(__dirname, '../../../../bindings/node/examples/host.mjs'), program);
  const { status, lines } = await place.run(
    program,
    windowsPath(place.app),
    windowsPath(place.data),
  );
  assert.equal(status, 0, lines.join('\n'));
  assert.deepEqual(
    lines.filter((line) => /^(status [01]|connect) /.test(line)),
    [
      "status 0 true { group: 'home' }",
      "connect   { group: 'home' }",
      "status 1 false { group: 'home' }",
    ],
  );
  assert.deepEqual(leftServices(), []);
});
