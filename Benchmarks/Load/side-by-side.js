// Lists and adds cards on `paylevenkit serve` and on its peers, in one run and in turns.
// Usage: side-by-side.js MODULES ROUNDS SECONDS
import { newCard, registeredCard } from '../../Tests/Server/server.js';
import { guest, letters, median, withServed, wrk } from './measure.js';
import { makePeers } from './peers.js';

const [modules, rounds, seconds] = [process.argv[2], ...process.argv.slice(3).map(Number)];
const listCards = 'list cards, 4 connections';
const listInstruments = 'list instruments, 4 connections';
const wanted = { [listCards]: 10, [listInstruments]: 10 };
/** By row and server, a list of rounds each. */
const figures = {};
const note = (row, name, { perSecond }) => ((figures[row] ??= {})[name] ??= []).push(perSecond);

function print() {
  const names = ['ours', 'Prism', 'json-server', 'Mockoon'];
  console.log(`${'requests per second, median'.padEnd(44)}${names.map((name) => name.padStart(14)).join('')}         ratio  wanted`);
  for (const [row, measured] of Object.entries(figures)) {
    const [ours, ...others] = names.map((name) => measured[name] && median(measured[name]));
    const columns = [ours, ...others].map((figure) => (figure?.toFixed(0) ?? '').padStart(14)).join('');
    console.log(`${row.padEnd(44)}${columns}${(ours / Math.max(...others.filter(Boolean))).toFixed(1).padStart(14)}  >= ${wanted[row]}`);
  }
}

await withServed(async ({ server: { urls }, wanted: ask }) => {
  await ask(200, 'backend', `PUT ${guest}`);
  await ask(201, 'backend', `POST ${guest}/cards`, registeredCard('ins_listed'));
  const { token } = await ask(201, 'provider', 'POST /v1/users', { email: 'guest@example.com', use_case: 'default', credit_card: newCard() });
  let guests = 0;
  /** Of a guest of its own, so that none has more cards than another's. */
  const add = async (connections, ...keyed) => {
    const name = letters(guests += 1);
    await ask(200, 'backend', `PUT /v1/guests/${name}@example.com`);
    return wrk(urls.backend, seconds, connections, { script: 'add.lua', given: [`/v1/guests/${name}@example.com/cards`, 'ours', name, ...keyed] });
  };
  const first = 10_000 + Math.floor(Math.random() * 20_000);
  const peers = makePeers([first, first + 1, first + 2]);
  try {
    for (let round = 0; round < rounds; ++round) {
      note(listCards, 'ours', await wrk(`${urls.backend}${guest}/cards`, seconds, 4));
      note(listInstruments, 'ours', await wrk(`${urls.provider}/v1/users/${token}/instruments?use_case=default`, seconds, 4, { headers: ['X-API-Key: any'] }));
      for (const peer of peers) {
        await peer.start(modules);
        // What runs in Node is slow at first.
        await wrk(peer.cards, 1, 4);
        note(listCards, peer.name, await wrk(peer.cards, seconds, 4));
        note(listInstruments, peer.name, await wrk(peer.instruments, seconds, 4));
        await peer.end();
      }
      for (const [connections, least] of [[4, 3], [64, 8]]) {
        const row = `add cards, ${connections} connections`;
        wanted[row] = wanted[`${row}, keyed`] = least;
        note(row, 'ours', await add(connections));
        note(`${row}, keyed`, 'ours', await add(connections, 'keyed'));
        // The more rows it has, the longer its file takes to write, so it begins anew.
        const [, peer] = peers;
        await peer.start(modules);
        const measured = await wrk(peer.url, seconds, connections, { script: 'add.lua', given: ['/added', 'plain', 'x'] });
        note(row, peer.name, measured);
        note(`${row}, keyed`, peer.name, measured);
        await peer.end();
      }
    }
  } finally {
    peers.forEach((peer) => peer.abandon());
  }
});
print();
