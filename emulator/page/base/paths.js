export const api = '/_emulator/';
