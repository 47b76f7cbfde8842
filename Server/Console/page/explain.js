// What happened in an operation, in plain English, made from its events alone.

const nameOf = (what) => what.split(' ')[0];
const isError = (event) => event.result.startsWith('error');

/** The rest are notices, to which nobody replies. */
const hasReply = /^(add|create|delete|fetch|get|remove|update)[A-Z]/;

/**
 * Each call that gets a reply, in order, with what came of it: { what, of, call, reply, error, fault, slot, isAlone }.
 * Those that one side serves at the same time have slots of their own.
 */
export function exchangesOf(events) {
  const exchanges = [];
  for (const event of events) {
    const { from, to, what, result } = event;
    const open = exchanges.filter(({ reply }) => !reply);
    if (from === to) {
      const [, kind, name] = /^fault '(.+)' met (.+)$/.exec(what) ?? [];
      const met = open.find(({ call, fault }) => !fault && call.to === from && nameOf(call.what) === name);
      if (met) met.fault = kind;
    } else if (result) {
      const replied = open.find(({ call }) => call.to === from && call.from === to && call.what === what);
      if (replied) Object.assign(replied, { reply: event, error: isError(event) ? result : null });
    } else if (hasReply.test(what)) {
      const beside = open.filter(({ call }) => call.to === to);
      for (const each of beside) each.isAlone = false;
      const slot = [0, ...beside.map((each) => each.slot + 1)].find((free) => !beside.some((each) => each.slot === free));
      exchanges.push({ what: nameOf(what), of: to, call: event, reply: null, error: null, fault: null, slot, isAlone: beside.length === 0 });
    }
  }
  return exchanges;
}

/** Those that the kit makes of the services. */
export const callsOf = (events) => exchangesOf(events).filter(({ of }) => ['backend', 'provider'].includes(of));

/** The calls and what the operation's own events say of them. */
function factsOf({ events }) {
  const calls = callsOf(events);
  const logs = events.filter((event) => event.to === 'log').map((event) => event.what);
  return {
    calls,
    call: (what) => calls.find((call) => call.what === what),
    waits: calls.find(({ reply }) => !reply),
    isLogged: (text) => logs.some((line) => line.startsWith(text)),
  };
}

const good = (text) => ({ tone: 'good', text });
const bad = (text, row = null) => ({ tone: 'bad', text, row });
const waiting = ({ waits }) => ({
  tone: 'waits',
  text: waits
    ? `The kit waits for ${waits.what}, to which the ${waits.of} has not replied; until then the app's completion is not called.`
    : "The app's completion has not been called.",
  row: waits && `the ${waits.of} never answers`,
});
const offline = bad('There was no connection, so the kit asked neither side and reported the error of the network.', 'no connection');
const unasked = ({ result }, text, row) => (result.includes('URLError') ? offline : bad(text, row));

function add(facts, completion) {
  const { call, calls } = facts;
  const isFirst = Boolean(call('createUserToken'));
  if (!completion) return waiting(facts);
  if (calls.length === 0) return unasked(completion, 'The card is not valid, so the kit asked neither side.', 'the card is not valid');
  const stored = call('createUserToken') ?? call('addPaymentInstrument');
  if (stored.error) return bad(`The provider did not confirm that it stored the card (${stored.error}); the kit reports this to the app, and the backend was not asked.`, isFirst ? 'the provider refuses to create a token' : 'the provider refuses the card');
  const list = call('getPaymentInstrumentsList');
  if (!list) return bad('The provider replied without a token, so the kit could not go on.', 'neither a token nor an error');
  if (list.error) return bad('The provider stored the card, but its list of instruments failed; the backend was not asked, and the app got the error.', 'the lookup fails');
  const registered = call('addCreditCardForGuest');
  if (!registered) return bad('The provider stored the card, but its list has no usable instrument for it; the backend was not asked.', 'the stored instrument has no identifier');
  if (registered.error && !isFirst) return bad('The provider stored the card and the backend refused it; the kit reports no error (kept for compatibility); the next synchronisation will remove the instrument.', 'the backend refuses the card');
  if (registered.error) return bad('The provider stored the card and the backend refused it; the app got the error, and the next synchronisation will remove the instrument.', 'What becomes of the two backend requests');
  if (call('updateCurrentGuestWithRequest')?.error) return bad("The card is stored on both sides, but the backend refused the guest's token; the app got that error.", 'What becomes of the two backend requests');
  if (isError(completion)) return bad(`The card is stored on both sides, but the app got ${completion.result}.`);
  return good(isFirst ? "The provider made a token and stored the guest's first card, and the backend registered both." : 'The provider stored the card, and the backend registered it.');
}

