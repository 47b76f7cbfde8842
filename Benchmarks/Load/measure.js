// The server in a process of its own, and what measures it.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';
import { Client, Server } from '../../Tests/Server/server.js';

export const run = promisify(execFile);
export const guest = '/v1/guests/guest@example.com';
const inMilliseconds = { us: 0.001, ms: 1, s: 1_000, m: 60_000 };

export const range = (count) => Array.from({ length: count }, (_, at) => at);
export const sorted = (numbers) => [...numbers].sort((one, other) => one - other);
export const median = (numbers) => sorted(numbers)[Math.floor(numbers.length / 2)];
/** A number in letters, so that none looks like a card number. */
export const letters = (number) => String(number).replace(/\d/g, (digit) => 'abcdefghij'[digit]);

/** Requests of one thread over so many connections: how many per second, and the slowest hundredth in ms. Every reply has to be one of success. */
export async function wrk(url, seconds, connections, { script, given = [], headers = [] } = {}) {
  const options = ['-t1', `-c${connections}`, `-d${seconds}s`, '--latency', '--timeout', '20s', ...headers.flatMap((header) => ['-H', header])];
  if (script) options.push('-s', fileURLToPath(new URL(script, import.meta.url)));
  const { stdout } = await run('wrk', [...options, url, '--', ...given]);
  assert.doesNotMatch(stdout, /Non-2xx|Socket errors/, url);
  const [, p99, unit] = /99%\s+([\d.]+)(us|ms|s|m)/.exec(stdout);
  return { perSecond: Number(/Requests\/sec:\s+([\d.]+)/.exec(stdout)[1]), p99: p99 * inMilliseconds[unit] };
}

/** Runs `body` with a fresh server and `wanted`, which returns the body of a reply that has to have a status. */
export async function withServed(body, ...options) {
  const server = await new Server(...options).start();
  const client = new Client();
  try {
    await body({
      server,
      async wanted(status, port, request, sent = {}, headers = {}) {
        const [method, target] = request.split(' ');
        const reply = await client.request(method, server.urls[port] + target, { body: sent, headers });
        assert.equal(reply.status, status, `${request}: ${reply.text}`);
        return reply.body;
      },
      /** What it has in memory, in MiB. */
      memory: () => /VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${server.pid}/status`, 'utf8'))[1] / 1_024,
      /** What it has used; Linux counts hundredths. */
      processorSeconds() {
        const fields = readFileSync(`/proc/${server.pid}/stat`, 'utf8').split(') ')[1].split(' ');
        return (Number(fields[11]) + Number(fields[12])) / 100;
      },
    });
    // It has thousands of files to close.
    assert.equal(await server.end('SIGTERM', 60_000), 0, 'the server did not end as it should');
  } finally {
    client.close();
    server.abandon();
  }
}
