// The emulator's stream of events.

import {api} from '../base/paths.js';

const pause = 2000;

/** Calls `state` whenever the connection is made or lost, `event` with every event. Returns a function that ends it. */
export function follow({state, event}) {
  let source, timer;
  const connect = () => {
    source = new EventSource(api + 'events');
    source.onopen = () => state(true);
    source.onmessage = message => event(JSON.parse(message.data));
    source.onerror = () => {
      state(false);
      // A browser tries again by itself after a lost connection, but not after an answer of another kind.
      if (source.readyState === EventSource.CLOSED) timer = setTimeout(connect, pause);
    };
  };
  connect();
  return () => {
    clearTimeout(timer);
    source.close();
  };
}
