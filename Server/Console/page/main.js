// Puts the views together, and keeps them live. The part of the URL after # says which one is shown.
import { showApp, startApp } from './app.js';
import { listen, request, sandbox } from './connection.js';
import { find } from './dom.js';
import { showFaults, startFaults } from './faults.js';
import { addRequests, chooseRequest, drawRequests, startRequests } from './requests.js';
import { startSandboxes } from './sandboxes.js';
import { showStored } from './stored.js';
import { addEvents, chooseOperation, forgetBefore, startTimeline } from './timeline.js';

const connections = {
  live: ['good', 'Live'],
  deleted: ['bad', 'This sandbox was deleted.'],
  lost: ['bad', 'The server is gone. Waiting for it to come back…'],
};

const choices = await request('GET', 'choices');
startApp(choices);
startFaults(choices);
startTimeline(drawRequests);
startRequests(choices);
startSandboxes();
find('sandbox-name').textContent = sandbox;
document.title = `${sandbox} · paylevenkit console`;

function showView() {
  const [view, what] = location.hash.slice(1).split('/');
  const shown = ['timeline', 'requests', 'stored'].includes(view) ? view : 'app';
  document.body.dataset.view = shown;
  // Stored data is beside the others where there is space.
  for (const part of document.querySelectorAll('.view')) part.hidden = part.dataset.is !== (shown === 'stored' ? 'app' : shown);
  for (const link of find('views').querySelectorAll('a')) link.ariaCurrent = link.hash === `#${shown}` ? 'page' : null;
  chooseOperation(shown === 'timeline' ? what : null);
  chooseRequest(shown === 'requests' ? what : null);
}
addEventListener('hashchange', () => {
  showView();
  // What was followed may be hidden now.
  if (!document.activeElement.checkVisibility()) document.querySelector(`[data-of="${document.body.dataset.view}"]`).focus();
});
showView();

listen({
  timeline: addEvents,
  requests: addRequests,
  stored: (stored) => {
    showApp(stored);
    showFaults(stored);
    showStored(stored);
    forgetBefore(stored.oldest_operation);
  },
  state: ({ state }) => {
    const place = find('connection');
    [place.dataset.tone, place.textContent] = connections[state];
  },
});
