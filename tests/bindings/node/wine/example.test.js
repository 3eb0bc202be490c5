'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { Place, leftServices, nodeModules, windowsPath } = require('./wine');

const folder = path.join(__dirname, '../../../../bindings/node');

const isOutcome = (line) => /^status [01] /.test(line);

test('the example does what its page shows', async () => {
  const place = new Place('example');
  // Node looks for modules in the folder of the program and in those above it.
  const program = path.join(path.dirname(nodeModules), 'host.mjs');
  fs.cpSync(path.join(folder, 'examples/host.mjs'), program);
  const { status, lines } = await place.run(
    program,
    windowsPath(place.app),
    windowsPath(place.data),
  );
  assert.equal(status, 0, lines.join('\n'));
  const page = fs.readFileSync(path.join(folder, 'README.md'), 'utf8');
  const [, printed] = page.match(/^```text\n(.*?)^```/ms);
  // The lines about the service's own events may come at any time, and the last one perhaps too late.
  const expected = printed.trimEnd().split('\n');
  assert.deepEqual(lines.filter(isOutcome), expected.filter(isOutcome));
  for (const line of lines) assert.ok(expected.includes(line), line);
  assert.deepEqual(leftServices(), []);
});
