// This file is only compiled. It shows what the declarations of the package allow and what they do not.

import { once } from 'node:events';
import {
  EventQueue,
  Key,
  open,
  Plenx,
  PlenxEmitter,
  PlenxError,
  PlenxEvent,
  Result,
  Service,
  Status,
} from 'plenxsdk';

const sdk: Plenx = open();
open({ folder: 'C:\\Plenx\\bin' }) satisfies Plenx;

function describe(event: PlenxEvent): string {
  switch (event.kind) {
    case 'message':
      return `${event.type} ${event.msgLen} ${event.text} ${event.bytes.length}`;
    case 'connect':
    case 'disconnect':
    case 'reconnect':
      return `${event.service} ${event.group}`;
    case 'linkQuery':
      return `${event.link} ${event.answer}`;
    case 'status':
      return event.value && event.status === Status.START ? event.group : '';
    case 'serviceError':
      return event.error.toFixed();
    case 'diskName':
      return event.name;
    case 'unknown':
      return event.number.toFixed();
    default:
      return event satisfies never;
  }
}

export async function useQueue(): Promise<void> {
  const queue: EventQueue = sdk.openQueue({ capacity: 10 }).unref().ref();
  queue.setLinkStatus(Service.PC, 'home', 0, 7);
  const event: PlenxEvent | null = await queue.take(1000);
  if (event !== null) describe(event);
  for await (const each of queue) describe(each) satisfies string;
  // @ts-expect-error: a number of milliseconds
  await queue.take('1000');
  queue.close();
}

export async function useEmitter(): Promise<void> {
  const emitter: PlenxEmitter = sdk.openEmitter().unref();
  emitter.on('status', ({ status, value }) => [status satisfies number, value satisfies boolean]);
  emitter.on('reconnect', ({ group }) => group satisfies string);
  emitter.on('event', (event) => describe(event));
  emitter.on('error', (error) => error satisfies PlenxError);
  // @ts-expect-error: a message has no group
  emitter.on('message', ({ group }) => group);
  const [{ name }] = (await once(emitter, 'diskName')) as [{ name: string }];
  name satisfies string;
}

export async function useCalls(): Promise<void> {
  sdk.init('C:\\Plenx', 'C:\\Data');
  sdk.init('C:\\Plenx', 'C:\\Data', { third: 'text', flag: true });
  (await sdk.getInt64(Service.PC, Key.NOT_RUNNING)) satisfies bigint;
  (await sdk.getString(Service.PC, Key.LOCALE)) satisfies string;
  sdk.setInt64(Service.PC, Key.INTEGER_0, 1);
  sdk.setInt64(Service.PC, Key.INTEGER_2, 9000000000n);
  sdk.setString(Service.COMBINED, Key.LOCALE, 'de_DE');
  sdk.start(Service.OFFICE, 'home', 'argument');
  sdk.localDeviceOnline(Service.PC, 'home', 'laptop', Uint8Array.of(1));
  sdk.localDeviceOffline(Service.PC, 'home', 'laptop', 1);
  sdk.remoteDeviceOnline(Service.PC, 'home', 'tablet');
  sdk.remoteDeviceOffline(Service.PC, 'home', 'tablet');
  sdk.deviceNameChanged('Laptop');
  sdk.recvRemoteMessage(42, 'text');
  sdk.recvRemoteMessage(42, Buffer.of(1), 7);
  const { code, path } = await sdk.getOfficeDir('home', 'tablet', 'shared');
  [code satisfies number, path satisfies string];
  sdk.stop(Service.PHONE, 'home');
  await sdk.destroy();
  // @ts-expect-error: the group is missing
  sdk.stop(Service.PHONE);
  // @ts-expect-error: nobody makes one but open
  new Plenx();
}

export function judge(error: unknown): boolean {
  return (
    error instanceof PlenxError &&
    error.result === Result.E_HANDLE &&
    error.code !== '' &&
    error.detail !== error.sentence
  );
}
