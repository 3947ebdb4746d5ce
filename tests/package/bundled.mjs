// Bundled into one file, beside which only the native module lies.
import * as brindle from 'brindle';
import exercise from './exercise.cjs';

exercise(brindle);
console.log('bundled');
