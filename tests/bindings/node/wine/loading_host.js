'use strict';

// Loads a package and prints what comes of it. The first argument is the folder of the package. Each
// further argument is a folder with the DLLs, and is tried with a call of its own.

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
