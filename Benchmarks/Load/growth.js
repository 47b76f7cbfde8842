// What the Nth card of a guest costs, and the Nth sandbox. Usage: growth.js MOST
import { registeredCard } from '../../Tests/Server/server.js';
import { letters, median, range, sorted, withServed } from './measure.js';

const samples = 50;
const fillers = 4;
const most = Number(process.argv[2]);
const steps = [1, 100, 1_000, 10_000].filter((step) => step <= most);
const column = (value, width, digits = 2) => value.toFixed(digits).padStart(width);
const last = (taken) => sorted(taken)[Math.floor(taken.length * 0.99)];

async function milliseconds(call) {
  const begun = performance.now();
  await call();
  return performance.now() - begun;
}

/** As many calls, a few at a time. */
async function fill(count, call) {
  let left = count;
  await Promise.all(range(fillers).map(async () => { while (left-- > 0) await call(); }));
}

async function sample(call) {
  const taken = [];
  for (let at = 0; at < samples; ++at) taken.push(await milliseconds(call));
  return taken;
}

async function cards({ wanted }) {
  console.log('the Nth card        minimal, ms    whole guest, ms    of that the wire, %');
  const guest = '/v1/guests/many@example.com';
  await wanted(200, 'backend', `PUT ${guest}`);
  let made = 0;
  const add = (headers) => wanted(201, 'backend', `POST ${guest}/cards`, registeredCard(`ins_${letters(made += 1)}`), headers);
  const addMinimally = () => add({ Prefer: 'return=minimal' });
  for (const step of steps) {
    await fill(step - 1 - made, addMinimally);
    const [minimal, whole] = [median(await sample(addMinimally)), median(await sample(add))];
    // The effect is the same; only the cards in the reply make the difference.
    console.log(column(step, 12, 0) + column(minimal, 19) + column(whole, 19) + column(Math.max(0, 1 - minimal / whole) * 100, 23, 0));
  }
}

async function sandboxes({ wanted, memory }) {
  console.log('the Nth sandbox   made and used, ms: median, 99 %');
  let made = 0;
  const all = [];
  const create = async () => {
    made += 1;
    const { id } = await wanted(201, 'provider', 'POST /v1/sandboxes', { seed: 7 });
    await wanted(200, 'backend', `PUT /sandboxes/${id}/v1/guests/a@example.com`);
  };
  for (const step of steps) {
    await fill(step - 1 - made, create);
    const taken = await sample(create);
    all.push(...taken);
    console.log(column(step, 12, 0) + column(median(taken), 18) + column(last(taken), 14));
  }
  console.log(`A new sandbox is ready in ${median(all).toFixed(2)} ms (median), ${last(all).toFixed(2)} ms (99 %); 20 are wanted.`);
  console.log(`With ${made} sandboxes the server has ${memory().toFixed(0)} MiB in memory.`);
}

await withServed(async (served) => {
  await cards(served);
  await sandboxes(served);
});
