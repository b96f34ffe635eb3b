import assert from 'node:assert/strict';
import { existsSync, readdirSync } from 'node:fs';
import test from 'node:test';
import vm from 'node:vm';

import { createPage, FakeTarget, microtasks, readSource, root } from './support.mjs';

const folder = 'installation/webapps/Welcome/';
const pages = readdirSync(new URL(folder, root)).filter((name) => name.endsWith('.html'));

function readPage(name) {
  const html = readSource(`${folder}${name}`);
  const ids = Array.from(html.matchAll(/ id="([^"]+)"/g), ([, id]) => id);
  const [, script] = html.match(/<script type="module" src="(\w+\.js)">/);
  return { html, ids, script };
}

/** As much of an element as the pages use. */
class FakeElement extends FakeTarget {
  constructor() {
    super();
    Object.assign(this, {
      dataset: {},
      children: [],
      textContent: '',
      value: '',
      hidden: true,
      disabled: false,
      scrollWidth: 640,
      scrollHeight: 480,
    });
  }

  get lastElementChild() {
    return this.children.at(-1);
  }

  append(...added) {
    for (const child of added) child.parent = this;
    this.children.push(...added);
  }

  prepend(child) {
    child.parent = this;
    this.children.unshift(child);
  }

  remove() {
    this.parent.children.splice(this.parent.children.indexOf(this), 1);
  }

  focus() {}

  select() {}
}

/** The text of a page's modules as one script: the page's own and the one that it imports. */
function readModules(script) {
  const text = readSource(`${folder}gallery.js`) + readSource(`${folder}${script}`);
  return text.replace(/^import .*;$/gm, '').replace(/^export /gm, '');
}

/** A page of the gallery, started with or without the bindings. */
function startPage(name = 'index.html', { bindings = true, results = {} } = {}) {
  const { ids, script } = readPage(name);
  const elements = Object.fromEntries(ids.map((id) => [id, new FakeElement()]));
  const document = {
    getElementById: (id) => elements[id] ?? assert.fail(`no element ${id}`),
    createElement: () => new FakeElement(),
    documentElement: new FakeElement(),
  };
  const target = new FakeTarget();
  const globals = {
    document,
    devicePixelRatio: 1.25,
    addEventListener: target.addEventListener.bind(target),
    reportError: (error) => target.dispatch('error', { error }),
  };
  const page = createPage({ globals, results: { __registerPromise: 7, ...results } });
  const context = bindings ? page.context : vm.createContext(globals);
  vm.runInContext(`(() => { 'use strict';\n${readModules(script)}\n})();`, context);
  return {
    elements,
    target,
    run: page.run,
    calls: page.calls,
    settle: () => page.calls.findLast(([native]) => native === '__registerPromise')[1],
    sent: () => page.calls.map(([native, strings]) => [native, ...strings]),
    log: () =>
      elements.log.children.map(
        ({ dataset, children }) => `${dataset.way} ${children[2].textContent}`,
      ),
    press: (id) => elements[id].dispatch('click'),
    submit() {
      let prevented = false;
      elements.form.dispatch('submit', {
        preventDefault: () => {
          prevented = true;
        },
      });
      assert.ok(prevented, 'the form must not be submitted to a server');
    },
  };
}

/** The page of strings, with a text in its field. */
function greet(page, text) {
  page.elements.message.value = text;
  page.submit();
}

test('sending greets the host with the text of the field', () => {
  const page = startPage();
  greet(page, 'Ada <b>&amp;\ud800');
  assert.deepEqual(page.sent(), [['__sendString', 'welcome.greet', 'Ada <b>&amp;\ud800']]);
  assert.deepEqual(page.log(), ['sent welcome.greet: Ada <b>&amp;\ud800']);
  assert.equal(page.elements.road.dataset.state, 'sent');
  assert.equal(page.elements.answer.textContent, '');
});

test("the host's answer is shown, logged and acknowledged", () => {
  const page = startPage();
  greet(page, 'Ada');
  page.run("xocef.receive(['welcome.answer', 'Hello, Ada'])");
  assert.equal(page.elements.answer.textContent, 'Hello, Ada');
  assert.equal(page.elements.road.dataset.state, 'answered');
  assert.deepEqual(page.sent().at(-1), ['__sendString', 'welcome.answered', 'Hello, Ada']);
  assert.deepEqual(page.log(), [
    'sent welcome.answered: Hello, Ada',
    'received welcome.answer: Hello, Ada',
    'sent welcome.greet: Ada',
  ]);
});

