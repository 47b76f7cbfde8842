// What is new, as the server sends it. Runs as a shared worker, so that all pages of a sandbox
// share one connection: browsers open six to a server at most.

/** Calls `notify(kind, data)` for ever. Returns what begins again, with everything that is kept. */
export function follow(notify) {
  let source;
  let retry;
  function open() {
    clearTimeout(retry);
    source?.close();
    source = new EventSource('events');
    source.onopen = () => notify('state', 'live');
    for (const kind of ['timeline', 'stored', 'requests']) {
      source.addEventListener(kind, (event) => notify(kind, JSON.parse(event.data)));
    }
    source.onerror = async () => {
      source.close();
      retry = setTimeout(open, 400);
      const { status } = await fetch('choices').catch(() => ({ status: 0 }));
      notify('state', status === 404 ? 'deleted' : 'lost');
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
