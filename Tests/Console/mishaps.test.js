// What goes wrong, on purpose: faults, drift, and a server that dies.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

const cannotBeReached = 'The service cannot be reached.';
const faults = [
  { kind: 'refused', told: cannotBeReached },
  { kind: 'reset', told: 'The connection ended before the service had answered.' },
  { kind: 'garbage', told: 'What the service answered cannot be read.' },
  { kind: 'error', listed: 'createUserToken: error, code 500, once', told: 'as the armed fault demands' },
  { kind: 'never', told: 'The kit has not answered: the story shows where it waits.' },
  { kind: 'delay', delay: 120, listed: 'createUserToken: delay, 120 ms, once', told: 'Added visa •••• 1111.' },
];

onConsole('an armed fault is listed, fires in the story, and is told at the form', async (guest) => {
  await guest.signIn();
  for (const { kind, delay, told, listed = `createUserToken: ${kind}, once` } of faults) {
    await guest.arm('createUserToken', kind, { delay });
    await sees(guest.truth.getByRole('listitem').filter({ hasText: listed }));
    await guest.add();
    await guest.told(told);
    await guest.seesStep(`fault '${kind}' met createUserToken`);
    await sees(guest.truth.getByText('No fault is armed.'));
  }
  await seesCount(guest.cards, 1);
});

onConsole('faults last as they are told to, and one that cannot be is refused', async (guest) => {
  await guest.signIn();
  await guest.arm('createUserToken', 'refused', { often: 'always' });
  for (let time = 0; time < 2; ++time) {
    await guest.add();
    await guest.told(cannotBeReached);
  }
  await sees(guest.truth.getByRole('listitem').filter({ hasText: 'createUserToken: refused, always' }));
  await guest.button('Disarm all').click();
  await sees(guest.truth.getByText('No fault is armed.'));
  await guest.arm('createUserToken', 'cut');
  await sees(guest.truth.getByRole('listitem').filter({ hasText: 'createUserToken: cut, after 100 bytes, once' }));
  await guest.arm('deleteCreditCardWithID', 'no-token');
  await sees(guest.truth.getByRole('alert').filter({ hasText: 'makes no sense for deleteCreditCardWithID' }));
});

const agree = 'Both sides agree.';
const scenes = [
  { name: 'instrument without card', rows: [1, 1], seen: '1 does not match.', mended: [1, 0], left: agree },
  { name: 'half deleted', rows: [0, 1], seen: '1 does not match.', mended: [0, 0], left: agree },
  { name: 'same card twice', rows: [1, 1], seen: '1 does not match.', mended: [1, 0], left: agree },
  { name: 'card without instrument', rows: [0, 1], seen: '1 does not match.', mended: [0, 1], left: '1 does not match.' },
  { name: 'lost token', rows: [1, 0], seen: 'The backend has no token', mended: [1, 0], left: 'The backend has no token' },
];

for (const { name, rows, seen, mended, left } of scenes) {
  onConsole(`drift is marked until the kit has mended what it can: ${name}`, async (guest) => {
    const seesBoth = async (verdict, [matched, drifted]) => {
      await sees(guest.verdict.filter({ hasText: verdict }));
      await seesCount(guest.matched, matched);
      await seesCount(guest.drifted, drifted);
    };
    await guest.settleIn();
    await guest.makeScene(name);
    await seesBoth(seen, rows);
    await guest.comeToForeground();
    // A page that begins now shows what came of it, and no earlier state.
    await guest.page.reload();
    await seesBoth(left, mended);
  });
}

onConsole('a page survives the death of its server, and goes on with its successor', async (guest, server) => {
  await guest.settleIn();
  await server.end('SIGKILL');
  await sees(guest.connection.filter({ hasText: 'The server is gone.' }));
  const before = server.url;
  await server.start();
  assert.equal(server.url, before);
  await sees(guest.connection.filter({ hasText: 'Live' }));
  await guest.add({ card: 'mastercard', useCase: 'private' });
  await guest.told('Added mastercard •••• 4444.');
  await seesCount(guest.cards, 2);
  await seesCount(guest.matched, 2);
});

onConsole('a reset forgets everything once it is confirmed', async (guest) => {
  await guest.settleIn();
  await guest.arm('createUserToken', 'refused');
  guest.page.once('dialog', (dialog) => dialog.accept());
  await guest.button('Reset everything').click();
  await sees(guest.truth.getByText('Nobody is signed in.'));
  await sees(guest.truth.getByText('No fault is armed.'));
  await seesCount(guest.operations.filter({ hasText: 'add' }), 0);
  await guest.settleIn();
});