test('an answer without a text is shown as an empty one, another message is ignored', () => {
  const { run, sent, elements } = startPage();
  run("xocef.receive(['welcome.other', 'x']); xocef.receive(['x', 'welcome.answer'])");
  assert.deepEqual(sent(), []);
  run("xocef.receive('welcome.answer')");
  assert.equal(elements.answer.textContent, '');
  assert.deepEqual(sent(), [['__sendString', 'welcome.answered', '']]);
});

test('the log keeps its latest two hundred entries', () => {
  const page = startPage();
  for (let i = 0; i < 250; ++i) greet(page, `${i}`);
  assert.equal(page.log().length, 200);
  assert.equal(page.log()[0], 'sent welcome.greet: 249');
  assert.equal(page.log()[199], 'sent welcome.greet: 50');
});

test('a value is saved, loaded into its field and removed by its name', async () => {
  const { elements, submit, press, calls, settle, log } = startPage('values.html');
  Object.assign(elements.name, { value: 'note' });
  Object.assign(elements.value, { value: 'Water' });
  submit();
  assert.deepEqual(calls.at(-1).slice(2), [{ origin: 'Welcome', name: 'note', value: '"Water"' }]);
  settle().resolve(undefined);
  await microtasks();
  assert.equal(elements.result.textContent, 'Saved note.');

  elements.value.value = '';
  press('load');
  settle().resolve('Water');
  await microtasks();
  assert.equal(elements.value.value, 'Water');
  assert.equal(elements.result.dataset.state, 'done');

  press('remove');
  assert.equal(calls.at(-1)[2].value, '');
  settle().resolve(undefined);
  await microtasks();
  assert.deepEqual(log(), [
    ...['received Removed note.', 'sent remove note'],
    ...['received Loaded note: Water', 'sent load note'],
    ...['received Saved note.', 'sent save note'],
  ]);
});

test('what the host refuses is shown as a failure', async () => {
  const { elements, press, settle, log } = startPage('values.html');
  elements.name.value = 'note';
  press('load');
  settle().reject(new Error('Failed to read preference note'));
  await microtasks();
  assert.equal(elements.result.dataset.state, 'failed');
  assert.equal(elements.result.textContent, 'Error: Failed to read preference note');
  assert.equal(log()[0], 'failed Error: Failed to read preference note');
});

test('the view page tells its size, its zoom and its way home', () => {
  const { elements, press, calls, target } = startPage('view.html');
  assert.equal(elements.size.textContent, '640 × 480 CSS pixels');
  assert.equal(elements.zoom.textContent, '125 %');
  for (const id of ['tell', 'in', 'out', 'reset', 'home']) press(id);
  assert.deepEqual(calls, [
    ['__sendDocumentSize'],
    ['__notifyZoomChange', 50],
    ['__notifyZoomChange', -50],
    ['__notifyZoomReset'],
    ['__loadHomepage'],
  ]);
  elements.zoom.textContent = '';
  target.dispatch('resize');
  assert.equal(elements.zoom.textContent, '125 %');
  press('lengthen');
  assert.equal(elements.more.children.length, 20);
});

test('the tools page opens and closes the tools', () => {
  const { press, calls } = startPage('tools.html');
  press('open');
  press('close');
  assert.deepEqual(calls, [['__openDevTools'], ['__closeDevTools']]);
});

test('the environment page shows a value, and says where there is none', () => {
  const set = startPage('environment.html', { results: { __getEnv: '/bin' } });
  set.elements.name.value = 'PATH';
  set.submit();
  assert.deepEqual(set.calls, [['__getEnv', 'PATH']]);
  assert.equal(set.elements.result.textContent, '/bin');
  const unset = startPage('environment.html', { results: { __getEnv: '' } });
  unset.elements.name.value = 'NONE';
  unset.submit();
  assert.equal(unset.elements.result.textContent, 'NONE is not set or empty.');
});

test('the errors page shows each kind of error', async () => {
  const { elements, press, settle, log } = startPage('errors.html');
  press('argument');
  assert.match(elements.result.textContent, /^Thrown: TypeError: xocef\.zoomChanged/);
  press('missing');
  settle().reject(new Error('no value'));
  await microtasks();
  assert.equal(elements.result.textContent, 'Rejected: Error: no value');
  press('endless');
  await microtasks();
  assert.match(elements.result.textContent, /^Rejected: TypeError: Converting circular/);
  press('listener');
  assert.equal(elements.result.textContent, 'Reported: Error: from a listener');
  assert.equal(log()[0], 'received the next listener has its answer all the same');
});

