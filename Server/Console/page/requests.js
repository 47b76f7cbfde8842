// Every request to the services, and every call that the console's own kit makes of them.
import { request, sandbox } from './connection.js';
import { duration } from './diagram.js';
import { act, element, find, onClick, onSubmit, options, quiet, showList } from './dom.js';
import { callsOf } from './explain.js';
import { download } from './export.js';
import { allOperations } from './timeline.js';

const mostRows = 300;
const groups = {
  ok: (status) => status === 'ok' || (status >= 200 && status < 400),
  '4xx': (status) => status >= 400 && status < 500,
  '5xx': (status) => status >= 500,
  failed: (status) => !groups.ok(status) && status !== 'waits',
  'no reply': (status) => status === 0 || status === 'waits',
};

/** A call that the console's kit made within the server's process, as a row of the table. */
function rowOf(operation, { of, call, reply, error: said, fault }) {
  const error = said?.match(/^error (\S+) (-?\d+)/);
  return {
    id: `call-${call.number}`, at: call.at, method: 'call', path: call.what, sandbox,
    status: error ? Number(error[2]) || error[0] : reply ? 'ok' : 'waits',
    duration_ms: reply ? Date.parse(reply.at) - Date.parse(call.at) : null,
    fault, listener: of, operation: operation.number, events: reply ? [call, reply] : [call],
  };
}

/** What only this page asked of the server. */
const isOwn = (row) => row.listener === 'console' && (row.method === 'GET' || row.path.includes('/v1/'));

/** A request as a command, without what the log does not keep: keys, sessions and bodies. */
function curlOf(row, urls) {
  const parts = [`curl -i -X ${row.method} '${urls[row.listener].replace(/\/sandboxes\/.*$/, '')}${row.path.replaceAll("'", '%27')}'`];
  if (row.listener === 'provider') parts.push("-H 'X-API-Key: any'");
  if (row.listener === 'backend') parts.push('-H "Authorization: Bearer $SESSION"');
  if (['POST', 'PATCH', 'PUT'].includes(row.method)) parts.push("-H 'Content-Type: application/json'", '-d @body.json');
  return parts.join(' \\\n  ');
}

const filter = find('request-filter');
let requests = [];
let chosen = null;
/** What is shown below the table, which stays while it is the same. */
let detailed = null;

export function startRequests({ operations }) {
  filter.elements.fault.append(...options([...new Set(operations.flatMap(({ kinds }) => kinds))]));
  filter.addEventListener('input', drawRequests);
  find('request-detail').addEventListener('keydown', ({ key }) => { if (key === 'Escape') close(); });
  onSubmit('request-filter', () => {});
  onClick('har', save);
}

export function addRequests(news) {
  requests = [...(news.whole ? [] : requests), ...news.requests].slice(-1000);
  drawRequests();
}

export function chooseRequest(id) {
  chosen = id ?? null;
  drawRequests();
}

/** The focus goes back to the row. */
function close() {
  document.querySelector(`[data-key="${chosen}"]`)?.focus();
  location.hash = 'requests';
}

/** What the filter lets through, newest first. */
function fitting() {
  const { status, path, fault, own } = filter.elements;
  const word = path.value.trim().toLowerCase();
  const calls = allOperations().flatMap((operation) => callsOf(operation.events).map((call) => rowOf(operation, call)));
  return [...requests, ...calls].reverse()
    .filter((row) => own.checked || !isOwn(row))
    .filter((row) => !status.value || groups[status.value](row.status))
    .filter((row) => `${row.method} ${row.path}`.toLowerCase().includes(word))
    .filter((row) => !fault.value || (fault.value === 'any' ? row.fault : row.fault === fault.value))
    .sort((one, other) => (one.at < other.at ? 1 : one.at > other.at ? -1 : 0));
}

