// Two servers behind nginx, as docs/nginx.conf has it.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import { readFileSync, writeFileSync } from 'node:fs';
import net from 'node:net';
import { join } from 'node:path';
import { test } from 'node:test';
import { Documents } from './documents.js';
import { Client, Program, Server } from './server.js';

const publicPorts = { backend: 8081, provider: 8082, console: 8083 };
const host = { Host: 'sandboxes.example' };
const ids = Array.from({ length: 24 }, (_, at) => `team-${String.fromCharCode(97 + at)}`);

/** Ports that nobody has. */
async function freePorts(count) {
  const listeners = await Promise.all(Array.from({ length: count }, async () => {
    const listener = net.createServer().listen(0, '127.0.0.1');
    await once(listener, 'listening');
    return listener;
  }));
  const ports = listeners.map((listener) => listener.address().port);
  await Promise.all(listeners.map((listener) => new Promise((resolve) => { listener.close(resolve); })));
  return ports;
}

class Proxy extends Program {
  urls = {};

  async start(ports, servers) {
    let text = readFileSync(new URL('../../docs/nginx.conf', import.meta.url), 'utf8');
    Object.entries(publicPorts).forEach(([name, port], at) => {
      this.urls[name] = `http://127.0.0.1:${ports[at]}`;
      text = text.replace(`listen ${port};`, `listen 127.0.0.1:${ports[at]};`);
      servers.forEach((server, number) => { text = text.replace(`10.0.0.1${number + 1}:${port}`, new URL(server.urls[name]).host); });
    });
    const temporary = ['client_body', 'proxy', 'fastcgi', 'uwsgi', 'scgi'].map((kind) => `${kind}_temp_path ${this.folder}/${kind};`).join(' ');
    writeFileSync(join(this.folder, 'nginx.conf'), text.replace('http {', `http { access_log off; ${temporary}`));
    const globals = `daemon off; master_process off; pid ${this.folder}/pid; error_log stderr notice;`;
    // It listens by the time that it names how it waits for events.
    await this.run('nginx', ['-e', 'stderr', '-p', this.folder, '-c', 'nginx.conf', '-g', globals], (output) => output.includes('using the "'));
  }
}

test('sandboxes live on the server that their ids hash to', { timeout: 120_000 }, async () => {
  const names = Object.keys(publicPorts);
  const free = await freePorts(9);
  const [ports, ...own] = [0, 3, 6].map((from) => free.slice(from, from + 3));
  const urls = names.flatMap((name, at) => [`--${name}-url`, `http://sandboxes.example:${ports[at]}`]);
  const servers = await Promise.all(own.map(async (mine) => {
    const where = names.flatMap((name, at) => [`--${name}-port`, mine[at]]);
    const server = await new Server('--allow-host', 'sandboxes.example', ...urls, ...where).start();
    // It prints what clients see; here is where it listens.
    names.forEach((name, at) => { server.urls[name] = `http://127.0.0.1:${mine[at]}`; });
    return server;
  }));
  const proxy = new Proxy();
  const client = new Client(32, host);
  try {
    await proxy.start(ports, servers);
    const documents = await Documents.of(servers[0]);
    const call = documents.expecting(client, proxy.urls);
    await Promise.all(ids.map(async (id) => {
      const sandbox = await call(201, 'provider', `PUT /v1/sandboxes/${id}`, { body: { seed: 7 } });
      assert.equal(sandbox.urls.control, `http://sandboxes.example:${ports[1]}/sandboxes/${id}/v1/sandbox`);
      const below = `/sandboxes/${id}`;
      await call(200, 'backend', `PUT ${below}/v1/guests/${id}@example.com`);
      await call(200, 'console', `GET ${below}/v1/sandbox/sides?guest=${id}@example.com`);
    }));
    const lists = await Promise.all(servers.map(({ urls: at }) => documents.expecting(client, at)(200, 'provider', 'GET /v1/sandboxes')));
    const found = lists.map(({ sandboxes }) => sandboxes.map(({ id }) => id).filter((id) => id !== 'default'));
    assert.deepEqual(found.flat().sort(), ids);
    assert.ok(found.every((list) => list.length > 0), 'both servers have sandboxes');
    // A fault is a server's doing on a connection of the proxy's; whoever called learns of it all the same.
    await call(200, 'provider', `POST /sandboxes/${ids[0]}/v1/sandbox/faults`, { body: { operation: 'fetchGuestCreditCards', kind: 'refused' } });
    const broken = await client.request('GET', `${proxy.urls.backend}/sandboxes/${ids[0]}/v1/guests/${ids[0]}@example.com/cards`);
    assert.equal(broken.status, 502);
    const refused = await client.request('POST', `${proxy.urls.provider}/v1/sandboxes`, { body: {} });
    assert.equal(refused.status, 405);
    await documents.expecting(client, servers[0].urls)(403, 'backend', 'GET /openapi.json', { headers: { Host: 'elsewhere.example' } });
    for (const server of servers) assert.equal(await server.end(), 0);
  } finally {
    client.close();
    [proxy, ...servers].forEach((program) => program.abandon());
  }
});
