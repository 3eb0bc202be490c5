'use strict';

// Prints what loading the package of that folder gives.

const { open } = require(process.argv[2]);

try {
  const sdk = open(process.argv[3] && { folder: process.argv[3] });
  sdk.openQueue().close();
  console.log(`version ${sdk.abi}`);
} catch (error) {
  console.log(error.code);
  console.log(error.message);
}
