// The connection to the server: requests, and the feed of what is new.
import { follow } from './feed.js';

/** What a request was refused for, in one sentence. */
export class Problem extends Error {}

const place = /^(.*\/)sandboxes\/([^/]+)\/$/.exec(location.pathname);
/** Where the resources of all sandboxes are. */
export const root = place?.[1] ?? '/';
export const sandbox = place?.[2] ?? 'default';

/** Returns the body of the reply. A relative path is this sandbox's. Throws Problem. */
export async function request(method, path, body = {}) {
  const content = { headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(body) };
  const reply = await fetch(path, { method, ...(!['GET', 'DELETE'].includes(method) && content) }).catch(() => {
    throw new Problem('No reply came: the server is gone, or the call never ends.');
  });
  const json = reply.status === 204 ? null : await reply.json();
  if (!reply.ok) throw new Problem(json.error.message || json.error.code);
  return json;
}

/** Calls the handler of each kind with what comes. The first of each kind is the whole. */
export function listen(handlers) {
  const notify = (kind, data) => handlers[kind](data);
  if (!('SharedWorker' in globalThis)) return follow(() => sandbox, notify)();
  const { port } = new SharedWorker(`${root}feed.js`, { type: 'module' });
  port.onmessage = ({ data: { kind, data } }) => notify(kind, data);
  port.postMessage(sandbox);
  // A page may come back as it was left.
  addEventListener('pagehide', () => port.postMessage(null));
  addEventListener('pageshow', ({ persisted }) => { if (persisted) port.postMessage(sandbox); });
}
