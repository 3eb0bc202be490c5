// Starts a service, waits until it has started, stops it, and waits until it has stopped.
//
//     node host.mjs C:\Plenx\App C:\Plenx\Data

import { open, Service, Status } from 'plenxsdk';

const sdk = open();
const events = sdk.openQueue(); // before init, so that nothing is missed

sdk.init(process.argv[2], process.argv[3]);
sdk.start(Service.PC, 'home', 'argument');

for await (const { kind, service, status, value, lost, ...rest } of events) {
  console.log(kind, status ?? '', value ?? '', rest);
  if (kind !== 'status' || service !== Service.PC) continue;
  if (status === Status.START && value) sdk.stop(Service.PC, 'home');
  if (status === Status.START ? !value : status === Status.STOP) break;
}
