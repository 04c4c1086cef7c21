// The first requests of the page, repeated until they are answered.

import {byId} from '../base/dom.js';
import {labels} from '../base/texts.js';

const patience = 3000;
const pause = 2000;

function show(problem) {
  byId('starting').hidden = !problem;
  if (problem) byId('starting').querySelector('p').textContent = problem;
  // Without the answers, nothing of the page works.
  document.body.classList.toggle('unstarted', Boolean(problem));
}

/** Until the time is over or the user wants to try now; `end` is called then. */
function atMost(time, end) {
  const stop = () => {
    clearTimeout(timer);
    byId('retry').removeEventListener('click', stop);
    end();
  };
  const timer = setTimeout(stop, time);
  byId('retry').addEventListener('click', stop);
  return () => {
    clearTimeout(timer);
    byId('retry').removeEventListener('click', stop);
  };
}

async function attempt(requests) {
  const control = new AbortController();
  const done = atMost(patience, () => control.abort());
  try {
    return await requests(control.signal);
  } finally {
    done();
  }
}

/** The answers to `requests`, which is given a signal that ends them. Says what is wrong as long as there are none. */
export async function untilAnswered(requests) {
  for (;;) {
    try {
      const answers = await attempt(requests);
      show('');
      return answers;
    } catch (error) {
      show(`${labels.notStarted} (${error.message})`);
      await new Promise(resolve => { atMost(pause, resolve); });
    }
  }
}
