'use strict';

// Runs all tests one after the other, because there is only one set of services.

for (const name of ['demo', 'ending', 'example', 'loading']) require(`./${name}.test.js`);
