// `paylevenkit serve` in a process of its own, and clients that keep their connections.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, readdirSync, readFileSync, rmSync } from 'node:fs';
import http from 'node:http';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

/** Of the modules that in-node.sh has installed, which are not beside these files. */
export const require = createRequire(join(process.env.TEST_MODULES, 'installed-by'));

const started = new Set();
process.on('exit', () => started.forEach((server) => server.abandon()));
process.once('SIGTERM', () => process.exit(1));

/** No wait ends a test that works; each only keeps one that hangs from hanging for ever. */
const patience = 20_000;
/** An open connection once kept the server for ten seconds; it has one to end in. Sanitizers and a busy machine have the rest. */
const timeToEnd = 5_000;

/** Nothing that a test prints shows a card number. */
export const masked = (text) => String(text).replace(/\d(?:[ -]?\d){11,}/g, '(a long number)');

export const testNumbers = readFileSync(new URL('../../Sandbox/Cards/TestCards.cpp', import.meta.url), 'utf8').match(/\b\d{14,19}\b/g);
/** More of a test card's number than may be left anywhere. */
export const cardData = new RegExp(testNumbers
  .flatMap((number) => Array.from({ length: number.length - 7 }, (_, at) => [...number.slice(at, at + 8)].join('[ _./-]*'))).join('|'));

/** `promise`, or a failure that names what did not come. */
export function inTime(promise, what, milliseconds = patience) {
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`nothing in time: ${masked(what)}`)), milliseconds);
  });
  return Promise.race([promise, late]).finally(() => clearTimeout(timer));
}

/** A program in a process and a folder of its own. */
export class Program {
  /** All that it has written. */
  output = '';
  folder = mkdtempSync(join(tmpdir(), 'server-'));
  #process;

