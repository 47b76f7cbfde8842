// The sandbox that this page shows, and its neighbours: one dialog.
import { request, root, sandbox } from './connection.js';
import { act, element, find, replaceItems } from './dom.js';

const all = `${root}v1/sandboxes`;
const pageOf = (id) => `${root}sandboxes/${encodeURIComponent(id)}/`;
const clockText = (time) => time.replace('T', ' ').replace('Z', '');

async function everySandbox() {
  const list = [];
  let after = '';
  do {
    const page = await request('GET', `${all}?limit=100${after && `&after=${encodeURIComponent(after)}`}`);
    list.push(...page.sandboxes);
    after = page.next;
  } while (after);
  return list;
}

async function refresh() {
  const [mine, list, { snapshots }] = await Promise.all([
    request('GET', 'v1/sandbox'), everySandbox(), request('GET', `${root}v1/snapshots`)]);
  replaceItems(find('sandboxes'), list.map(({ id, guests, seed }) => element('li', {},
    element('a', { href: pageOf(id), 'data-key': id, 'aria-current': id === sandbox ? 'page' : null }, id),
    element('span', { class: 'hint' }, `${guests} ${guests === 1 ? 'guest' : 'guests'}${seed === null ? '' : ` · seed ${seed}`}`))), find('make'));
  find('clock').textContent = clockText(mine.clock);
  find('seed').textContent = mine.seed ?? 'none: identifiers are random';
  find('lifetime').textContent = [mine.in_memory ? 'in memory only' : 'on disk', mine.expires && `until ${clockText(mine.expires)}`].filter(Boolean).join(', ');
  find('delete-sandbox').disabled = sandbox === 'default';
  const own = snapshots.filter((each) => each.sandbox === sandbox);
  find('no-snapshots').hidden = own.length > 0;
  replaceItems(find('snapshots'), own.map(({ snapshot, created }) => element('li', {},
    element('span', { class: 'grow mono' }, clockText(created)),
    element('button', { type: 'button', class: 'quiet', 'data-key': `restore ${snapshot}`, 'aria-label': `Restore ${clockText(created)}`, onclick: (event) => restore(event.currentTarget, snapshot) }, 'Restore'),
    element('button', { type: 'button', class: 'quiet', 'data-key': `delete ${snapshot}`, 'aria-label': `Delete snapshot ${clockText(created)}`, onclick: (event) => run(event.currentTarget, () => request('DELETE', `${root}v1/snapshots/${snapshot}`), () => 'The snapshot is deleted.') }, 'Delete'))),
  find('take-snapshot'));
}

async function run(button, what, done) {
  await act(button, find('sandbox-outcome'), async () => {
    const result = await what();
    await refresh();
    return result;
  }, done);
}

const takeSnapshot = () => request('POST', 'v1/sandbox/snapshots');
const restored = (snapshot) => request('POST', 'v1/sandbox/restore', { snapshot });

async function restore(button, snapshot) {
  let before;
  await run(button, async () => {
    before = (await takeSnapshot()).snapshot;
    await restored(snapshot);
  }, () => ({ text: 'Restored.', undo: { label: 'Undo', run: () => restored(before).then(refresh), done: 'Back to what it was.' } }));
}

export function listenToSandboxes() {
  const onClick = (id, what, done) => find(id).addEventListener('click', ({ currentTarget }) => run(currentTarget, what, done));
  find('open-sandbox').addEventListener('click', ({ currentTarget }) => {
    find('sandbox-dialog').showModal();
    run(currentTarget, () => null, () => '');
  });
  find('close-sandbox').addEventListener('click', () => find('sandbox-dialog').close());
  onClick('take-snapshot', takeSnapshot, () => 'The snapshot is taken.');
  find('make-form').addEventListener('submit', (event) => {
    event.preventDefault();
    const { id, seed, memory } = event.target.elements;
    run(event.submitter, () => request('POST', all, {
      ...(id.value && { id: id.value }), ...(seed.value && { seed: seed.valueAsNumber }), in_memory: memory.checked,
    }), (made) => `Made ${made.id}. Its console is in the list above.`);
  });
  find('clock-form').addEventListener('submit', (event) => {
    event.preventDefault();
    const { amount, unit } = event.target.elements;
    run(event.submitter, () => request('PUT', 'v1/sandbox/clock', { advance_seconds: amount.valueAsNumber * Number(unit.value) }),
      ({ now }) => `The sandbox's clock reads ${clockText(now)}.`);
  });
  let before;
  onClick('reset', async () => {
    before = (await takeSnapshot()).snapshot;
    await request('POST', 'reset');
  }, () => ({ text: 'Guests, cards, instruments, faults and the timeline are forgotten.', undo: { label: 'Undo', run: () => restored(before).then(refresh), done: 'Back to what it was.' } }));
  find('delete-sandbox').addEventListener('click', ({ currentTarget }) => {
    if (!confirm(`Delete the sandbox ${sandbox} with everything in it?`)) return;
    act(currentTarget, find('sandbox-outcome'), () => request('DELETE', `${all}/${encodeURIComponent(sandbox)}`), () => {
      location.href = root;
      return 'Deleted.';
    });
  });
}
