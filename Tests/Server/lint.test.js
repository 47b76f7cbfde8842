// Holds the documents that the server has to the validator's rules, none of which only warns.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Documents } from './documents.js';
import { require, withServer } from './server.js';

test('the documents follow the recommended rules', { timeout: 120_000 }, () => withServer(async (server) => {
  const config = fileURLToPath(new URL('redocly.yaml', import.meta.url));
  const { status, stdout, stderr } = spawnSync(process.execPath,
    [require.resolve('@redocly/cli/bin/cli.js'), 'lint', '--config', config, ...Object.values(Documents.urls(server))],
    { encoding: 'utf8', env: { ...process.env, REDOCLY_TELEMETRY: 'off', REDOCLY_SUPPRESS_UPDATE_NOTICE: 'true' } });
  assert.equal(status, 0, stdout + stderr);
}));