  /** Starts it, and calls `onOutput` with each piece of what it writes. */
  spawn(command, args, cwd, onOutput = () => {}) {
    this.output = '';
    this.#process = spawn(command, args, { cwd, stdio: ['ignore', 'pipe', 'pipe'] });
    started.add(this);
    for (const stream of [this.#process.stdout, this.#process.stderr]) {
      stream.on('data', (piece) => {
        this.output += piece;
        onOutput();
      });
    }
    return this.#process;
  }

  /** Starts it, and waits until `isReady` takes what it has written. */
  async run(command, args, isReady) {
    const ready = new Promise((resolve, reject) => {
      const process = this.spawn(command, args, undefined, () => { if (isReady(this.output)) resolve(); });
      process.on('error', reject);
      process.on('exit', () => reject(new Error(`${command} ended before it was ready: ${masked(this.output)}`)));
    });
    await inTime(ready, `${command} starts`);
    return this;
  }

  get pid() {
    return this.#process.pid;
  }

  get hasEnded() {
    return this.#process.exitCode !== null || this.#process.signalCode !== null;
  }

  /** Returns the exit code, which is null after a signal that it does not handle. */
  async end(signal = 'SIGTERM', milliseconds = timeToEnd) {
    if (!this.hasEnded) {
      const exit = once(this.#process, 'exit');
      this.#process.kill(signal);
      await inTime(exit, `the end after ${signal}`, milliseconds);
    }
    return this.#process.exitCode;
  }

  /** What it has written, by its place. */
  get left() {
    const files = readdirSync(this.folder, { recursive: true, withFileTypes: true }).filter((entry) => entry.isFile());
    return Object.fromEntries([['output', this.output], ...files.map(({ path, parentPath = path, name }) => [name, readFileSync(join(parentPath, name), 'latin1')])]);
  }

  /** Leaves nothing behind. */
  abandon() {
    this.#process?.kill('SIGKILL');
    rmSync(this.folder, { recursive: true, force: true });
    started.delete(this);
  }
}

export class Server extends Program {
  /** Base URLs of the default sandbox: `backend`, `provider`, `console`. */
  urls = {};
  #options;

  /** With further options of `serve`. Started again, it is on the same store. */
  constructor(...options) {
    super();
    this.#options = options;
  }

  async start() {
    // Where a limit stops a file that grows, it is an error as on a full disk.
    await this.run('sh', ['-c', 'trap "" XFSZ; exec "$0" "$@"', process.env.PAYLEVENKIT, '--seed', '7', '--store', join(this.folder, 'store.sqlite'), 'serve', ...this.#options],
      (output) => /^console .*\n/m.test(output));
    for (const [, name, url] of this.output.matchAll(/^(backend|provider|console) +(http\S+)\n/gm)) this.urls[name] = url;
    return this;
  }
}

/** Runs `body` with a fresh server, which then has to end as it should. */
export async function withServer(body, ...options) {
  const server = await new Server(...options).start();
  try {
    await body(server);
    if (server.hasEnded) throw new Error(`The server has ended: ${masked(server.output)}`);
    const code = await server.end();
    if (code !== 0) throw new Error(`The server ended with ${code}: ${masked(server.output)}`);
    for (const [place, text] of Object.entries(server.left)) if (cardData.test(text)) throw new Error(`a card number in ${place}`);
  } catch (error) {
    throw new Error(masked(`${error.stack}\n— the server's output: ${server.output.slice(-4_000)}`));
  } finally {
    server.abandon();
  }
}

export class Client {
  #agent;
  #headers;

  /** Keeps as many connections as requests are under way at once, up to `connections`; each request has `headers`. */
  constructor(connections = 8, headers = {}) {
    this.#agent = new http.Agent({ keepAlive: true, maxSockets: connections, maxFreeSockets: connections });
    this.#headers = headers;
  }

  /** How many are kept of those that are not in use. */
  get connections() {
    return Object.values(this.#agent.freeSockets).flat().length;
  }

  close() {
    this.#agent.destroy();
  }

  /**
   * Returns `{status, headers, text, body}`, where `body` is undefined unless the text is JSON, and the status is 0
   * when the connection ended without a reply. `body` may be a text, bytes, or what JSON can hold.
   */
  request(method, url, { body, headers = {} } = {}) {
    const isRaw = body === undefined || typeof body === 'string' || Buffer.isBuffer(body);
    const bytes = isRaw ? Buffer.from(body ?? '') : Buffer.from(JSON.stringify(body));
    const { hostname, port } = new URL(url);
    // Taken as it is, not as URL would tidy it up.
    const path = url.slice(url.indexOf('/', url.indexOf('//') + 2));
    const all = { 'X-API-Key': 'any', 'Content-Length': bytes.length, ...this.#headers, ...headers };
    if (body !== undefined && !('Content-Type' in all)) all['Content-Type'] = 'application/json';
    for (const [name, value] of Object.entries(all)) if (value === undefined) delete all[name];
    const reply = new Promise((resolve, reject) => {
      const sent = http.request({ agent: this.#agent, hostname, port, path, method, headers: all }, (response) => {
        const pieces = [];
        response.on('data', (piece) => pieces.push(piece));
        response.on('error', () => resolve({ status: 0, headers: {}, text: '' }));
        response.on('end', () => resolve(readReply(response, Buffer.concat(pieces).toString())));
      });
      sent.on('error', (error) => {
        if (['ECONNRESET', 'EPIPE'].includes(error.code)) resolve({ status: 0, headers: {}, text: '' });
        else reject(error);
      });
      sent.end(bytes);
    });
    return inTime(reply, `${method} ${path.slice(0, 100)}`);
  }
}

function readReply({ statusCode, headers }, text) {
  const reply = { status: statusCode, headers, text };
  if (headers['content-type']?.startsWith('application/json')) {
    try {
      reply.body = JSON.parse(text);
    } catch {
      // Left undefined.
    }
  }
  return reply;
}

/** As the provider takes it; a published test number, never printed. */
export const newCard = (number = `4${'1'.repeat(15)}`) =>
  ({ number, expiry_month: '12', expiry_year: '2099', security_code: '123', card_holder: 'A Guest' });

/** As the backend takes it. */
export const registeredCard = (identifier) => ({
  credit_card: {
    last_four_digits: '1111', brand: 'visa', use_case: 'default', external_identifier: identifier,
    card_holder: 'A Guest', expiry_month: '12', expiry_year: '2099',
  },
  provider: 0,
});