/** What the server has of the rows that are shown; a call of the console's own kit is no request. */
function save(button) {
  const ids = new Set(fitting().filter((row) => !row.operation).map(({ id }) => id));
  act(button, () => request('GET', 'v1/sandbox/har'), (har) => {
    har.log.entries = har.log.entries.filter((entry) => ids.has(entry._id));
    download('paylevenkit.har', 'application/json', JSON.stringify(har, null, 1));
    return `Exported ${har.log.entries.length} requests; calls of this console's kit are none and stay out.`;
  });
}

export function drawRequests() {
  if (document.body.dataset.view !== 'requests') return;
  const rows = fitting();
  const shown = rows.slice(0, mostRows);
  find('request-count').textContent = rows.length > mostRows ? `${mostRows} of ${rows.length}` : `${rows.length}`;
  showList(find('request-rows'), shown.map((row) => ({ ...row, isChosen: row.id === chosen })), tableRow);
  const row = rows.find(({ id }) => id === chosen) ?? null;
  const now = JSON.stringify([row?.id, row?.status]);
  if (now === detailed) return;
  detailed = now;
  showDetail(row).catch(({ message }) => find('request-detail').replaceChildren(element('p', { class: 'outcome', 'data-tone': 'bad' }, message)));
}

function tableRow(row) {
  const cell = (name, ...content) => element('td', { class: name }, ...content);
  return element('tr', { 'aria-current': row.isChosen ? 'true' : null, 'data-tone': groups.failed(row.status) ? 'bad' : null, onclick: () => { location.hash = `requests/${row.id}`; } },
    cell('mono', row.at.slice(11, 23)),
    cell('mono', row.method),
    cell('path', element('a', { href: `#requests/${row.id}`, 'data-key': row.id }, row.path)),
    cell('mono status', String(row.status || 'none')),
    cell('mono number', row.duration_ms === null ? '' : duration(row.duration_ms)),
    cell('wide', row.sandbox),
    cell('fault', row.fault ?? ''),
    cell('mono wide', row.operation ? `operation ${row.operation}` : row.id.slice(0, 12)));
}

async function showDetail(row) {
  const place = find('request-detail');
  place.hidden = row === null;
  if (!row) return;
  const [details, { urls }] = row.operation ? [row, {}] : await Promise.all([
    request('GET', `v1/sandbox/requests/${row.id}`), request('GET', 'v1/sandbox')]);
  if (row.id !== chosen) return;
  const events = details.events.map((event) => element('li', {}, `${event.from} → ${event.to}: ${event.what}${event.result ? `: ${event.result}` : ''}`));
  const operation = row.operation ?? /^operation (\d+)$/.exec(details.events[0]?.what)?.[1];
  const step = details.events.find((event) => event.from === 'client' && event.to !== 'app')?.what;
  const curl = urls ? curlOf(row, urls) : null;
  place.replaceChildren(
    element('div', { class: 'line' },
      element('h2', { class: 'grow' }, `${row.method} ${row.path}`),
      quiet('Close', null, null, () => close())),
    element('p', { class: 'hint' }, [row.operation ? 'made by the kit of this console' : row.id, `at the ${row.listener}`, row.caller && `from ${row.caller}`, row.code && `error ${row.code}`, row.fault && `met the fault ${row.fault}`, row.reply_bytes && `${row.request_bytes} bytes in, ${row.reply_bytes} out`].filter(Boolean).join(' · ')),
    element('p', {}, operation
      ? element('a', { href: `#timeline/${operation}` }, `Part of operation ${operation}: show in the timeline`)
      : step ? `The step of the kit that causes it: ${step}` : 'It reached no operation of a service.'),
    element('ul', { 'aria-label': 'What it did at the services' }, ...(events.length > 0 ? events : [element('li', {}, 'nothing')])),
    ...(curl ? [
      element('pre', { tabindex: 0, 'aria-label': 'As curl' }, curl),
      element('button', { type: 'button', onclick: (event) => act(event.currentTarget, () => navigator.clipboard.writeText(curl), () => 'Copied.') }, 'Copy as curl'),
      element('p', { class: 'outcome', role: 'status' })] : []));
  place.scrollIntoView({ block: 'nearest' });
  if (find('request-rows').contains(document.activeElement)) place.focus();
}
