'use strict';

const { PlenxError, Result } = require('./errors');
const { EventQueue } = require('./event_queue');
const { PlenxEmitter } = require('./event_emitter');
const { Plenx } = require('./plenx');
const { folderOfDlls, loadLibrary } = require('./library');

const Service = Object.freeze({ OFFICE: 0, PC: 1, PHONE: 2, COMBINED: 3 });
const Key = Object.freeze({ INTEGER_0: 0, LOCALE: 1, INTEGER_2: 2, NOT_RUNNING: 5 });
const Status = Object.freeze({ START: 0, STOP: 1, ONLINE: 2, OFFLINE: 3 });

let opened = null;

/** Loads the library. Later calls give the same object. */
function open({ folder = opened?.folder ?? folderOfDlls() } = {}) {
  opened ??= { folder, sdk: new Plenx(loadLibrary(folder)) };
  if (folder !== opened.folder) {
    throw new PlenxError('PLENX_ALREADY_OPEN', `plenxsdk is open already, from ${opened.folder}`);
  }
  return opened.sdk;
}

module.exports = {
  open,
  Plenx,
  EventQueue,
  PlenxEmitter,
  PlenxError,
  Service,
  Key,
  Status,
  Result,
};
