// Guests add while the server is killed and started again; whoever had no reply asks again with the
// same key. In the end, what was answered is there, and nothing is there twice.
import assert from 'node:assert/strict';
import { onServer } from './documents.js';
import { newCard, registeredCard } from './server.js';

const kills = Number(process.env.KILLS ?? 6);
/** A kill comes after so many replies at most. Whichever moment that is, the same has to hold. */
const mostReplies = 40;

onServer(`${kills} kills lose nothing that was answered`, async ({ server, call: ask }) => {
  const guests = await Promise.all(['a', 'b', 'c', 'd'].map(async (name) => {
    const email = `${name}@example.com`;
    const { body: { session } } = await ask('backend', `PUT /v1/guests/${email}`);
    const { body: { token } } = await ask('provider', 'POST /v1/users', { body: { email, use_case: 'default', credit_card: newCard() } });
    return { name, session, replies: 0, cards: `/v1/guests/${email}/cards`, instruments: `/v1/users/${token}/instruments?use_case=private` };
  }));
  /** An instrument and a card in turn. Returns whether there was a reply. */
  const add = async (guest) => {
    const key = `${guest.name}-${guest.replies}`;
    const headers = { 'Idempotency-Key': key, Prefer: 'return=minimal' };
    const adding = guest.replies % 2 === 0 ?
      ask('provider', `POST ${guest.instruments}`, { body: { credit_card: newCard() }, headers }) :
      ask('backend', `POST ${guest.cards}`, { body: registeredCard(key), headers: { ...headers, Authorization: `Bearer ${guest.session}` } });
    const { status, text } = await adding.catch((error) => {
      if (error.code === 'ECONNREFUSED') return { status: 0 };
      throw error;
    });
    if (status === 0) return false;
    assert.equal(status, 201, text);
    guest.replies += 1;
    return true;
  };
  for (let kill = 0; kill < kills; ++kill) {
    let missing = Math.floor(Math.random() * mostReplies);
    await new Promise((reached, failed) => {
      const addUntilKilled = async (guest) => {
        while (await add(guest)) if (--missing <= 0) reached();
      };
      guests.forEach((guest) => {
        guest.adding = addUntilKilled(guest);
        guest.adding.catch(failed);
      });
    });
    await server.end('SIGKILL');
    await Promise.all(guests.map(({ adding }) => adding));
    await server.start();
  }
  for (const guest of guests) {
    assert.ok(await add(guest), 'no reply');
    const { body: { credit_cards: cards } } = await ask('backend', `GET ${guest.cards}`);
    const { body: { instruments } } = await ask('provider', `GET ${guest.instruments}`);
    const added = Array.from({ length: guest.replies }, (_, at) => `${guest.name}-${at}`);
    assert.deepEqual(cards.map((card) => card.external_identifier), added.filter((_, at) => at % 2 === 1));
    assert.equal(instruments.length, Math.ceil(guest.replies / 2));
  }
});
