import assert from 'node:assert/strict';
import { existsSync } from 'node:fs';
import test from 'node:test';
import vm from 'node:vm';

import { createPage, FakeTarget, readSource, root } from './support.mjs';

const folder = 'installation/webapps/Welcome/';
const html = readSource(`${folder}index.html`);
const ids = Array.from(html.matchAll(/ id="([^"]+)"/g), ([, id]) => id);

/** As much of an element as the application uses. */
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

/** The application, started in a page with or without the bindings. */
function startApplication({ bindings = true } = {}) {
  const elements = Object.fromEntries(ids.map((id) => [id, new FakeElement()]));
  const document = {
    getElementById: (id) => elements[id] ?? assert.fail(`no element ${id}`),
    createElement: () => new FakeElement(),
  };
  const page = createPage({ globals: { document } });
  const context = bindings ? page.context : vm.createContext({ document });
  vm.runInContext(`(() => { 'use strict';\n${readSource(`${folder}app.js`)}\n})();`, context);
  return {
    elements,
    run: page.run,
    sent: () => page.calls.map(([name, strings]) => [name, ...strings]),
    log: () =>
      elements.log.children.map(
        ({ dataset, children }) => `${dataset.way} ${children[2].textContent}`,
      ),
    greet(text) {
      let prevented = false;
      elements.message.value = text;
      elements.form.dispatch('submit', {
        preventDefault: () => {
          prevented = true;
        },
      });
      assert.ok(prevented, 'the form must not be submitted to a server');
    },
  };
}

test('sending greets the host with the text of the field', () => {
  const { greet, sent, log, elements } = startApplication();
  greet('Ada <b>&amp;\ud800');
  assert.deepEqual(sent(), [['__sendString', 'welcome.greet', 'Ada <b>&amp;\ud800']]);
  assert.deepEqual(log(), ['sent welcome.greet: Ada <b>&amp;\ud800']);
  assert.equal(elements.road.dataset.state, 'sent');
  assert.equal(elements.answer.textContent, '');
});

test("the host's answer is shown, logged and acknowledged", () => {
  const { greet, run, sent, log, elements } = startApplication();
  greet('Ada');
  run("xocef.receive(['welcome.answer', 'Hello, Ada'])");
  assert.equal(elements.answer.textContent, 'Hello, Ada');
  assert.equal(elements.road.dataset.state, 'answered');
  assert.deepEqual(sent().at(-1), ['__sendString', 'welcome.answered', 'Hello, Ada']);
  assert.deepEqual(log(), [
    'sent welcome.answered: Hello, Ada',
    'received welcome.answer: Hello, Ada',
    'sent welcome.greet: Ada',
  ]);
});

test('an answer without a text is shown as an empty one, another message is ignored', () => {
  const { run, sent, elements } = startApplication();
  run("xocef.receive(['welcome.other', 'x']); xocef.receive(['x', 'welcome.answer'])");
  assert.deepEqual(sent(), []);
  run("xocef.receive('welcome.answer')");
  assert.equal(elements.answer.textContent, '');
  assert.deepEqual(sent(), [['__sendString', 'welcome.answered', '']]);
});

test('the log keeps its latest two hundred entries', () => {
  const { greet, log } = startApplication();
  for (let i = 0; i < 250; ++i) greet(`${i}`);
  assert.equal(log().length, 200);
  assert.equal(log()[0], 'sent welcome.greet: 249');
  assert.equal(log()[199], 'sent welcome.greet: 50');
});

test('with the bindings everything is enabled and the notice stays hidden', () => {
  const { elements } = startApplication();
  assert.deepEqual(
    [elements.notice.hidden, elements.message.disabled, elements.send.disabled],
    [true, false, false],
  );
});

test('without the bindings the page says so and takes no input', () => {
  const { elements } = startApplication({ bindings: false });
  assert.deepEqual(
    [elements.notice.hidden, elements.message.disabled, elements.send.disabled],
    [false, true, true],
  );
  assert.deepEqual(elements.form.listeners, []);
});

test('the page has its elements, labelled and announced', () => {
  for (const id of ['message', 'send', 'answer', 'log']) {
    assert.equal(ids.filter((other) => other === id).length, 1, id);
  }
  assert.match(html, /<label for="message">/);
  assert.match(html, /<output id="answer"[^>]* aria-live="polite"/);
  assert.match(html, /<html lang="en">/);
});

test('the page obeys its own strict policy: nothing inline, everything from its folder', () => {
  const [, policy] = html.match(/Content-Security-Policy" content="([^"]+)"/);
  assert.match(policy, /default-src 'none'/);
  assert.doesNotMatch(policy, /unsafe|\*|https?:|data:/);
  assert.doesNotMatch(html, /<style|<script(?![^>]* src=)|\son\w+=|\sstyle=/);
  const files = Array.from(html.matchAll(/ (?:src|href)="([^"]+)"/g), ([, file]) => file);
  assert.ok(files.includes('app.js') && files.includes('style.css'));
  for (const file of files) {
    assert.match(file, /^[\w.]+$/);
    assert.ok(existsSync(new URL(folder + file, root)), file);
  }
});

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
      ['on-accent', 'accent'],
      ['on-accent', 'accent-strong'],
    ]) {
      assert.ok(contrast(colours[text], colours[background]) >= 4.5, `${text} on ${background}`);
    }
    // The outline of the field needs less, being no text.
    assert.ok(contrast(colours['field-line'], colours.card) >= 3);
  }
});