function remove(facts, completion) {
  const { call, calls } = facts;
  const deleted = call('deleteCreditCardWithID');
  if (!completion) return waiting(facts);
  if (calls.length === 0) return unasked(completion, 'The kit reported what was missing before it asked either side.', 'the guest has no token');
  if (deleted?.error) return bad('The backend refused to delete the card, so the provider was not asked to remove its instrument.', 'the backend refuses');
  const removed = call('removePaymentInstrument');
  if (call('getPaymentInstrumentsList')?.error) return bad("The backend deleted the card, but the provider's list failed; the kit reports no error (kept for compatibility); the next synchronisation will remove the instrument.", "the provider's list fails, or is missing");
  if (!removed) return { ...good('The backend deleted the card; no instrument of the provider matched it, so none was removed.'), row: 'no instrument matches' };
  if (removed.error) return bad('The backend deleted the card, but the provider did not remove the instrument; the app got the error, and the next synchronisation will try again.', 'the removal fails');
  return good('The backend deleted the card, and the provider removed its instrument.');
}

function update(facts, completion) {
  if (!completion) return waiting(facts);
  if (completion.result.includes('URLError')) return bad('There was no connection, so the billing address is what it was.');
  return facts.call('updateCreditCard')?.error
    ? bad('The backend refused the billing address; nothing was changed.', 'the backend refuses the update')
    : good('The backend changed the billing address; the provider has none and was not asked.');
}

function synchronise(facts) {
  const { calls, isLogged } = facts;
  if (isLogged('Failed to synchronize')) {
    const failed = calls.find((each) => each.error);
    return bad(`The synchronisation failed${failed ? ` at ${failed.what} of the ${failed.of}` : ''}, so nothing was removed. The kit still counts it as under way and drops later ones until the app starts again.`,
      failed?.of === 'backend' ? "the backend's list fails" : 'a provider list fails');
  }
  if (isLogged('Nothing to synchronize')) return { ...good('The provider has no instruments, so there was nothing to do. The kit still counts this synchronisation as under way and drops later ones until the app starts again.'), row: 'the provider holds nothing' };
  const removals = calls.filter((each) => each.what === 'removePaymentInstrument');
  const failed = removals.filter((each) => each.error).length;
  if (failed > 0) return bad(`${removals.length === 1 ? 'The instrument without a card' : `Of ${removals.length} instruments without a card ${failed}`} could not be removed; the kit counts the synchronisation as successful, and the next one will try again.`, 'a removal fails');
  if (!isLogged('Successfully synchronized')) return { ...waiting(facts), row: 'a service never answers' };
  return good(removals.length === 0
    ? 'Both sides were compared: each instrument has a card, so nothing was removed.'
    : `Both sides were compared, and ${removals.length === 1 ? 'the instrument' : `${removals.length} instruments`} without a card removed from the provider.`);
}

const dropped = {
  'already synchronising': ['The kit dropped the synchronisation, since it counts an earlier one as under way: one that failed or found nothing stays so until the app starts again.', 'a synchronisation is under way'],
  'no token': ['The kit did not synchronise: the guest has no token yet, since no card was added.', 'a synchronisation for a guest without a token'],
  'not authorised': ['The kit did not synchronise: nobody is signed in.', null],
};

const plain = [
  ['guest changed', 'The guest changed, so the app started again and enabled a new kit; what the old one waited for is given up.'],
  ['enableWithConfiguration', 'The guest is signed in, and the kit is enabled.'],
  ['authorisation changed', 'The app notified the kit that who is signed in has changed.'],
  ['reachability changed', 'The app notified the kit that the network has changed.'],
];
const operations = { addPaymentInstrument: add, updatePaymentInstrument: update, deletePaymentInstrumentWithID: remove };
const worst = ['bad', 'waits', 'dropped', 'good', 'none'];

/** { tone, sentences, row }: the row is one of docs/failures.md, by a text that it begins with; null for none. */
export function explained(operation) {
  const { events } = operation;
  const facts = factsOf(operation);
  const parts = [];
  for (const asked of events.filter((event) => event.from === 'app' && event.to === 'kit' && operations[event.what])) {
    const completion = events.find((event) => event.from === 'kit' && event.to === 'app' && event.what === asked.what);
    parts.push(operations[asked.what](facts, completion));
  }
  if (facts.isLogged('Will start synchrozation')) parts.push(synchronise(facts));
  for (const event of events) {
    const [text, row] = dropped[/^no synchronisation: (.+)$/.exec(event.what)?.[1]] ?? [];
    if (text) parts.push({ tone: event.what.endsWith('synchronising') ? 'dropped' : 'none', text, row });
  }
  for (const event of events.filter(({ to }) => to === 'assert')) parts.push(bad(`The kit asserted: ${event.what}.`));
  const news = plain.find(([what]) => events.some((event) => event.what.startsWith(what)));
  if (news && (parts.length === 0 || news[0] !== 'reachability changed')) parts.unshift({ tone: 'none', text: news[1], row: null });
  const tone = worst.find((each) => parts.some((part) => part.tone === each)) ?? 'none';
  return {
    tone,
    sentences: [...new Set(parts.map((part) => part.text))],
    row: parts.find((part) => part.row)?.row ?? null,
  };
}