for (const name of pages) {
  const { html, ids, script } = readPage(name);

  test(`${name}: with the bindings the notice stays hidden`, () => {
    assert.equal(startPage(name).elements.notice.hidden, true);
  });

  test(`${name}: without the bindings the page says so and takes no input for the host`, () => {
    const { elements } = startPage(name, { bindings: false });
    assert.equal(elements.notice.hidden, false);
    const controls = Array.from(html.matchAll(/<(?:input|button) id="([^"]+)"/g), ([, id]) => id);
    assert.ok(controls.length > 0);
    for (const id of controls) {
      assert.equal(elements[id].disabled, id !== 'lengthen', id);
    }
    if (elements.form) assert.deepEqual(elements.form.listeners, []);
  });

  test(`${name}: its elements are unique, labelled and announced`, () => {
    assert.equal(new Set(ids).size, ids.length);
    assert.match(html, /<html lang="en">/);
    assert.equal(html.match(/<h1>/g).length, 1);
    for (const [, id] of html.matchAll(/<input id="([^"]+)"/g)) {
      assert.ok(html.includes(`<label for="${id}">`), id);
    }
    for (const [, id] of html.matchAll(/aria-labelledby="([^"]+)"/g)) assert.ok(ids.includes(id), id);
    for (const [output] of html.matchAll(/<output[^>]*>/g)) assert.match(output, /aria-live="polite"/);
    for (const [button] of html.matchAll(/<button[^>]*>/g)) assert.match(button, / type="/);
  });

  test(`${name}: its way through the gallery names every page, and this one as the present`, () => {
    const links = Array.from(html.matchAll(/<a href="([^"]+)"/g), ([, target]) => target);
    assert.deepEqual([...links].sort(), [...pages].sort());
    assert.match(html, new RegExp(`<a href="${name}" aria-current="page">`));
    assert.equal(html.match(/aria-current/g).length, 1);
  });

  test(`${name}: it obeys its own strict policy: nothing inline, everything from its folder`, () => {
    const [, policy] = html.match(/Content-Security-Policy" content="([^"]+)"/);
    assert.match(policy, /default-src 'none'/);
    assert.doesNotMatch(policy, /unsafe|\*|https?:|data:/);
    assert.doesNotMatch(html, /<style|<script(?![^>]* src=)|\son\w+=|\sstyle=/);
    const files = Array.from(html.matchAll(/ (?:src|href)="([^"]+)"/g), ([, file]) => file);
    assert.ok(files.includes(script) && files.includes('style.css'));
    for (const file of files) {
      assert.match(file, /^[\w.]+$/);
      assert.ok(existsSync(new URL(folder + file, root)), file);
    }
  });
}

/** The contrast of two colours, as the accessibility guidelines define it. */
function contrast(...colours) {
  const [dark, light] = colours
    .map((colour) => {
      const [r, g, b] = [1, 3, 5]
        .map((i) => parseInt(colour.slice(i, i + 2), 16) / 255)
        .map((c) => (c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4));
      return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    })
    .sort((a, b) => a - b);
  return (light + 0.05) / (dark + 0.05);
}

test('texts have enough contrast in both colour schemes', () => {
  const css = readSource(`${folder}style.css`);
  const schemes = Array.from(css.matchAll(/:root \{([^}]*)\}/g), ([, block]) =>
    Object.fromEntries(
      Array.from(block.matchAll(/--([\w-]+): (#\w{6});/g), ([, name, value]) => [name, value]),
    ),
  );
  assert.equal(schemes.length, 2);
  for (const colours of schemes) {
    for (const [text, background] of [
      ['text', 'page'],
      ['text', 'card'],
      ['text', 'notice'],
      ['quiet', 'page'],
      ['quiet', 'card'],
      ['accent', 'card'],
      ['answer', 'card'],
      ['failed', 'card'],
      ['accent', 'page'],
      ['on-accent', 'accent'],
      ['on-accent', 'accent-strong'],
    ]) {
      assert.ok(contrast(colours[text], colours[background]) >= 4.5, `${text} on ${background}`);
    }
    // The outline of the field needs less, being no text.
    assert.ok(contrast(colours['field-line'], colours.card) >= 3);
  }
});
