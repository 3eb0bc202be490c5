import { EventEmitter } from 'node:events';

/**
 * Loads the DLLs, and gives the library. Later calls give the same object.
 *
 * Throws a PlenxError: PLENX_SYSTEM on another system than 64-bit Windows, PLENX_DLL_MISSING with the
 * names of the files that are missing, PLENX_DLL_REFUSED when Windows cannot load them, PLENX_E_ABI
 * when they are too old, PLENX_KOFFI when koffi cannot be loaded, and PLENX_ALREADY_OPEN when they
 * were loaded from another folder.
 */
export function open(options?: {
  /** The absolute path of the folder that holds all DLLs. By default it is the package's own. */
  folder?: string;
}): Plenx;

/** The service that a call addresses. Calls take any other number too. */
export const Service: {
  readonly OFFICE: 0;
  readonly PC: 1;
  readonly PHONE: 2;
  /** Several services; the method says which. */
  readonly COMBINED: 3;
};

export const Key: {
  readonly INTEGER_0: 0;
  /** The locale, a text. */
  readonly LOCALE: 1;
  readonly INTEGER_2: 2;
  /** For getInt64 only: 1n while the service is not running, else 0n. */
  readonly NOT_RUNNING: 5;
};

/** What a StatusEvent is about. A service may send numbers of its own. */
export const Status: {
  readonly START: 0;
  readonly STOP: 1;
  readonly ONLINE: 2;
  readonly OFFLINE: 3;
};

/** The numbers of PlenxError.result. */
export const Result: {
  readonly OK: 0;
  readonly INVALID_PARAMETER: 26;
  readonly E_ARGUMENT: -1;
  readonly E_BUFFER: -2;
  readonly E_MEMORY: -3;
  readonly E_ABI: -4;
  readonly E_HANDLE: -5;
  readonly E_CANCELLED: -6;
  readonly E_DEADLOCK: -7;
  readonly E_ENDING: -8;
  readonly E_FAILED: -9;
};

/**
 * A failure of the library, or of loading it. An argument of the wrong type is a TypeError instead,
 * and a number out of range a RangeError.
 */
export class PlenxError extends Error {
  private constructor();
  /** For a call: PLENX_ and the name of the result, such as PLENX_INVALID_PARAMETER. */
  readonly code: string;
  /** What the call returned; undefined when loading has failed. */
  readonly result?: number;
  /** The sentence of that result, which is always the same. */
  readonly sentence?: string;
  /** What the library has to say about this failure; '' if nothing, and always '' in a promise. */
  readonly detail?: string;
}

/**
 * The library. A method that changes something queues a job and returns at once; the outcome comes
 * as an event. Only a second `init` may block. The methods that wait return a promise. They take
 * turns on one thread of the pool that Node's file access shares.
 */
export class Plenx {
  private constructor();

  /** The version of plenx.h that the DLL was built with. */
  readonly abi: number;

  /**
   * Makes the library ready. Open queues and emitters first. The process must be elevated.
   * The first call of a process waits for no job. Every later one blocks this thread while the office
   * service is started, stopped or told of a device.
   * @param install The folder of the service program and the driver, without a backslash at its end.
   * @param data A folder that exists. Its sub-folder "plenx" is DELETED with everything in it.
   */
  init(install: string, data: string, options?: { third?: string; flag?: boolean }): void;
  /**
   * Asks the companion library to uninstall its packages. It releases nothing. Waits while the office
   * service is started, stopped or told of a device.
   */
  destroy(): Promise<void>;

  /** Waits while the job of the first init is running. Only Key.NOT_RUNNING has an answer. */
  getInt64(service: number, key: number): Promise<bigint>;
  /** Always gives '', because string settings cannot be read back. Waits like getInt64. */
  getString(service: number, key: number): Promise<string>;
  setInt64(service: number, key: number, value: number | bigint): void;
  setString(service: number, key: number, value: string): void;

  /** Starts a service, with a group in it. The outcome comes as Status.START. */
  start(service: number, group: string, argument: string): void;
  /** Deletes a group and stops its service. The outcome comes as Status.STOP. */
  stop(service: number, group: string): void;

  localDeviceOnline(service: number, group: string, device: string, data?: Uint8Array): void;
  remoteDeviceOnline(service: number, group: string, device: string): void;
  localDeviceOffline(service: number, group: string, device: string, trigger?: number): void;
  remoteDeviceOffline(service: number, group: string, device: string, trigger?: number): void;
  deviceNameChanged(name: string): void;

