/// Serves the demo page, the package's sources with their modules, and the sample picture, to this machine only.
///
///     node web/demo/serve.mjs [PORT]
///
/// Without a port: 8080, or any free one where that is taken.
import { createReadStream } from 'node:fs';
import { stat } from 'node:fs/promises';
import { createServer } from 'node:http';
import { extname } from 'node:path';
import { fileURLToPath } from 'node:url';

const HOST = '127.0.0.1';
const USUAL_PORT = 8080;
const PROJECT = new URL('../../', import.meta.url);

/** What is served: only these folders, without folders inside them, and only these types. */
const FOLDERS = { '/': 'web/demo/', '/src/': 'web/src/', '/samples/': 'samples/' };
const TYPES = {
  '.css': 'text/css; charset=utf-8',
  '.html': 'text/html; charset=utf-8',
  '.js': 'text/javascript; charset=utf-8',
  '.png': 'image/png',
  '.svg': 'image/svg+xml',
  '.wasm': 'application/wasm'
};

/** The file of an address, or null; names are plain ones, so that no address leads out of a folder. */
function fileOf(address) {
  const path = address.replace(/[?#].*$/s, '');
  const [, folder, name] = /^(\/(?:[a-z]+\/)?)((?:[A-Za-z0-9_-]+\.)+[a-z]+)?$/.exec(path) ?? [];
  if (!Object.hasOwn(FOLDERS, folder ?? '')) return null;
  const file = name ?? (folder === '/' ? 'index.html' : '');
  return Object.hasOwn(TYPES, extname(file)) ? new URL(FOLDERS[folder] + file, PROJECT) : null;
}

function refuse(response, status, words) {
  response.writeHead(status, { 'Content-Type': 'text/plain; charset=utf-8' }).end(`${words}\n`);
}

async function answer(request, response) {
  if (request.method !== 'GET' && request.method !== 'HEAD') return refuse(response, 405, 'Only GET and HEAD');
  const file = fileOf(request.url);
  const info = file && (await stat(file).catch(() => null));
  if (!info?.isFile()) return refuse(response, 404, 'Not found');
  response.writeHead(200, {
    'Content-Type': TYPES[extname(fileURLToPath(file))],
    'Content-Length': info.size,
    'Cache-Control': 'no-store',
    'Referrer-Policy': 'no-referrer',
    'X-Content-Type-Options': 'nosniff'
  });
  if (request.method === 'HEAD') return response.end();
  createReadStream(file)
    .on('error', () => response.destroy())
    .pipe(response);
}

/** The port asked for; null where none is, NaN where it is none. */
function wantedPort() {
  const [text] = process.argv.slice(2);
  if (text === undefined) return null;
  return /^\d{1,5}$/.test(text) && Number(text) < 65536 ? Number(text) : NaN;
}

const wanted = wantedPort();
if (Number.isNaN(wanted)) {
  console.error(`serve.mjs: '${process.argv[2]}' is no port, 0 to 65535`);
  process.exit(2);
}

const server = createServer(answer);
server.on('listening', () => console.log(`http://${HOST}:${server.address().port}/`));
server.on('error', (error) => {
  if (error.code === 'EADDRINUSE' && wanted === null) return server.listen(0, HOST);
  console.error(`serve.mjs: cannot serve: ${error.message}`);
  process.exit(1);
});
for (const signal of ['SIGINT', 'SIGTERM']) {
  process.on(signal, () => {
    server.close();
    server.closeAllConnections();
  });
}
server.listen(wanted ?? USUAL_PORT, HOST);
