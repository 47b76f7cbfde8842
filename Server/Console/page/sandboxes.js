// The sandbox that this page shows, and its neighbours: one dialog.
import { request, root, sandbox } from './connection.js';
import { act, element, find, onClick, onSubmit, quiet, showList, valuesOf } from './dom.js';

const all = `${root}v1/sandboxes`;
const pageOf = (id) => `${root}sandboxes/${encodeURIComponent(id)}/`;
const clockText = (time) => time.replace('T', ' ').replace('Z', '');

async function refresh() {
  const [mine, { sandboxes, next }, { snapshots }] = await Promise.all([
    request('GET', 'v1/sandbox'), request('GET', `${all}?limit=1000`), request('GET', `${root}v1/snapshots`)]);
  showList(find('sandboxes'), sandboxes, ({ id, problem, guests, seed }) => element('li', {},
    element('a', { href: pageOf(id), 'data-key': id, 'aria-current': id === sandbox ? 'page' : null }, id),
    element('span', { class: 'hint' }, problem ?? `${guests} ${guests === 1 ? 'guest' : 'guests'}${seed === null ? '' : ` · seed ${seed}`}`)), find('make'));
  find('sandbox-count').textContent = next ? 'The first thousand of this server' : 'All of this server';
  find('clock').textContent = clockText(mine.clock);
  find('seed').textContent = mine.seed ?? 'none: identifiers are random';
  find('lifetime').textContent = [mine.in_memory ? 'in memory only' : 'on disk', mine.expires && `until ${clockText(mine.expires)}`].filter(Boolean).join(', ');
  find('delete-sandbox').disabled = sandbox === 'default';
  const own = snapshots.filter((each) => each.sandbox === sandbox);
  showList(find('snapshots'), own, ({ snapshot, created }) => element('li', {},
    element('span', { class: 'grow mono' }, clockText(created)),
    quiet('Restore', `Restore ${clockText(created)}`, `restore ${snapshot}`, (button) => undoably(button, () => restored(snapshot), 'Restored.')),
    quiet('Delete', `Delete snapshot ${clockText(created)}`, `delete ${snapshot}`, (button) =>
      run(button, () => request('DELETE', `${root}v1/snapshots/${snapshot}`), () => 'The snapshot is deleted.'))),
  find('take-snapshot'));
}

async function run(button, what, done) {
  await act(button, async () => {
    const result = await what();
    await refresh();
    return result;
  }, done);
}

const takeSnapshot = () => request('POST', 'v1/sandbox/snapshots');
const restored = (snapshot) => request('POST', 'v1/sandbox/restore', { snapshot });

/** What it replaces stays as a snapshot. */
async function undoably(button, what, text) {
  let before;
  await run(button, async () => {
    before = (await takeSnapshot()).snapshot;
    await what();
  }, () => ({ text, undo: { run: () => restored(before).then(refresh), done: 'Back to what it was.' } }));
}

export function startSandboxes() {
  find('sandbox-dialog').addEventListener('toggle', ({ target }) => run(target, () => null, () => ''));
  onClick('take-snapshot', (button) => run(button, takeSnapshot, () => 'The snapshot is taken.'));
  onSubmit('make-form', (button) =>
    run(button, () => request('POST', all, valuesOf(find('make-form'))), (made) => `Made ${made.id}. Its console is in the list above.`));
  onSubmit('clock-form', (button) => {
    const { amount, unit } = valuesOf(find('clock-form'));
    run(button, () => request('PUT', 'v1/sandbox/clock', { advance_seconds: amount * Number(unit) }), ({ now }) => `The sandbox's clock reads ${clockText(now)}.`);
  });
  onClick('reset', (button) => undoably(button, () => request('POST', 'reset'), 'Guests, cards, instruments, faults and the timeline are forgotten.'));
  onClick('delete-sandbox', (button) => {
    if (!confirm(`Delete the sandbox ${sandbox} with everything in it?`)) return;
    act(button, () => request('DELETE', `${all}/${encodeURIComponent(sandbox)}`), () => {
      location.href = root;
      return 'Deleted.';
    });
  });
}
