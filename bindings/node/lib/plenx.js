'use strict';

const { bytes, int32, int64, message, text, uint32 } = require('./arguments');
const { Functions } = require('./functions');
const { EventQueue } = require('./event_queue');
const { PlenxEmitter } = require('./event_emitter');
const { Result } = require('./errors');
const { Watch } = require('./watch');

/** The library. Its methods are the functions of plenx.h. */
class Plenx {
  #functions;
  #copy;
  #watch = new Watch();

  constructor({ library, copy }) {
    this.#functions = new Functions(library);
    this.#copy = copy;
  }

  get abi() {
    return this.#functions.ask('plenx_abi');
  }

  init(install, data, { third = '', flag = false } = {}) {
    this.#call(
      'plenx_init',
      text('install', install),
      text('data', data),
      text('third', third),
      flag ? 1 : 0,
    );
  }

  async destroy() {
    await this.#wait('plenx_destroy', []);
  }

  async getInt64(service, key) {
    const value = new BigInt64Array(1);
    await this.#wait('plenx_get_int64', [uint32('service', service), uint32('key', key), value]);
    return value[0];
  }

  async getString(service, key) {
    const values = [uint32('service', service), uint32('key', key)];
    return this.#waitForText('plenx_get_string', values, []);
  }

  setInt64(service, key, value) {
    this.#call(
      'plenx_set_int64',
      uint32('service', service),
      uint32('key', key),
      int64('value', value),
    );
  }

  setString(service, key, value) {
    this.#call(
      'plenx_set_string',
      uint32('service', service),
      uint32('key', key),
      text('value', value),
    );
  }

  start(service, group, argument) {
    this.#call(
      'plenx_start',
      uint32('service', service),
      text('group', group),
      text('argument', argument),
    );
  }

  stop(service, group) {
    this.#call('plenx_stop', uint32('service', service), text('group', group));
  }

  localDeviceOnline(service, group, device, data = new Uint8Array()) {
    this.#call(
      'plenx_local_device_online',
      ...this.#device(service, group, device),
      bytes('data', data),
    );
  }

  remoteDeviceOnline(service, group, device) {
    this.#call('plenx_remote_device_online', ...this.#device(service, group, device));
  }

  localDeviceOffline(service, group, device, trigger = 0) {
    this.#call(
      'plenx_local_device_offline',
      ...this.#device(service, group, device),
      int32('trigger', trigger),
    );
  }

  remoteDeviceOffline(service, group, device, trigger = 0) {
    this.#call(
      'plenx_remote_device_offline',
      ...this.#device(service, group, device),
      int32('trigger', trigger),
    );
  }

  deviceNameChanged(name) {
    this.#call('plenx_device_name_changed', text('name', name));
  }

  recvRemoteMessage(type, content, msgLen) {
    const given = message('message', content);
    this.#call(
      'plenx_recv_remote_message',
      int32('type', type),
      uint32('msgLen', msgLen ?? given.length),
      given,
    );
  }

  async getOfficeDir(group, device, relative) {
    const code = new Int32Array(1);
    const values = [text('group', group), text('device', device), text('relative', relative)];
    const path = await this.#waitForText('plenx_get_office_dir', values, [code]);
    return { code: code[0], path };
  }

  openQueue(options) {
    return new EventQueue(this.#forQueues(), options);
  }

  openEmitter(options) {
    return new PlenxEmitter(this.#forQueues(), options);
  }

  #forQueues() {
    return { functions: this.#functions, copy: this.#copy, watch: this.#watch };
  }

  #device(service, group, device) {
    return [uint32('service', service), text('group', group), text('device', device)];
  }

  // A call may soon cause an event.
  #call(name, ...values) {
    this.#functions.call(name, ...values);
    this.#watch.hurry();
  }

  async #wait(name, values, expected) {
    const result = await this.#functions.wait(name, values, expected);
    this.#watch.hurry();
    return result;
  }

  async #waitForText(name, before, after) {
    const length = new BigUint64Array(1);
    for (let buffer = Buffer.alloc(1000); ; buffer = Buffer.alloc(Number(length[0]) + 1)) {
      const values = [...before, buffer, length, ...after];
      if ((await this.#wait(name, values, Result.E_BUFFER)) === Result.OK) {
        return buffer.toString('utf8', 0, Number(length[0]));
      }
    }
  }
}

module.exports = { Plenx };
