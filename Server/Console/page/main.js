// Puts the three panels together, and keeps them live.
import { AppPanel } from './app.js';
import { listen, request } from './connection.js';
import { find } from './dom.js';
import { StoryPanel } from './story.js';
import { TruthPanel } from './truth.js';

const sentences = {
  live: 'Live',
  lost: 'The server is gone. Waiting for it to come back…',
};

/** The server may start after the page. */
async function choices() {
  for (;;) {
    try {
      return await request('GET', 'choices');
    } catch {
      await new Promise((resolve) => { setTimeout(resolve, 1000); });
    }
  }
}

const chosen = await choices();
const app = new AppPanel(chosen);
const truthPanel = new TruthPanel(chosen);
const story = new StoryPanel();

listen({
  story: (news) => story.add(news),
  truth: (truth) => {
    app.show(truth);
    truthPanel.show(truth);
    story.forgetBefore(truth.oldest_operation);
  },
  state: (state) => {
    const place = find('connection');
    place.dataset.state = state;
    place.textContent = sentences[state];
  },
});
