// What is new, as the server sends it. Runs as a shared worker, so that all pages of a browser share
// one connection, whatever their sandboxes: browsers open six to a server at most.

/**
 * Calls `notify(kind, data)` for ever with what is new in the sandboxes that `wanted()` names.
 * Returns what begins again, with everything that is kept.
 */
export function follow(wanted, notify) {
  let source;
  let retry;
  return function open() {
    clearTimeout(retry);
    source?.close();
    source = new EventSource(`events?sandbox=${encodeURIComponent(wanted())}`);
    for (const kind of ['state', 'timeline', 'stored', 'requests']) {
      source.addEventListener(kind, (event) => notify(kind, JSON.parse(event.data)));
    }
    source.onerror = () => {
      source.close();
      retry = setTimeout(open, 400);
      notify('state', { state: 'lost' });
    };
  };
}

if ('SharedWorkerGlobalScope' in globalThis) {
  /** Each with its sandbox. */
  const pages = new Map();
  const open = follow(() => [...new Set(pages.values())], (kind, data) => {
    for (const [page, sandbox] of pages) if (sandbox === (data.sandbox ?? sandbox)) page.postMessage({ kind, data });
  });
  globalThis.onconnect = ({ ports: [page] }) => {
    page.onmessage = ({ data: sandbox }) => {
      if (sandbox === null) return pages.delete(page);
      pages.set(page, sandbox);
      open();
    };
  };
}
