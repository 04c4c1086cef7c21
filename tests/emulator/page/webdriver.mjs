// A small ChromeDriver client for the page tests.
import {spawn} from 'node:child_process';
import {mkdtempSync, rmSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

/** For everything that the tests, the browser and its driver write; removed at the end, SIGKILL excepted. */
export const scratch = mkdtempSync(join(tmpdir(), 'page-'));
process.on('exit', () => rmSync(scratch, {recursive: true, force: true, maxRetries: 10}));
for (const signal of ['SIGHUP', 'SIGINT', 'SIGTERM']) process.on(signal, () => process.exit(1));

const elementKey = 'element-6066-11e4-a52e-4f735466cecf';

/** The first match in the process's output. Fails if the output ends without one. */
export function lineOf(process, pattern) {
  return new Promise((resolve, reject) => {
    let text = '';
    process.stdout.on('data', chunk => {
      text += chunk;
      const match = text.match(pattern);
      if (match) resolve(match);
    });
    process.on('error', reject);
    process.on('close', () => reject(new Error(`no ${pattern} in: ${text}`)));
  });
}

export class Browser {
  static async start({language}) {
    const browser = new Browser();
    browser.url = `http://127.0.0.1:${await browser.startDriver()}/session`;
    // Without these, it contacts services of its vendor at every start.
    const args = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync', '--disable-dev-shm-usage',
      `--accept-lang=${language}`, `--lang=${language}`, '--window-size=1400,1200',
      `--user-data-dir=${mkdtempSync(join(scratch, 'profile-'))}`];
    const capabilities = {alwaysMatch: {browserName: 'chrome', 'goog:chromeOptions': {args},
      'goog:loggingPrefs': {browser: 'ALL', performance: 'ALL'}}};
    const {sessionId} = await browser.call('POST', '', {capabilities});
    browser.url += '/' + sessionId;
    await browser.call('POST', '/timeouts', {script: 60000, pageLoad: 30000});
    return browser;
  }

  /** Returns its port. The driver wants the free port of one protocol for the other one too, which may be taken. */
  async startDriver(tries = 5) {
    this.driver = spawn('chromedriver', ['--port=0'],
      {stdio: ['ignore', 'pipe', 'inherit'], env: {...process.env, TMPDIR: scratch}});
    try {
      return (await lineOf(this.driver, /started successfully on port (\d+)/))[1];
    } catch (error) {
      if (tries === 1) throw error;
      return this.startDriver(tries - 1);
    }
  }

  async call(method, path, body) {
    const response = await fetch(this.url + path,
      {method, body: method === 'POST' ? JSON.stringify(body ?? {}) : undefined});
    const {value} = await response.json();
    if (!response.ok) throw new Error(`${method} ${path}: ${value.message}`);
    return value;
  }

  goto(url) { return this.call('POST', '/url', {url}); }

  run(script, ...args) { return this.call('POST', '/execute/sync', {script, args}); }

  runAsync(script, ...args) { return this.call('POST', '/execute/async', {script, args}); }

  async find(css) {
    const value = await this.call('POST', '/element', {using: 'css selector', value: css});
    return value[elementKey];
  }

  async click(css) { return this.call('POST', `/element/${await this.find(css)}/click`); }

  async picture(css) {
    const element = await this.find(css);
    return Buffer.from(await this.call('GET', `/element/${element}/screenshot`), 'base64');
  }

  async screenshot() { return Buffer.from(await this.call('GET', '/screenshot'), 'base64'); }

  /** Presses and releases the keys one after the other. Special keys are in `keys`. */
  press(...pressed) {
    const actions = pressed.flatMap(value => [{type: 'keyDown', value}, {type: 'keyUp', value}]);
    return this.call('POST', '/actions', {actions: [{type: 'key', id: 'keyboard', actions}]});
  }

  type(text) { return this.press(...text); }

  colours(scheme) {
    return this.call('POST', '/goog/cdp/execute', {cmd: 'Emulation.setEmulatedMedia',
      params: {features: [{name: 'prefers-color-scheme', value: scheme}]}});
  }

  size(width, height) {
    return this.call('POST', '/goog/cdp/execute', {cmd: 'Emulation.setDeviceMetricsOverride',
      params: {width, height, deviceScaleFactor: 1, mobile: width < 500}});
  }

  log() { return this.call('POST', '/se/log', {type: 'browser'}); }

  /** URLs requested by pages of this machine since the last call, not those requested by the browser itself. */
  async requests() {
    const entries = await this.call('POST', '/se/log', {type: 'performance'});
    return entries.map(entry => JSON.parse(entry.message).message)
      .filter(message => message.method === 'Network.requestWillBeSent' &&
        message.params.documentURL.startsWith('http://127.0.0.1:'))
      .map(message => message.params.request.url);
  }

  /** Waits until the script returns a truthy value, and returns it. */
  async until(script, ...args) {
    for (const end = Date.now() + 20000; ;) {
      const value = await this.run(script, ...args);
      if (value) return value;
      if (Date.now() > end)
        throw new Error(`never true: ${script} ${args}\n` + await this.run('return document.body.innerText'));
      await new Promise(resolve => setTimeout(resolve, 20));
    }
  }

  async stop() {
    await this.call('DELETE', '');
    this.driver.kill();
    await new Promise(resolve => this.driver.once('close', resolve));
  }
}

export const keys = {tab: '\uE004', enter: '\uE007', down: '\uE015', space: ' ', backspace: '\uE003', escape: '\uE00C'};
