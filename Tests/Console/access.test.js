// The page for everybody: at each size, without a mouse, without eyes, in the dark.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { sees, seesCount } from './person.js';
import { atEachSize, onConsole } from './stage.js';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core'), 'utf8');

onConsole('a guest signs in, and adds, changes and deletes a card by keyboard alone', async (guest) => {
  const { keyboard } = guest.page;
  const press = async (locator, key) => {
    await guest.tabTo(locator);
    await keyboard.press(key);
  };
  /** The result comes, and the focus is where the next key is expected. */
  const leads = async (locator, key, sentence, focused = locator) => {
    await press(locator, key);
    await guest.sees(sentence);
    await sees(focused.and(guest.page.locator(':focus')));
  };
  await leads(guest.app.getByLabel('E-mail address'), 'Enter', 'Signed in.');
  const network = guest.app.getByRole('switch', { name: 'Network' });
  await leads(network, 'Space', 'The network is off.');
  await leads(network, 'Space', 'The network is on.');
  await press(guest.app.getByRole('combobox', { name: 'Card' }), 'm');
  await leads(guest.button('Add card'), 'Space', 'Added mastercard •••• 4444.');
  await seesCount(guest.matched, 1);
  const update = guest.button('Update address of mastercard •••• 4444');
  await press(update, 'Enter');
  await press(guest.dialog.getByLabel('Postcode'), 'A');
  await keyboard.press('Enter');
  await guest.sees('The billing address is changed.');
  await sees(update.and(guest.page.locator(':focus')));
  await sees(guest.cards.filter({ hasText: 'Erika Mustermann, A' }));
  await leads(guest.button('Arm'), 'Enter', 'Armed');
  await leads(guest.button(/^Remove/), 'Enter', 'Removed', guest.button('Arm'));
  await leads(guest.button('Delete mastercard •••• 4444'), 'Enter', 'Deleted mastercard •••• 4444.', guest.button('Add card'));
  await seesCount(guest.matched, 0);

  await press(guest.page.getByRole('link', { name: 'Requests' }), 'Enter');
  const request = guest.requests.getByRole('link', { name: '/app/guest' });
  const part = guest.requests.getByRole('link', { name: 'Part of operation 1' });
  await press(request, 'Enter');
  await sees(part);
  await keyboard.press('Escape');
  await sees(request.and(guest.page.locator(':focus')));
  await keyboard.press('Enter');
  await sees(part);
  await press(part, 'Enter');
  await sees(guest.operations.filter({ hasText: 'sign in' }).and(guest.page.locator('[aria-current=true]')));
});

/** Pairs of the diagram's texts that lie on each other. */
const overlaps = () => {
  const boxes = [...document.querySelectorAll('#diagram :is(.label > span, .when > span)')]
    .map((text) => ({ text: text.textContent, box: text.getBoundingClientRect() })).filter(({ box }) => box.width > 0);
  return boxes.flatMap((one, index) => boxes.slice(index + 1)
    .filter(({ box }) => box.x < one.box.x + one.box.width - 1 && one.box.x < box.x + box.width - 1 &&
      box.y < one.box.y + one.box.height - 3 && one.box.y < box.y + box.height - 3)
    .map((other) => `${one.text} / ${other.text}`));
};

atEachSize('every view fits, and no label lies on another', async (guest) => {
  const fits = async () => assert.ok(await guest.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), 'the page is too wide');
  await guest.page.getByLabel('E-mail address').fill(`${'a.long.name.'.repeat(4)}@example.com`);
  await guest.settleIn();
  await guest.add({ card: 'backend-refused' });
  await guest.sees('no card came back');
  await guest.arm('removePaymentInstrument', 'error');
  await guest.comeToForeground();
  await fits();
  await guest.goTo('Timeline');
  for (const operation of await guest.operations.all()) {
    await operation.click();
    await sees(guest.operations.and(guest.page.locator(`[href="${await operation.getAttribute('href')}"][aria-current]`)));
    assert.deepEqual(await guest.page.evaluate(overlaps), []);
    await fits();
  }
  await guest.goTo('Requests');
  await guest.rows.filter({ hasText: 'removePaymentInstrument' }).getByRole('link').first().click();
  await sees(guest.requests.getByRole('link', { name: 'Part of operation' }));
  await fits();
  const stored = guest.page.getByRole('link', { name: 'Stored' });
  if (await stored.isVisible()) await stored.click();
  await sees(guest.stored);
  await fits();
});

onConsole('axe finds nothing in any view, light or dark', async (guest) => {
  const check = async (where) => {
    for (const colorScheme of ['light', 'dark']) {
      await guest.page.emulateMedia({ colorScheme });
      const { violations } = await guest.page.evaluate(() => globalThis.axe.run());
      const found = violations.flatMap(({ id, nodes }) => nodes.map((node) => `${where}, ${colorScheme}: ${id}: ${node.html}`));
      assert.deepEqual(found, []);
    }
  };
  await guest.page.evaluate(axe);
  await check('at first');
  await guest.settleIn();
  await guest.arm('removePaymentInstrument', 'error');
  await guest.makeScenario('instrument without card');
  await guest.choose('Card', 'type one…');
  for (const summary of await guest.page.locator('summary').all()) await summary.click();
  await guest.comeToForeground();
  await check('app');
  await guest.button('Update address of visa •••• 1111').click();
  await check('address');
  await guest.button('Cancel').click();
  await guest.goTo('Timeline');
  await check('timeline');
  await guest.goTo('Requests');
  await guest.requests.getByRole('link', { name: '/app/foreground' }).click();
  await sees(guest.button('Copy as curl'));
  await check('requests');
  await guest.button(/^Sandbox/).click();
  await guest.button('Take a snapshot').click();
  await guest.sees('The snapshot is taken.');
  await check('sandboxes');
  await guest.dialog.getByRole('button', { name: 'Close' }).click();
  await guest.page.setViewportSize({ width: 390, height: 844 });
  for (const view of ['App', 'Timeline', 'Requests', 'Stored']) {
    await guest.goTo(view);
    await check(`${view} on a phone`);
  }
});

onConsole('forced colours show which switch is on and which view is chosen', async (guest) => {
  const style = (locator, name) => locator.evaluate((element, property) => getComputedStyle(element)[property], name);
  const network = guest.app.getByRole('switch', { name: 'Network' });
  const pictures = [];
  for (const state of ['off', 'on']) {
    await network.setChecked(state === 'on');
    await guest.sees(`The network is ${state}.`);
    pictures.push((await network.screenshot()).toString('base64'));
  }
  assert.notEqual(...pictures);
  assert.equal(await style(guest.page.getByRole('link', { name: 'App' }), 'outlineStyle'), 'solid');
  assert.equal(await style(guest.page.getByRole('link', { name: 'Requests' }), 'outlineStyle'), 'none');
}, { forcedColors: 'active' });
