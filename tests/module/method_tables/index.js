'use strict';

// Every method of the engine class whose shape is the common one.

module.exports = ['audio', 'video', 'devices', 'service', 'music', 'mixing'].flatMap((domain) => require(`./${domain}.js`));
