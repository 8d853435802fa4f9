/// A page that a bundler has built from the installed package, in Chromium.
import assert from 'node:assert/strict';
import { join } from 'node:path';
import { test } from 'node:test';
import { launch, openPage, out } from './support/lab.js';
import { serve } from './support/server.js';

test('a bundled page works, whether the package finds its files or is given their addresses', async () => {
  const server = await serve({ '/': join(out, 'project/dist') });
  const browser = await launch();
  try {
    for (const [explicit, wanted] of [[false, /simd/], [true, /scalar/]]) {
      server.requests.length = 0;
      const page = await openPage(browser, server.url);
      const frames = await page.evaluate(async (explicit) => {
        const made = await start(explicit);
        for (let i = 0; i < 100 && made.stats.frames < 5; ++i) await new Promise((resolve) => setTimeout(resolve, 50));
        return made.stats.frames;
      }, explicit);
      assert.ok(frames >= 5);
      assert.match(server.requests.filter((path) => path.endsWith('.wasm')).join(), wanted);
      assert.deepEqual(page.complaints, []);
      await page.close();
    }
  } finally {
    await browser.close();
    await server.close();
  }
});
