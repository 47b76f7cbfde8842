// Puts the views together, and keeps them live. The part of the URL after # says which one is shown.
import { AppPanel } from './app.js';
import { listen, request, sandbox } from './connection.js';
import { find } from './dom.js';
import { FaultsPanel } from './faults.js';
import { RequestsView } from './requests.js';
import { listenToSandboxes } from './sandboxes.js';
import { showStored } from './stored.js';
import { TimelineView } from './timeline.js';

const connections = {
  live: ['good', 'Live'],
  deleted: ['bad', 'This sandbox was deleted.'],
  lost: ['bad', 'The server is gone. Waiting for it to come back…'],
};

const choices = await request('GET', 'choices');
const app = new AppPanel(choices);
const faults = new FaultsPanel(choices);
const timeline = new TimelineView();
const requests = new RequestsView(choices, timeline);
listenToSandboxes();
find('sandbox-name').textContent = sandbox;
document.title = `${sandbox} · paylevenkit console`;

function showView() {
  const [view, what] = location.hash.slice(1).split('/');
  const shown = ['timeline', 'requests', 'stored'].includes(view) ? view : 'app';
  document.body.dataset.view = shown;
  // Stored data is beside the others where there is space.
  for (const part of document.querySelectorAll('.view')) part.hidden = part.dataset.is !== (shown === 'stored' ? 'app' : shown);
  for (const link of find('views').querySelectorAll('a')) link.ariaCurrent = link.hash === `#${shown}` ? 'page' : null;
  timeline.choose(shown === 'timeline' ? what : null);
  requests.choose(shown === 'requests' ? what : null);
}
addEventListener('hashchange', () => {
  showView();
  // What was followed may be hidden now.
  if (!document.activeElement.checkVisibility()) document.querySelector(`[data-of="${document.body.dataset.view}"]`).focus();
});
showView();

listen({
  timeline: (news) => timeline.add(news),
  requests: (news) => requests.add(news),
  stored: (stored) => {
    app.show(stored);
    faults.show(stored);
    showStored(stored);
    timeline.forgetBefore(stored.oldest_operation);
  },
  state: ({ state }) => {
    const place = find('connection');
    [place.dataset.tone, place.textContent] = connections[state];
  },
});
