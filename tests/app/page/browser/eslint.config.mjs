// The page's scripts are one script when they run (see app/page/CMakeLists.txt): each uses names of
// those before it.
import js from '@eslint/js';

const read = 'readonly';
const browser = Object.fromEntries(
  ['document', 'window', 'performance', 'matchMedia', 'requestAnimationFrame', 'setTimeout', 'clearTimeout',
    'ResizeObserver', 'OffscreenCanvas', 'ImageData', 'atob', 'console', 'fetch', 'getComputedStyle',
    'KeyboardEvent', 'Event'].map((name) => [name, read]));
const ofOtherScripts = Object.fromEntries(
  ['readDrawing', 'eachCorner', 'Camera', 'PAPER', 'NIGHT', 'colorOn', 'Renderer', 'nearestTo', 'NameList',
    'objectRows', 'layerRows', 'textRows', 'Tape', 'lengthText'].map((name) => [name, read]));
const node = Object.fromEntries(['Buffer', 'process', 'URL'].map((name) => [name, read]));
const rules = {
  ...js.configs.recommended.rules,
  eqeqeq: 'error',
  'no-var': 'error',
  'prefer-const': 'error',
  'no-eval': 'error',
  'no-implied-eval': 'error',
  'no-restricted-properties': ['error',
    ...['innerHTML', 'outerHTML', 'insertAdjacentHTML', 'write'].map((property) => ({ property }))],
};

export default [
  {
    files: ['app/page/web/*.js'],
    languageOptions: { ecmaVersion: 2022, sourceType: 'script', globals: { ...browser, ...ofOtherScripts } },
    rules: { ...rules, 'no-redeclare': 'off', 'no-unused-vars': ['error', { vars: 'local' }], 'no-new': 'off' },
  },
  {
    files: ['tests/app/page/browser/*.mjs'],
    languageOptions: { ecmaVersion: 2022, sourceType: 'module', globals: { ...browser, ...node } },
    rules,
  },
];
