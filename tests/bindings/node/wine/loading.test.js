'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { Place, package_, windowsPath } = require('./wine');

const program = path.join(__dirname, 'loading_host.js');
const dlls = path.join(package_, 'dll');

/** Lays out a package: its code in one folder, its DLLs in another. */
function layOut(code, dll) {
  fs.cpSync(path.join(package_, 'lib'), path.join(code, 'lib'), { recursive: true });
  fs.cpSync(path.join(package_, 'package.json'), path.join(code, 'package.json'));
  fs.cpSync(dlls, path.join(dll, 'dll'), { recursive: true });
}

async function load(place, ...folders) {
  const { status, lines } = await place.run(program, ...folders.map(windowsPath));
  assert.equal(status, 0, lines.join('\n'));
  return lines;
}

test('the package may lie in a folder with blanks and foreign letters', async () => {
  const place = new Place('letters');
  const folder = path.join(place.folder, 'Büro & Küche \u2615');
  layOut(folder, folder);
  assert.deepEqual(await load(place, folder), ['version 1']);
});

test('the DLLs of a package in an archive of Electron lie outside', async () => {
  const place = new Place('archive');
  const code = path.join(place.folder, 'resources/app.asar/node_modules/plenxsdk');
  const unpacked = path.join(place.folder, 'resources/app.asar.unpacked/node_modules/plenxsdk');
  layOut(code, unpacked);
  assert.deepEqual(await load(place, code), ['version 1']);
  fs.rmSync(unpacked, { recursive: true });
  const [code_, message] = await load(place, code);
  assert.equal(code_, 'PLENX_DLL_MISSING');
  assert.match(message, /app\.asar\.unpacked\\node_modules\\plenxsdk\\dll lacks .*asarUnpack/);
});

test('the DLLs may lie in a folder of the application', async () => {
  const place = new Place('own-folder');
  const own = path.join(place.folder, 'native');
  fs.cpSync(dlls, own, { recursive: true });
  assert.deepEqual(await load(place, package_, own), ['version 1']);
});

test('a process has one set of DLLs', async () => {
  const place = new Place('second');
  const own = path.join(place.folder, 'native');
  fs.cpSync(dlls, own, { recursive: true });
  assert.deepEqual(await load(place, package_, own, own, dlls), [
    'version 1',
    'version 1',
    'PLENX_ALREADY_OPEN',
    `plenxsdk is open already, from ${windowsPath(own)}`,
  ]);
});

test('without koffi for this system, the package says what to do', async () => {
  const place = new Place('no-koffi');
  const folder = path.join(place.folder, 'plenxsdk');
  const koffi = path.join(folder, 'node_modules', 'koffi');
  layOut(folder, folder);
  fs.mkdirSync(koffi, { recursive: true });
  fs.writeFileSync(path.join(koffi, 'index.js'), "throw new Error('no native module');\n");
  assert.deepEqual(await load(place, folder), [
    'PLENX_KOFFI',
    'koffi cannot be loaded: no native module (an application that is packed on another system ' +
      'needs npm install --os=win32 --cpu=x64)',
  ]);
});

// Windows looks into the folder in which a host is started, unless it is told not to.
test('DLLs of the same names elsewhere are not taken', async () => {
  const place = new Place('elsewhere');
  for (const name of fs.readdirSync(dlls))
    fs.writeFileSync(path.join(place.folder, name), 'no DLL');
  assert.deepEqual(await load(place, package_), ['version 1']);
});

test('a missing DLL is named', async () => {
  const place = new Place('missing');
  const own = path.join(place.folder, 'native');
  fs.cpSync(dlls, own, { recursive: true });
  fs.rmSync(path.join(own, 'libgcc_s_seh-1.dll'));
  assert.deepEqual(await load(place, package_, own), [
    'PLENX_DLL_MISSING',
    `${windowsPath(own)} lacks libgcc_s_seh-1.dll`,
  ]);
});

test('a DLL that Windows cannot load is named with the number of its error', async () => {
  const place = new Place('refused');
  const own = path.join(place.folder, 'native');
  fs.cpSync(dlls, own, { recursive: true });
  fs.writeFileSync(path.join(own, 'plenxsdk.dll'), 'no DLL');
  const [code, message] = await load(place, package_, own);
  assert.equal(code, 'PLENX_DLL_REFUSED');
  assert.match(message, /^Windows cannot load .*\\native\\plenxsdk_c\.dll: its error is \d+$/);
});
