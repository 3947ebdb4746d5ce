import brindle from './index.cjs';

export default brindle;
export * from './index.cjs';
