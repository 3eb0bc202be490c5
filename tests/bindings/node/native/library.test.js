'use strict';

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { after, test } = require('node:test');
const koffi = require('koffi');
const plenxsdk = require('plenxsdk');
const { folderOfDlls, requireFiles, requireSystem } = require('plenxsdk/lib/library');

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'plenxsdk-'));
after(() => fs.rmSync(folder, { recursive: true }));

const names = [
  'plenxsdk_c.dll',
  'plenxsdk.dll',
  'LogHelper.dll',
  'distributedfile.dll',
  'libstdc++-6.dll',
  'libgcc_s_seh-1.dll',
  'libwinpthread-1.dll',
];

/** A library that was built from that C source. */
function compile(name, source) {
  const file = path.join(folder, `${name}.so`);
  execFileSync('gcc', ['-shared', '-fPIC', '-x', 'c', '-o', file, '-'], { input: source });
  return koffi.load(file);
}

test('another system than 64-bit Windows is refused, and named', () => {
  assert.throws(() => plenxsdk.open(), {
    name: 'PlenxError',
    code: 'PLENX_SYSTEM',
    message: 'plenxsdk runs on 64-bit Windows only (win32 x64), and this is linux x64',
  });
  for (const system of [
    ['win32', 'arm64'],
    ['win32', 'ia32'],
    ['darwin', 'x64'],
  ]) {
    assert.throws(() => requireSystem(...system), {
      message: new RegExp(`this is ${system.join(' ')}$`),
    });
  }
  requireSystem('win32', 'x64');
});

test('the DLLs are looked for in the package, and outside an archive of Electron', () => {
  assert.equal(folderOfDlls('/app/node_modules/plenxsdk/lib'), '/app/node_modules/plenxsdk/dll');
  const packed = 'resources/app.asar/node_modules/plenxsdk';
  const unpacked = 'resources/app.asar.unpacked/node_modules/plenxsdk';
  assert.equal(folderOfDlls(`/${packed}/lib`), `/${unpacked}/dll`);
  assert.equal(folderOfDlls(`/${unpacked}/lib`), `/${unpacked}/dll`);
  assert.equal(folderOfDlls('/my.asarfiles/plenxsdk/lib'), '/my.asarfiles/plenxsdk/dll');
});

test('every missing DLL is named, and its folder', () => {
  const message = (listed) => ({
    code: 'PLENX_DLL_MISSING',
    message: `${folder} lacks ${listed}`,
  });
  assert.throws(() => requireFiles(folder), message(names.join(', ')));
  for (const name of names) fs.writeFileSync(path.join(folder, name), '');
  requireFiles(folder);
  fs.rmSync(path.join(folder, 'libwinpthread-1.dll'));
  assert.throws(() => requireFiles(folder), message('libwinpthread-1.dll'));
});

test('what was not unpacked from an archive is said to be so', () => {
  const archive = '/resources/app.asar.unpacked/node_modules/plenxsdk/dll';
  assert.throws(() => requireFiles(archive), { message: /lacks .*; name .* in asarUnpack/ });
});

test('the folder of the DLLs is absolute, so that nobody can change what it means', () => {
  assert.throws(() => requireFiles('dll'), {
    code: 'PLENX_DLL_MISSING',
    message: 'the folder of the DLLs must be absolute: dll',
  });
});

test('a DLL that refuses this version is refused, in its own words', () => {
  const library = compile(
    'refusing',
    `
    #include <stdint.h>
    #include <string.h>
    int32_t plenx_open(uint32_t abi) { return abi == 1 ? -4 : 0; }
    const char* plenx_result_text(int32_t result) { return result == -4 ? "Too new." : ""; }
    int32_t plenx_last_error(char* text, size_t capacity, size_t* length) {
        strcpy(text, "plenx_open: the header is newer");
        *length = strlen(text);
        return 0;
    }
    ${functionsExcept('plenx_open', 'plenx_result_text', 'plenx_last_error')}`,
  );
  assert.throws(() => new plenxsdk.Plenx({ library }), {
    code: 'PLENX_E_ABI',
    result: -4,
    sentence: 'Too new.',
    message: 'plenx_open: the header is newer',
  });
});

test('a DLL that lacks a function is too old, and the function is named', () => {
  const library = compile('old', functionsExcept('plenx_queue_set_link_status'));
  assert.throws(() => new plenxsdk.Plenx({ library }), {
    name: 'PlenxError',
    code: 'PLENX_E_ABI',
    message: 'plenxsdk_c.dll is too old: it has no plenx_queue_set_link_status',
  });
});

/** C code of functions that all return 0. */
function functionsExcept(...unwanted) {
  const { prototypes } = require('plenxsdk/lib/functions');
  return prototypes
    .map((prototype) => prototype.match(/plenx_\w+/)[0])
    .filter((name) => !unwanted.includes(name))
    .map((name) => `int ${name}(void) { return 0; }\n`)
    .join('');
}
