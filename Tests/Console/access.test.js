// The page for everybody: without a mouse, without eyes, on a phone, in the dark.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

onConsole('a guest signs in, and adds, changes and deletes a card by keyboard alone', async (guest) => {
  const { keyboard } = guest.page;
  const press = async (locator, key) => {
    await guest.tabTo(locator);
    await keyboard.press(key);
  };
  await press(guest.app.getByLabel('E-mail address'), 'Enter');
  await guest.told('Signed in.');

  await press(guest.app.getByRole('radio', { name: 'visa', exact: true }), 'ArrowRight');
  await press(guest.button('Add card'), 'Space');
  await guest.told('Added mastercard •••• 4444.');
  assert.ok(await guest.isFocusedOn(guest.button('Add card')), 'the focus left the button of the form');

  const network = guest.app.getByRole('switch', { name: 'Network' });
  for (const state of ['off', 'on']) {
    await press(network, 'Space');
    await guest.told(`The network is ${state}.`);
    assert.ok(await guest.isFocusedOn(network), `the focus left the switch that was turned ${state}`);
  }

  const update = guest.button('Update the address of mastercard •••• 4444');
  await press(update, 'Enter');
  await press(guest.page.getByRole('dialog').getByLabel('Postcode'), 'A');
  await keyboard.press('Enter');
  await guest.told('The billing address is changed.');
  await sees(guest.cards.filter({ hasText: 'A' }).filter({ hasNotText: 'no billing address' }));
  assert.ok(await guest.isFocusedOn(update), 'the focus left the card that was changed');

  await press(guest.button('Arm'), 'Enter');
  await sees(guest.truth.getByRole('listitem').filter({ hasText: 'once' }));
  assert.ok(await guest.isFocusedOn(guest.button('Arm')), 'the focus left the button that arms');

  await press(guest.button('Delete mastercard •••• 4444'), 'Enter');
  await guest.told('Deleted mastercard •••• 4444.');
  await seesCount(guest.cards, 0);
});

onConsole('a phone shows three panels one below the other, and adds a card', async (guest) => {
  const fits = async () => assert.ok(await guest.page.evaluate(() => {
    const { scrollWidth, clientWidth } = document.documentElement;
    return scrollWidth <= clientWidth;
  }), 'the page is wider than the phone');
  await fits();
  await guest.settleIn();
  await guest.makeScene('instrument without card');
  await seesCount(guest.drifted, 1);
  await fits();
  for (const [link, title] of [['Truth', 'The truth'], ['Story', 'The story'], ['App', 'The app']]) {
    await guest.page.getByRole('navigation', { name: 'Panels' }).getByRole('link', { name: link }).click();
    const { y } = await guest.page.getByRole('heading', { name: title }).boundingBox();
    assert.ok(y >= 0 && y < 200, `${title} lies at ${y}`);
  }
  await guest.button('Update the address of visa •••• 1111').click();
  await sees(guest.page.getByRole('dialog'));
  await fits();
}, { viewport: { width: 390, height: 844 }, hasTouch: true });

onConsole('every control has a name', async (guest) => {
  const roles = ['button', 'checkbox', 'combobox', 'link', 'radio', 'searchbox', 'spinbutton', 'switch', 'textbox'];
  const controls = async () => {
    const session = await guest.page.context().newCDPSession(guest.page);
    const { nodes } = await session.send('Accessibility.getFullAXTree');
    return nodes.filter((node) => !node.ignored && roles.includes(node.role?.value));
  };
  await guest.settleIn();
  await guest.app.getByRole('radio', { name: 'type one…' }).check();
  const onPage = await controls();
  await guest.button('Update the address of visa •••• 1111').click();
  const inDialog = await controls();
  assert.ok(onPage.length > 50 && inDialog.length >= 7, `only ${onPage.length} and ${inDialog.length} controls were found`);
  const nameless = [...onPage, ...inDialog].filter((node) => !node.name?.value?.trim());
  assert.deepEqual(nameless.map((node) => node.role.value), []);
});

/** Each colour of a text, and what it stands on. */
const texts = [
  ['ink', 'sheet'], ['ink', 'paper'], ['ink', 'accent-wash'], ['ink', 'drift-wash'],
  ['soft', 'sheet'], ['soft', 'accent-wash'], ['soft', 'drift-wash'], ['accent', 'sheet'],
  ['on-accent', 'accent'], ['drift', 'sheet'], ['bad', 'sheet'], ['bad', 'bad-wash'],
  ['bad', 'accent-wash'], ['good', 'sheet'], ['good', 'accent-wash'],
];

function contrast(one, other) {
  const luminance = (colour) => {
    const [red, green, blue] = colour.match(/[0-9a-f]{2}/gi).map((part) => {
      const share = parseInt(part, 16) / 255;
      return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
  };
  const [dark, light] = [luminance(one), luminance(other)].sort((a, b) => a - b);
  return (light + 0.05) / (dark + 0.05);
}

onConsole('texts stand out in the light and in the dark', async (guest) => {
  const papers = new Set();
  for (const colorScheme of ['light', 'dark']) {
    await guest.page.emulateMedia({ colorScheme });
    const pairs = await guest.page.evaluate((names) => {
      const style = getComputedStyle(document.documentElement);
      return names.map((pair) => pair.map((name) => style.getPropertyValue(`--${name}`).trim()));
    }, texts);
    const weak = texts.filter((pair, index) => contrast(...pairs[index]) < 4.5);
    assert.deepEqual(weak, [], colorScheme);
    papers.add(await guest.page.evaluate(() => getComputedStyle(document.body).backgroundColor));
  }
  assert.equal(papers.size, 2);
});
