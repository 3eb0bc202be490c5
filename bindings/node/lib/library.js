'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { PlenxError } = require('./errors');

const dlls = [
  'plenxsdk_c.dll',
  'plenxsdk.dll',
  'LogHelper.dll',
  'distributedfile.dll',
  'libstdc++-6.dll',
  'libgcc_s_seh-1.dll',
  'libwinpthread-1.dll',
];

/** The folder of the DLLs of this package. Windows loads no DLL from inside an archive of Electron. */
function folderOfDlls(library = __dirname) {
  const folder = path.join(path.dirname(library), 'dll');
  return folder.replace(/\.asar(?=[\\/])/g, '.asar.unpacked');
}

function requireSystem(platform, architecture) {
  if (platform !== 'win32' || architecture !== 'x64') {
    throw new PlenxError(
      'PLENX_SYSTEM',
      `plenxsdk runs on 64-bit Windows only (win32 x64), and this is ${platform} ${architecture}`,
    );
  }
}

function requireFiles(folder) {
  if (!path.isAbsolute(folder)) {
    throw new PlenxError('PLENX_DLL_MISSING', `the folder of the DLLs must be absolute: ${folder}`);
  }
  const missing = dlls.filter((name) => !fs.existsSync(path.join(folder, name)));
  if (missing.length > 0) {
    const hint = folder.includes('.asar.unpacked')
      ? '; name node_modules/plenxsdk in asarUnpack of electron-builder, or in asar.unpack of Forge'
      : '';
    throw new PlenxError('PLENX_DLL_MISSING', `${folder} lacks ${missing.join(', ')}${hint}`);
  }
}

function requireKoffi() {
  try {
    return require('koffi');
  } catch (error) {
    throw new PlenxError(
      'PLENX_KOFFI',
      `koffi cannot be loaded: ${error.message} (an application that is packed on another system ` +
        'needs npm install --os=win32 --cpu=x64)',
      { cause: error },
    );
  }
}

// koffi would look for the DLLs that this one needs in the folder of the program and in PATH first,
// where others of the same name may lie.
function loadFrom(kernel32, file) {
  const searchBesideItFirst = 0x100 | 0x1000; // LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR and _DEFAULT_DIRS
  const load = kernel32.func('void *LoadLibraryExW(str16 file, void *none, uint32_t flags)');
  if (!load(file, null, searchBesideItFirst)) {
    const number = kernel32.func('uint32_t GetLastError()')();
    throw new PlenxError(
      'PLENX_DLL_REFUSED',
      `Windows cannot load ${file}: its error is ${number}`,
    );
  }
}

/** Loads the DLLs. Gives koffi's handle, and a function that copies memory into a buffer. */
function loadLibrary(folder = folderOfDlls()) {
  requireSystem(process.platform, process.arch);
  requireFiles(folder);
  const koffi = requireKoffi();
  const kernel32 = koffi.load('kernel32.dll');
  const file = path.join(folder, dlls[0]);
  loadFrom(kernel32, file);
  return {
    library: koffi.load(file),
    copy: kernel32.func('void RtlMoveMemory(void *to, const void *from, size_t size)'),
  };
}

module.exports = { dlls, loadLibrary, folderOfDlls, requireSystem, requireFiles };
