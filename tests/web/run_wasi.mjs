// Runs a program that was compiled for WebAssembly: node run_wasi.mjs FILE [ARGUMENT...]
import {readFile} from 'node:fs/promises';
import {WASI} from 'node:wasi';

const [file, ...rest] = process.argv.slice(2);
const wasi = new WASI({version: 'preview1', args: [file, ...rest], env: process.env});
const {instance} = await WebAssembly.instantiate(await readFile(file), wasi.getImportObject());
process.exitCode = wasi.start(instance);
