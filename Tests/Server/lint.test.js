// Holds the documents that the server has to the validator's recommended rules. Neither an error nor a warning passes.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Documents } from './documents.js';
import { modules } from './modules.js';
import { withServer } from './server.js';

test('the documents follow the recommended rules', { timeout: 120_000 }, () => withServer(async (server) => {
  const folder = mkdtempSync(join(tmpdir(), 'documents-'));
  const { documents } = await Documents.of(server);
  const files = Object.entries(documents).map(([name, document]) => {
    writeFileSync(join(folder, `${name}.json`), JSON.stringify(document, null, 2));
    return join(folder, `${name}.json`);
  });
  const config = fileURLToPath(new URL('redocly.yaml', import.meta.url));
  const { status, stdout } = spawnSync(process.execPath, [join(modules, '@redocly/cli/bin/cli.js'), 'lint', '--config', config, '--format=json', ...files],
    { encoding: 'utf8', env: { ...process.env, REDOCLY_TELEMETRY: 'off', REDOCLY_SUPPRESS_UPDATE_NOTICE: 'true' } });
  rmSync(folder, { recursive: true });
  // One report a document, each with its totals.
  const totals = [...stdout.matchAll(/"(?:errors|warnings|ignored)": (\d+)/g)].map(([, count]) => Number(count));
  assert.deepEqual([status, totals], [0, Array(3 * files.length).fill(0)], stdout);
}));
