'use strict';

// Every method of the engine class whose shape is the common one, family by family.

module.exports = ['audio', 'video', 'devices', 'service', 'music'].flatMap((domain) =>
  require(`../method_tables/${domain}.js`),
);
