// Two servers behind nginx, as docs/nginx.conf has it.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import net from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { Documents } from './documents.js';
import { Client, connect, inTime, newCard, patience, registeredCard, Server } from './server.js';

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

class Proxy {
  urls = {};
  output = '';
  #folder = mkdtempSync(join(tmpdir(), 'nginx-'));
  #process;

  async start(ports, servers) {
    let text = readFileSync(new URL('../../docs/nginx.conf', import.meta.url), 'utf8');
    for (const [name, port] of Object.entries(publicPorts)) {
      const mine = ports.shift();
      this.urls[name] = `http://127.0.0.1:${mine}`;
      text = text.replace(`listen ${port};`, `listen 127.0.0.1:${mine};`);
      servers.forEach((server, at) => { text = text.replace(`10.0.0.1${at + 1}:${port}`, new URL(server.urls[name]).host); });
    }
    const temporary = ['client_body', 'proxy', 'fastcgi', 'uwsgi', 'scgi'].map((kind) => `${kind}_temp_path ${this.#folder}/${kind};`).join(' ');
    writeFileSync(join(this.#folder, 'nginx.conf'), text.replace('http {', `http { access_log off; ${temporary}`));
    const globals = `daemon off; master_process off; pid ${this.#folder}/pid; error_log stderr;`;
    this.#process = spawn('nginx', ['-e', 'stderr', '-p', this.#folder, '-c', 'nginx.conf', '-g', globals], { stdio: ['ignore', 'ignore', 'pipe'] });
    this.#process.stderr.on('data', (piece) => { this.output += piece; });
    this.#process.on('error', (error) => { this.output += error; });
    const deadline = Date.now() + patience;
    const listens = () => connect(this.urls.console).then((socket) => socket.destroy(), () => undefined);
    while (!await listens()) assert.ok(Date.now() < deadline && this.#process.exitCode === null, `nginx does not start: ${this.output}`);
  }

  async end() {
    if (this.#process.exitCode === null && this.#process.signalCode === null) {
      const exit = once(this.#process, 'exit');
      this.#process.kill('SIGTERM');
      await inTime(exit, 'nginx ends');
    }
    rmSync(this.#folder, { recursive: true, force: true });
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
  const client = new Client(32);
  try {
    const publicBase = { provider: `http://sandboxes.example:${ports[1]}` };
    await proxy.start([...ports], servers);
    const documents = await Documents.of(servers[0]);
    const call = async (status, port, request, options = {}, base = proxy.urls[port]) => {
      const [method, target] = request.split(' ');
      const reply = await client.request(method, base + target, { ...options, headers: { ...host, ...options.headers } });
      assert.equal(reply.status, status, `${request}: ${reply.text.slice(0, 300)} ${proxy.output}`);
      assert.equal(documents.problem(port, method, target, reply), '', request);
      return reply.body;
    };
    await Promise.all(ids.map(async (id) => {
      const sandbox = await call(201, 'provider', `PUT /v1/sandboxes/${id}`, { body: { seed: 7 } });
      assert.equal(sandbox.urls.control, `${publicBase.provider}/sandboxes/${id}/v1/sandbox`);
      const below = `/sandboxes/${id}`;
      const { session } = await call(200, 'backend', `PUT ${below}/v1/guests/a@example.com`);
      const headers = { Authorization: `Bearer ${session}` };
      await call(201, 'provider', `POST ${below}/v1/users`, { body: { email: 'a@example.com', use_case: 'default', credit_card: newCard() } });
      await call(201, 'backend', `POST ${below}/v1/guests/a@example.com/cards`, { headers, body: registeredCard(`ins_${id}`) });
      const sides = await call(200, 'console', `GET ${below}/v1/sandbox/sides?guest=a@example.com`);
      assert.deepEqual(sides.credit_cards.map((card) => card.external_identifier), [`ins_${id}`]);
    }));
    const lists = await Promise.all(servers.map((server) => call(200, 'provider', 'GET /v1/sandboxes', {}, server.urls.provider)));
    const found = lists.map(({ sandboxes }) => sandboxes.map(({ id }) => id).filter((id) => id !== 'default'));
    assert.deepEqual(found.flat().sort(), ids);
    assert.ok(found.every((list) => list.length > 0), 'both servers have sandboxes');
    // A fault is a server's doing on a connection of the proxy's; whoever called learns of it all the same.
    await call(200, 'provider', `POST /sandboxes/${ids[0]}/v1/sandbox/faults`, { body: { operation: 'fetchGuestCreditCards', kind: 'refused' } });
    const broken = await client.request('GET', `${proxy.urls.backend}/sandboxes/${ids[0]}/v1/guests/a@example.com/cards`, { headers: host });
    assert.equal(broken.status, 502);
    const refused = await client.request('POST', `${proxy.urls.provider}/v1/sandboxes`, { body: {}, headers: host });
    assert.equal(refused.status, 405);
    await call(403, 'backend', 'GET /openapi.json', { headers: { Host: 'elsewhere.example' } }, servers[0].urls.backend);
    for (const server of servers) assert.equal(await server.end(), 0);
  } finally {
    client.close();
    await proxy.end();
    servers.forEach((server) => server.abandon());
  }
});
