'use strict';

// Prints what loading the package of that folder gives. The arguments are that folder and, each for
// one call, the folders of the DLLs.

const { open } = require(process.argv[2]);

function load(options) {
  try {
    const sdk = open(options);
    sdk.openQueue().close();
    console.log(`version ${sdk.abi}`);
  } catch (error) {
    console.log(error.code);
    console.log(error.message);
  }
}

const folders = process.argv.slice(3);
if (folders.length === 0) load();
for (const folder of folders) load({ folder });
