// `paylevenkit serve` in a process of its own, on a store of its own.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const started = new Set();
process.on('exit', () => started.forEach((server) => server.abandon()));

export class Server {
  /** All that it has written since it started. */
  said = '';
  url = '';
  #folder = mkdtempSync(join(tmpdir(), 'console-'));
  #process;

  /** Where a service listens, or the console. */
  urlOf(listener) {
    return new RegExp(`^${listener} +(http\\S+)\n`, 'm').exec(this.said)?.[1] ?? '';
  }

  /** Comes back when the server listens; again on the same store after it has ended. */
  async start() {
    const store = join(this.#folder, 'store.sqlite');
    this.#process = spawn(process.env.PAYLEVENKIT, ['--seed', '7', '--store', store, 'serve'],
      { stdio: ['ignore', 'pipe', 'pipe'] });
    started.add(this);
    this.said = '';
    await new Promise((resolve, reject) => {
      const see = (piece) => {
        this.said += piece;
        this.url = this.urlOf('console');
        if (this.url) resolve();
      };
      this.#process.stdout.on('data', see);
      this.#process.stderr.on('data', see);
      this.#process.on('error', reject);
      this.#process.on('exit', () => reject(new Error('The server ended before it listened.')));
    });
  }

  /** Answers the exit code, which is null after a signal that the server does not see. */
  async end(signal) {
    if (this.#process.exitCode !== null || this.#process.signalCode !== null) return this.#process.exitCode;
    const exit = once(this.#process, 'exit');
    this.#process.kill(signal);
    return (await exit)[0];
  }

  /** Leaves nothing behind. */
  abandon() {
    this.#process.kill('SIGKILL');
    rmSync(this.#folder, { recursive: true, force: true });
    started.delete(this);
  }
}
