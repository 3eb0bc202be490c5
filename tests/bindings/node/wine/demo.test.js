'use strict';

const assert = require('node:assert/strict');
const path = require('node:path');
const { test } = require('node:test');
const { Place, isService, leftServices } = require('./wine');

const kinds = [
  'message',
  'connect',
  'disconnect',
  'reconnect',
  'linkQuery',
  'status',
  'serviceError',
  'diskName',
];
const notifications = [
  'SendLocalMessage(9)',
  'ConnectNotify(10)',
  'DisconnectNotify(11)',
  'ReconnectNotify(12)',
  'LinkTypeQuery(13)',
  'StatusNotify(14)',
  'ErrorNotify(15)',
  'DiskNameNotify(16)',
  'UpdateWindowsExplore(17)',
  'ExploreFlushNotify(18)',
];

test('the demo starts the services, hears all eight notifications, and leaves nothing', async () => {
  const place = new Place('demo');
  const { status, lines } = await place.run(path.join(__dirname, 'demo.js'));
  assert.equal(status, 0, lines.join('\n'));
  const heard = new Set(lines.map((line) => JSON.parse(line).kind));
  assert.deepEqual([...heard].sort(), [...kinds].sort());
  const log = place.read('service.log');
  for (const name of notifications) {
    assert.ok(log.includes(`Manager answered ${name} result:0`), name);
  }
  assert.ok(log.includes('Manager answered LinkTypeQuery(13) result:0 reply:7'));
  assert.ok(log.includes('pc received SetStringConfig(7) cfgType:1 value:"de_DE"'));
  assert.deepEqual(leftServices(), []);
  assert.ok(isService('Dokan1') && !place.hasWorkingFolder());
});
