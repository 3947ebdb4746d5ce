'use strict';

const { error } = require('./load.cjs');

if (error) throw error;
module.exports = require('./api.cjs');
