// The documents keep all rules of the validator, and whatever is asked is answered as they say.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Documents } from './documents.js';
import { Requests, sandboxes } from './requests.js';
import { Client, masked, require, withServer } from './server.js';

const count = Number(process.env.DRIVE_REQUESTS ?? 1_500);
const seed = Number(process.env.DRIVE_SEED ?? 20_260_301);
const clients = 8;
/** Of a sandbox whose network a request has switched off, and of as many sandboxes as the server keeps. */
const allowedFailures = ['not-connected', 'too-many-sandboxes'];
/** Of what is refused before it has all arrived, a client that is still sending may lose the reply. */
const isHuge = ({ options }) => (options.body?.length ?? 0) + JSON.stringify(options.headers).length > 50_000;

test('the documents follow the recommended rules', { timeout: 120_000 }, () => withServer(async (server) => {
  const config = fileURLToPath(new URL('redocly.yaml', import.meta.url));
  const { status, stdout, stderr } = spawnSync(process.execPath,
    [require.resolve('@redocly/cli/bin/cli.js'), 'lint', '--config', config, ...Object.values(Documents.urls(server))],
    { encoding: 'utf8', env: { ...process.env, REDOCLY_TELEMETRY: 'off', REDOCLY_SUPPRESS_UPDATE_NOTICE: 'true' } });
  assert.equal(status, 0, stdout + stderr);
}));

test('every reply is described', { timeout: 200_000 }, () => withServer(async (server) => {
  const client = new Client(clients);
  const documents = await Documents.of(server);
  const expect = documents.expecting(client, server.urls);
  for (const prefix of Object.values(sandboxes)) {
    await expect(201, 'provider', `PUT /v1${prefix}`, { body: { seed: 7 } });
    await expect(200, 'backend', `PUT ${prefix}/v1/guests/a@example.com`);
  }
  const requests = new Requests(documents);
  const problems = [];
  const statuses = new Map();
  let made = 0;
  // Good requests come first, so that the rest finds something to act on; each operation's turn comes often.
  const next = () => requests.make(made, seed, ++made <= 3 * requests.count || made % 3 === 0);
  await Promise.all(Array.from({ length: clients }, async () => {
    while (made < count) {
      const request = next();
      const reply = await client.request(request.method, server.urls[request.port] + request.target, request.options);
      statuses.set(reply.status, (statuses.get(reply.status) ?? 0) + 1);
      requests.learn(request, reply);
      const problem = documents.problem(request.port, request.method, request.target, reply) ||
        (reply.status >= 500 && !allowedFailures.includes(reply.body?.error?.code) && 'a failure of the server') ||
        (reply.status === 0 && !isHuge(request) && 'no reply') || '';
      if (problem) {
        problems.push(masked(`${request.port} ${request.method} ${request.target.slice(0, 120)} ${String(request.options.body ?? '').slice(0, 120)}
  → ${reply.status}: ${problem} ${reply.text.slice(0, 300)}`));
      }
    }
  }));
  assert.deepEqual(problems.slice(0, 20), [], `${problems.length} of ${count} replies, seed ${seed}`);
  for (const status of [200, 201, 204, 400, 401, 404, 405, 415, 422]) assert.ok(statuses.get(status), `no reply has had the status ${status}`);
  await expect(200, 'provider', 'GET /v1/sandbox');
  client.close();
}));
