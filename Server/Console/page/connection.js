// The way to the server: requests, and the story as it comes in.

/** What a request was refused for, in one sentence. */
export class Problem extends Error {}

/** Returns the body of the reply. The path begins at the page: each sandbox has a page. Throws Problem. */
export async function request(method, path, body) {
  const options = { method, headers: {} };
  if (method === 'POST' || method === 'PATCH' || body !== undefined) {
    options.headers['Content-Type'] = 'application/json';
    options.body = JSON.stringify(body ?? {});
  }
  let answer;
  try {
    answer = await fetch(path, options);
  } catch {
    throw new Problem('No answer came: the server is gone, or the call never ends.');
  }
  const json = answer.status === 204 ? null : await answer.json();
  if (!answer.ok) throw new Problem(json.error.message || json.error.code);
  return json;
}

/**
 * Listens for ever. A server that has gone is looked for every second; the first story after that
 * is the whole one again.
 */
export function listen({ story, truth, state }) {
  const source = new EventSource('events');
  source.onopen = () => state('live');
  source.addEventListener('story', (event) => story(JSON.parse(event.data)));
  source.addEventListener('truth', (event) => truth(JSON.parse(event.data)));
  source.onerror = () => {
    source.close();
    state('lost');
    setTimeout(() => listen({ story, truth, state }), 1000);
  };
}
