'use strict';

module.exports = require('./loader.js').load();
