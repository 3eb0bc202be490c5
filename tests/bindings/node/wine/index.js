'use strict';

// All tests, one after the other: the services are there only once.

for (const name of ['demo', 'ending', 'example', 'loading']) require(`./${name}.test.js`);
