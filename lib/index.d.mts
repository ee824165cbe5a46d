// What `import 'corvane-meeting-sdk'` gives: the exports by name, and all of them as the default.

import sdk = require('./index.js');

export * from './index.js';
export default sdk;
