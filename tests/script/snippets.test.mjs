import assert from 'node:assert/strict';
import test from 'node:test';
import vm from 'node:vm';

import { FakeTarget, readBinding, toPlain } from './support.mjs';

const rootSnippet = 'snippets/addRootDocumentEventListeners.js';
const globalSnippet = 'snippets/addGlobalEventListeners.js';
const notifications = ['DOMReady', 'Load', 'Unload', 'ZoomChange', 'ZoomReset'];

/** A page without an engine: a window and a document that take listeners, and timers run by hand. */
function createFakePage({ readyState = 'loading', natives = notifications } = {}) {
  const calls = [];
  const timers = [];
  const document = Object.assign(new FakeTarget(), { readyState });
  const window = new FakeTarget();
  const xocef = {};
  for (const name of natives) {
    xocef[`__notify${name}`] = (...values) => {
      calls.push([name, ...values]);
    };
  }
  const context = vm.createContext({
    document,
    xocef,
    addEventListener: window.addEventListener.bind(window),
    setTimeout: (task) => timers.push(task),
  });
  return {
    calls,
    context,
    document,
    window,
    run: (path) => vm.runInContext(readBinding(path), context, { filename: path }),
    runTimers: () => {
      for (const task of timers.splice(0)) task();
    },
  };
}

for (const path of [rootSnippet, globalSnippet]) {
  test(`${path} leaves no globals and completes with nothing`, () => {
    const { context, run } = createFakePage();
    const before = Object.getOwnPropertyNames(context);
    assert.equal(run(path), undefined);
    assert.deepEqual(Object.getOwnPropertyNames(context), before);
  });

  test(`${path} is silent without natives`, () => {
    for (const xocef of [undefined, null, 5, {}, { __notifyDOMReady: 1, __notifyLoad: null }]) {
      const { context, run, document, window, runTimers } = createFakePage({
        readyState: 'complete',
      });
      context.console = { log: assert.fail, warn: assert.fail, error: assert.fail };
      context.xocef = xocef;
      run(path);
      runTimers();
      assert.deepEqual([...document.listeners, ...window.listeners], []);
    }
  });

  test(`${path} is silent in a page that has no bindings at all`, () => {
    const { context, run } = createFakePage();
    delete context.xocef;
    run(path);
  });
}

test('the root document is told once at its DOMContentLoaded event', () => {
  const { calls, document, run } = createFakePage();
  run(rootSnippet);
  assert.deepEqual(calls, []);
  document.readyState = 'interactive';
  document.dispatch('readystatechange');
  assert.deepEqual(calls, []);
  document.dispatch('DOMContentLoaded');
  document.dispatch('DOMContentLoaded');
  document.readyState = 'complete';
  document.dispatch('readystatechange');
  assert.deepEqual(calls, [['DOMReady']]);
});

test("the root document is told before the page's own listeners", () => {
  const { calls, document, run } = createFakePage();
  run(rootSnippet);
  let seen;
  document.dispatch('DOMContentLoaded', {}, () => {
    seen = calls.length;
  });
  assert.equal(seen, 1);
});

test('an event that the page makes up neither counts nor uses up the notification', () => {
  const { calls, document, window, run } = createFakePage();
  run(rootSnippet);
  run(globalSnippet);
  document.dispatch('DOMContentLoaded', { isTrusted: false });
  window.dispatch('load', { isTrusted: false, target: document });
  window.dispatch('pagehide', { isTrusted: false });
  assert.deepEqual(calls, []);
  document.dispatch('DOMContentLoaded');
  window.dispatch('load', { target: document });
  window.dispatch('pagehide');
  assert.deepEqual(calls, [['DOMReady'], ['Load'], ['Unload']]);
});

test('an interactive document is told once, whether its event is over or not', () => {
  for (const eventComes of [true, false]) {
    const { calls, document, run } = createFakePage({ readyState: 'interactive' });
    run(rootSnippet);
    assert.deepEqual(calls, []);
    if (eventComes) document.dispatch('DOMContentLoaded');
    document.readyState = 'complete';
    document.dispatch('readystatechange');
    assert.deepEqual(calls, [['DOMReady']]);
  }
});

test('a page that is already loaded is told in order and once, after the snippets', () => {
  const { calls, document, window, run, runTimers } = createFakePage({ readyState: 'complete' });
  run(rootSnippet);
  run(globalSnippet);
  assert.deepEqual(calls, []);
  runTimers();
  document.dispatch('DOMContentLoaded');
  window.dispatch('load', { target: document });
  assert.deepEqual(calls, [['DOMReady'], ['Load']]);
});

test('load counts once, and only that of the document', () => {
  const { calls, document, window, run } = createFakePage();
  run(globalSnippet);
  window.dispatch('load', { target: {} });
  assert.deepEqual(calls, []);
  window.dispatch('load', { target: document });
  window.dispatch('load', { target: document });
  assert.deepEqual(calls, [['Load']]);
});

test('the end of the page is told once', () => {
  const { calls, window, run } = createFakePage();
  run(globalSnippet);
  window.dispatch('pagehide');
  window.dispatch('pagehide');
  assert.deepEqual(calls, [['Unload']]);
});

