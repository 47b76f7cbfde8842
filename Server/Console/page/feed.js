// What is new, as the server sends it. Runs as a shared worker, so that all pages of a sandbox
// share one connection: browsers open six to a server at most.

/** Calls `tell(kind, data)` for ever. Returns what begins again, with everything that is kept. */
export function follow(tell) {
  let source;
  let retry;
  function open() {
    clearTimeout(retry);
    source?.close();
    source = new EventSource('events');
    source.onopen = () => tell('state', 'live');
    for (const kind of ['timeline', 'stored', 'requests']) {
      source.addEventListener(kind, (event) => tell(kind, JSON.parse(event.data)));
    }
    source.onerror = async () => {
      source.close();
      retry = setTimeout(open, 400);
      const { status } = await fetch('choices').catch(() => ({ status: 0 }));
      tell('state', status === 404 ? 'deleted' : 'lost');
    };
  }
  return open;
}

if ('SharedWorkerGlobalScope' in globalThis) {
  const pages = new Set();
  const open = follow((kind, data) => pages.forEach((page) => page.postMessage({ kind, data })));
  globalThis.onconnect = ({ ports: [page] }) => {
    pages.add(page);
    page.onmessage = () => pages.delete(page);
    open();
  };
}
