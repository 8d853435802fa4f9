/// A server of this machine's own pages, for one test file.
import { createServer } from 'node:http';
import { readFile } from 'node:fs/promises';
import { extname, join, normalize } from 'node:path';

const TYPES = {
  '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm', '.png': 'image/png'
};

/** What a page with this package may be kept to at most. */
export const STRICT =
  "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; worker-src 'self'; connect-src 'self'; img-src data:";

/**
 * @param {Record<string, string>} folders  by the beginning of an address, such as '/clips/'
 * @param {{csp?: string, redirects?: Record<string, string>}} [options]
 */
export async function serve(folders, { csp = STRICT, redirects = {} } = {}) {
  const requests = [];
  const server = createServer(async (request, response) => {
    const path = normalize(new URL(request.url, 'http://page').pathname);
    requests.push(path);
    if (path in redirects) return response.writeHead(302, { Location: redirects[path] }).end();
    const begin = Object.keys(folders).filter((key) => path.startsWith(key)).sort((a, b) => b.length - a.length)[0];
    const file = path.slice(begin?.length) || 'index.html';
    const body = begin && (await readFile(join(folders[begin], file)).catch(() => undefined));
    const head = { 'Content-Type': TYPES[extname(file)] ?? 'application/octet-stream', 'Content-Security-Policy': csp };
    response.writeHead(body ? 200 : 404, body ? head : {}).end(body || '');
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  const url = `http://127.0.0.1:${server.address().port}/`;
  const close = () => {
    server.closeAllConnections();
    return new Promise((resolve) => server.close(resolve));
  };
  return { url, requests, close };
}