for (const [wheel, step] of [
  [{ deltaY: -100 }, 40],
  [{ deltaY: 120 }, -40],
  [{ deltaY: -100000 }, 40],
  [{ deltaY: 2.5 }, -2.5],
  [{ deltaY: -3, deltaMode: 1 }, 40],
  [{ deltaY: 0.25, deltaMode: 1 }, -10],
  [{ deltaY: -1, deltaMode: 2 }, 40],
]) {
  test(`a wheel with the Ctrl key and ${JSON.stringify(wheel)} makes the step ${step}`, () => {
    const { calls, window, run, runTimers } = createFakePage();
    run(globalSnippet);
    window.dispatch('wheel', { ctrlKey: true, deltaMode: 0, ...wheel });
    runTimers();
    assert.deepEqual(calls, [['ZoomChange', step]]);
  });
}

test('a wheel without the Ctrl key, sideways or without a distance makes no step', () => {
  const { calls, window, run, runTimers } = createFakePage();
  run(globalSnippet);
  for (const wheel of [
    { ctrlKey: false, deltaY: 100, deltaMode: 0 },
    { ctrlKey: true, deltaY: 0, deltaX: 100, deltaMode: 0 },
    { ctrlKey: true, deltaY: -0, deltaMode: 0 },
    { ctrlKey: true, deltaY: NaN, deltaMode: 0 },
    { ctrlKey: true, deltaY: 1, deltaMode: 9 },
  ]) {
    window.dispatch('wheel', wheel);
    runTimers();
    assert.deepEqual(calls, [], JSON.stringify(wheel));
  }
});

for (const [key, resets] of [
  [{ key: '0', code: 'Digit0', keyCode: 48, ctrlKey: true }, true],
  [{ key: '\u00e0', code: 'Digit0', keyCode: 48, ctrlKey: true }, true],
  [{ key: '0', code: 'Numpad0', keyCode: 96, ctrlKey: true }, true],
  [{ key: 'Insert', code: 'Numpad0', keyCode: 45, ctrlKey: true }, false],
  [{ key: '0', keyCode: 48, ctrlKey: false }, false],
  [{ key: '0', keyCode: 48, ctrlKey: true, shiftKey: true }, false],
  [{ key: '0', keyCode: 48, ctrlKey: true, altKey: true }, false],
  [{ key: '0', keyCode: 48, ctrlKey: true, metaKey: true }, false],
  [{ key: '0', keyCode: 48, ctrlKey: true, repeat: true }, false],
  [{ key: '+', keyCode: 187, ctrlKey: true }, false],
]) {
  test(`the key ${JSON.stringify(key)} ${resets ? 'resets' : 'leaves'} the zoom`, () => {
    const { calls, window, run, runTimers } = createFakePage();
    run(globalSnippet);
    window.dispatch('keydown', key);
    runTimers();
    assert.deepEqual(calls, resets ? [['ZoomReset']] : []);
  });
}

test('a page that prevents the default keeps the zoom to itself', () => {
  const { calls, window, run, runTimers } = createFakePage();
  run(globalSnippet);
  const prevent = (event) => {
    event.defaultPrevented = true;
  };
  window.dispatch('wheel', { ctrlKey: true, deltaY: 100, deltaMode: 0 }, prevent);
  window.dispatch('keydown', { ctrlKey: true, key: '0', keyCode: 48 }, prevent);
  runTimers();
  assert.deepEqual(calls, []);
});

test('the wheel listener never holds up scrolling', () => {
  const { window, run } = createFakePage();
  run(globalSnippet);
  assert.deepEqual(
    window.listenersOf('wheel').map(({ passive }) => passive),
    [true],
  );
});

const html = { scrollWidth: 300, scrollHeight: 400, offsetWidth: 0, offsetHeight: 0 };

for (const [kind, document, expected] of [
  [
    'standards mode',
    { documentElement: html, body: { scrollWidth: 284, scrollHeight: 390 } },
    [300, 400],
  ],
  [
    'quirks mode',
    { documentElement: html, body: { scrollWidth: 2500, scrollHeight: 4000 } },
    [2500, 4000],
  ],
  ['no body', { documentElement: html, body: null }, [300, 400]],
  [
    'an SVG root',
    { documentElement: { scrollWidth: 20, scrollHeight: 15 }, body: undefined },
    [20, 15],
  ],
  ['no element', { documentElement: null, body: null }, [0, 0]],
  [
    'broken lengths',
    { documentElement: { scrollWidth: 'x', scrollHeight: 7.9 }, body: null },
    [0, 7],
  ],
]) {
  test(`the size of a document with ${kind}`, () => {
    const context = vm.createContext({ document });
    const before = Object.getOwnPropertyNames(context);
    const size = toPlain(vm.runInContext(readBinding('snippets/getDocumentSize.js'), context));
    assert.deepEqual(size, { width: expected[0], height: expected[1] });
    assert.deepEqual(Object.getOwnPropertyNames(context), before);
  });
}

test('the size of a document is an object also where the page has spoilt everything', () => {
  for (const spoil of [
    "Object.defineProperty(document, 'body', { get() { throw new Error('spoilt'); } })",
    "Object.defineProperty(document.documentElement, 'scrollWidth', { get() { throw 1; } })",
    'globalThis.Math = null; Array.prototype[Symbol.iterator] = null; document.documentElement = 5',
  ]) {
    const context = vm.createContext({
      document: { documentElement: { scrollWidth: 1 }, body: null },
    });
    vm.runInContext(spoil, context);
    const size = toPlain(vm.runInContext(readBinding('snippets/getDocumentSize.js'), context));
    assert.deepEqual(size, { width: 0, height: 0 }, spoil);
  }
});