  /**
   * Passes a message on to the PC service.
   * @param msgLen A number for the service; by default the length of the message in bytes.
   */
  recvRemoteMessage(type: number, message: string | Uint8Array, msgLen?: number): void;

  /**
   * Asks the companion library for the folder of a device. Waits while the office service is started,
   * stopped or told of a device. `code` is the companion library's own.
   */
  getOfficeDir(
    group: string,
    device: string,
    relative: string,
  ): Promise<{ code: number; path: string }>;

  /** Events from now on, to be taken one by one. */
  openQueue(options?: QueueOptions): EventQueue;
  /** Events from now on, for listeners. */
  openEmitter(options?: QueueOptions): PlenxEmitter;
}

export interface QueueOptions {
  /**
   * How many events are kept while nobody takes them; by default 1000. When there are more, the
   * oldest are dropped, and `lost` of the next event counts them.
   */
  capacity?: number;
}

interface Reader {
  /** Sets the answer that a service gets when it asks for the status of a link. */
  setLinkStatus(service: number, group: string, link: number, status: number): void;
  /** Lets waiting for events keep the process running, as it does from the beginning. */
  ref(): this;
  /** Lets the process end although somebody waits for events. */
  unref(): this;
  /**
   * Ends it, for good. Events that nobody has taken are dropped. A worker closes its own before it
   * ends; otherwise they stay open until the process ends.
   */
  close(): void;
}

/** Events, one by one; each goes to one taker. `for await` takes them until the queue is closed. */
export class EventQueue implements Reader, AsyncIterable<PlenxEvent> {
  private constructor();
  /**
   * Takes the next event.
   * @param milliseconds How long to wait; by default for ever.
   * @returns null when none came in time, or when the queue is closed.
   */
  take(milliseconds?: number): Promise<PlenxEvent | null>;
  [Symbol.asyncIterator](): AsyncGenerator<PlenxEvent, void, undefined>;
  setLinkStatus(service: number, group: string, link: number, status: number): void;
  ref(): this;
  unref(): this;
  close(): void;
}

/** The events of PlenxEmitter, with what its listeners get. */
export type PlenxEmitterEvents = {
  [Event in PlenxEvent as Event['kind']]: [event: Event];
} & {
  /** Every event, before the one of its kind. */
  event: [event: PlenxEvent];
  /** An event could not be taken. */
  error: [error: PlenxError];
  close: [];
};

/**
 * Events for listeners, on Node's thread. They wait until the first listener is added. After that,
 * an event that has no listener is dropped.
 */
export class PlenxEmitter extends EventEmitter<PlenxEmitterEvents> implements Reader {
  private constructor();
  setLinkStatus(service: number, group: string, link: number, status: number): void;
  ref(): this;
  unref(): this;
  close(): void;
}

/**
 * A notification. Texts need not be valid UTF-8: malformed bytes become U+FFFD, and a text is cut
 * off at 256 MiB. `lost` says how many notifications were dropped directly before this one.
 */
export type PlenxEvent =
  | MessageEvent
  | GroupEvent
  | LinkQueryEvent
  | StatusEvent
  | ServiceErrorEvent
  | DiskNameEvent
  | UnknownEvent;

/** A service sends a message to this device; `type` and `msgLen` are its own numbers. */
export interface MessageEvent {
  kind: 'message';
  type: number;
  msgLen: number;
  text: string;
  bytes: Buffer;
  lost: number;
}

/** A group of a service has been connected, has lost its connection, or has been connected again. */
export interface GroupEvent {
  kind: 'connect' | 'disconnect' | 'reconnect';
  service: number;
  group: string;
  lost: number;
}

/** A service has asked for the status of a link, and got `answer`. */
export interface LinkQueryEvent {
  kind: 'linkQuery';
  service: number;
  group: string;
  link: number;
  answer: number;
  lost: number;
}

/** Something started, stopped, came online or went offline, or did not. */
export interface StatusEvent {
  kind: 'status';
  service: number;
  group: string;
  status: number;
  value: boolean;
  lost: number;
}

/** A service reports an error of its own. */
export interface ServiceErrorEvent {
  kind: 'serviceError';
  error: number;
  lost: number;
}

/** A service reports the name under which its disk is mounted. */
export interface DiskNameEvent {
  kind: 'diskName';
  name: string;
  bytes: Buffer;
  lost: number;
}

/** What a newer DLL sends and this package does not know. */
export interface UnknownEvent {
  kind: 'unknown';
  number: number;
  service: number;
  type: number;
  value: number;
  group: string;
  bytes: Buffer;
  lost: number;
}
