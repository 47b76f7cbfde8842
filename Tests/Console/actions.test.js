// Every action of the page, at each size: its result is in sight when it comes, and nothing lies on something else.
import assert from 'node:assert/strict';
import { atEachSize } from './stage.js';

const region = (name) => (page) => page.getByRole('region', { name, exact: true });
const button = (name) => (page) => page.getByRole('button', { name, exact: true });
const dialog = (page) => page.getByRole('dialog');
const form = (page) => page.getByRole('combobox', { name: 'Call', exact: true });
const diagram = region('Sequence diagram');
const always = 'createUserToken: error, code 500, always';
const edited = 'createUserToken: error, code 500, status 503, always';

/** A role, a name, what is said beside it or shows what came of it, and what is filled in before. */
const actions = [
  ['button', 'half deleted', 'Nobody is signed in.'],
  ['button', 'Sign in', 'Signed in.', { 'E-mail address': `${'a.long.name.'.repeat(4)}@example.com` }],
  ['button', 'Sign out', 'Signed out.'],
  ['button', 'Undo', 'Signed in again.'],
  ['switch', 'Network', 'The network is off.'],
  ['button', 'Add card', 'No network connection is available. (HLVURLErrorDomain 1)'],
  ['switch', 'Network', 'The network is on.'],
  ['button', 'Arm', 'Armed createUserToken: never, once.', { Call: 'createUserToken', 'What happens': 'never' }],
  ['button', 'Add card', 'The kit has not called the completion'],
  ['button', 'Arm', `Armed ${always}.`, { 'What happens': 'error', Times: '' }],
  ['button', 'Add card', 'as the armed fault demands'],
  ['button', `Edit ${always}`, form],
  ['button', 'Cancel', button('Arm')],
  ['button', `Edit ${always}`, form],
  ['button', 'Save', `Changed ${edited}.`, { 'HTTP status': '503' }],
  ['button', 'Arm', 'Armed deleteCreditCardWithID: cut, after 100 bytes, once.', { Call: 'deleteCreditCardWithID', 'What happens': 'cut' }],
  ['button', `Remove ${edited}`, `Removed ${edited}.`],
  ['button', 'Undo', 'Armed again.'],
  ['button', 'Disarm all', 'Removed 2 faults.'],
  ['button', 'Add card', 'Added visa •••• 1111.'],
  ['button', 'Update address of visa •••• 1111', dialog],
  ['button', 'Cancel', button('Add card')],
  ['button', 'Update address of visa •••• 1111', dialog],
  ['button', 'Update', 'The billing address is changed.', { Postcode: 'A' }],
  ['button', 'Delete visa •••• 1111', 'Deleted visa •••• 1111.'],
  ['button', 'half deleted', /no card/],
  ['button', 'Add card', 'no card came back', { Card: 'backend-refused' }],
  ['button', 'Add card', 'Added mastercard •••• 4444.', { Card: 'mastercard' }],
  ...['same card twice', 'instrument without card', 'card without instrument', 'half deleted', 'lost token'].map((name) =>
    ['button', name, `Done: ${name}.`]),
  ['button', 'Come to the foreground', 'The app came to the foreground.'],
  ['link', 'Show in the timeline', diagram],
  ['link', /add.*failed/, diagram],
  ['link', /add.*succeeded/, diagram],
  ['checkbox', 'time to scale', diagram],
  ['button', 'Pause', button('Resume')],
  ['button', 'Resume', button('Pause')],
  ['link', 'Requests', region('Requests, newest first')],
  ['link', '/app/foreground', region('The chosen request')],
  ['button', 'Copy as curl', 'Copied.'],
  ['button', 'Close', region('Requests, newest first')],
  ['button', 'Export HAR', /Exported \d+ requests/],
  ['button', 'Sandbox: default', dialog],
  ['button', 'Make', 'Made beside.', { Name: 'beside', Seed: '11' }],
  ['button', 'Move', /clock reads 21\d\d-/, { 'Move clock forwards': '40000' }],
  ['button', 'Take a snapshot', 'The snapshot is taken.'],
  ['button', 'Reset everything', 'are forgotten'],
  ['button', 'Undo', 'Back to what it was.'],
  ['button', /^Restore/, 'Restored.'],
  ['button', /^Delete snapshot/, 'The snapshot is deleted.'],
  ['button', 'Close', button('Export HAR')],
];

/** What lies on something else of those that are scrolled together, a page that is too wide, and a focus that is lost or not seen. */
const flaws = () => {
  const place = document.querySelector(':modal') ? ':modal' : 'main';
  const groups = ['header > *', `${place} :is(label, button:not(.outcome *), h2, h3)`, '#diagram :is(.label, .when) > span'];
  const found = groups.flatMap((group) => {
    const boxes = [...document.querySelectorAll(group)].filter((part) => part.checkVisibility())
      .map((part) => ({ text: part.innerText, box: part.getBoundingClientRect() })).filter(({ box }) => box.width > 1);
    return boxes.flatMap((one, index) => boxes.slice(index + 1)
      .filter(({ box }) => box.left < one.box.right - 1 && one.box.left < box.right - 1 && box.top < one.box.bottom - 3 && one.box.top < box.bottom - 3)
      .map((other) => `${one.text} / ${other.text}`));
  });
  if (document.documentElement.scrollWidth > innerWidth) found.push('the page is too wide');
  const { activeElement: focused } = document;
  if (focused === document.body) found.push('the focus is lost');
  if (focused.matches(':focus-visible') && getComputedStyle(focused).outlineStyle !== 'solid') found.push('the focus is not seen');
  return found;
};

atEachSize('the result of every action is in sight', async (guest, server, open, { width }) => {
  const { page } = guest;
  await page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  for (const [role, name, result, fields = {}] of actions) {
    for (const [label, value] of Object.entries(fields)) {
      const [choice, number, text] = ['combobox', 'spinbutton', 'textbox'].map((kind) => page.getByRole(kind, { name: label, exact: true }));
      if (await choice.count() > 0) await choice.selectOption(value);
      else await number.or(text).fill(value);
    }
    const acted = page.getByRole(role, { name, exact: true }).first();
    if (width === 1440) await acted.press(['switch', 'checkbox'].includes(role) ? 'Space' : 'Enter');
    else await acted.click();
    await (typeof result === 'function' ? guest.seesInSight(result(page)) : guest.sees(result));
    assert.deepEqual(await page.evaluate(flaws), [], `after ${name}`);
  }
});
