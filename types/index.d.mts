export * from './index.cjs';
export { default } from './index.cjs';
