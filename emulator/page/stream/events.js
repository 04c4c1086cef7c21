// Events for this page, from a stream that it shares with the browser's other pages of the emulator.

import {follow} from './stream.js';

function share(handlers, otherwise) {
  const worker = new SharedWorker('stream/eventsworker.js', {type: 'module', name: 'events'});
  worker.onerror = otherwise;
  worker.port.onmessage = ({data}) => {
    if ('live' in data) handlers.state(data.live);
    else handlers.event(data.event);
  };
  return () => worker.port.postMessage('leaving');
}

/** A stream of the page's own, only while someone can see the page. */
function followWhileSeen(handlers) {
  let end = () => {};
  const adapt = () => {
    end();
    end = document.hidden ? () => {} : follow(handlers);
  };
  adapt();
  document.addEventListener('visibilitychange', adapt);
  return () => {
    document.removeEventListener('visibilitychange', adapt);
    end();
  };
}

/** Calls `state` with true or false when the connection is made or lost, and `event` with every event. */
export function followEvents(handlers) {
  let end;
  const alone = () => { end = followWhileSeen(handlers); };
  const start = () => {
    try {
      end = share(handlers, alone);
    } catch {
      // Not every browser has shared workers.
      alone();
    }
  };
  start();
  addEventListener('pagehide', () => end());
  // Back from the browser's history.
  addEventListener('pageshow', shown => { if (shown.persisted) start(); });
}
