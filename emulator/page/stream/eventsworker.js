// Follows the events once for all pages of a browser: it has six connections for a site, and a stream keeps one busy.

import {follow} from './stream.js';

const pages = new Set();
let live;

function tell(message) {
  for (const page of pages) page.postMessage(message);
}

follow({
  state: now => tell({live: live = now}),
  event: event => tell({event})
});

self.onconnect = ({ports: [page]}) => {
  pages.add(page);
  // The only message of a page says that it is being left.
  page.onmessage = () => pages.delete(page);
  if (live !== undefined) page.postMessage({live});
};
