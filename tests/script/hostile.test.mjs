import assert from 'node:assert/strict';
import test from 'node:test';

import { createPage, microtasks, pageUrl, toPlain } from './support.mjs';

const attempt = (script) => `try { ${script} } catch {}`;

test('the global object can be neither replaced, redefined nor deleted', () => {
  const { run } = createPage();
  run('globalThis.original = xocef');
  for (const script of [
    'xocef = {}',
    'globalThis.xocef = {}',
    'delete globalThis.xocef',
    "Object.defineProperty(globalThis, 'xocef', { value: {} })",
    "Object.defineProperty(globalThis, 'xocef', { get() {} })",
    'var xocef = xocef || {}',
    'var xocef = { sendString() {} }',
  ]) {
    run(attempt(script));
    assert.equal(run('xocef === original && typeof xocef.sendString'), 'function', script);
  }
});

test('strict code hears of an attempt to replace the global object or its functions', () => {
  const { run } = createPage();
  const inner = [
    'xocef.sendString',
    'xocef.__sendString',
    'xocef._internals',
    'xocef._internals.resolvePromise',
  ];
  for (const target of ['xocef', ...inner]) {
    assert.throws(() => run(`'use strict'; ${target} = () => {}`), { name: 'TypeError' }, target);
  }
  for (const target of inner) {
    assert.throws(() => run(`'use strict'; ${target}.extra = 1`), { name: 'TypeError' }, target);
  }
});

test('every property is locked, and every function and inner object is frozen', () => {
  const { run } = createPage();
  const open = run(`
    const found = [];
    const visit = (path, object) => {
      for (const [name, entry] of Object.entries(Object.getOwnPropertyDescriptors(object))) {
        if (entry.writable || entry.configurable || entry.get) found.push(path + name);
        if (!Object.isFrozen(entry.value)) found.push(path + name + ' (open)');
      }
    };
    visit('', xocef);
    visit('_internals.', xocef._internals);
    [Object.getOwnPropertyNames(xocef).length > 20, ...found].join();
  `);
  assert.equal(open, 'true');
});

test('only the public functions are enumerable', () => {
  const { run } = createPage();
  assert.equal(run("Object.keys(xocef).filter((name) => name.startsWith('_')).join()"), '');
  assert.equal(run("Object.keys(globalThis).includes('xocef')"), false);
});

test('the record extension can still add its own property', () => {
  const { run } = createPage();
  run("Object.defineProperty(xocef, 'Record', { value: Object.freeze({ kind: 1 }) })");
  run(attempt('xocef.Record = 2'));
  assert.equal(run('xocef.Record.kind'), 1);
});

test('a page without any intact built-in still sends and receives', async () => {
  const { calls, run } = createPage({ results: { __registerPromise: 7 } });
  run(`
    // The page's own listeners keep what they need before everything breaks.
    globalThis.heard = [];
    const define = Object.defineProperty;
    const note = (value) =>
      define(heard, heard.length, { __proto__: null, value, writable: true, configurable: true });
    const a = (strings) => note('a:' + strings[0] + strings.length);
    const b = (strings) => note('b:' + strings[0] + strings.length);
    const broken = () => { throw new Failure('broken'); };
    const Failure = Error;

    const targets = [Object, Array, Function, String, Number, Promise, Map, Set, Symbol, Error];
    const objects = [...targets.map((target) => target.prototype), ...targets, JSON, Reflect, Math];
    const members = objects.flatMap((object) =>
      Reflect.ownKeys(object)
        .filter((key) => typeof Object.getOwnPropertyDescriptor(object, key).value === 'function')
        .map((key) => ({ object, key })));
    const globals = Object.getOwnPropertyNames(globalThis)
      .filter((name) => !['heard', 'location', 'xocef', 'globalThis'].includes(name))
      .map((key) => ({ object: globalThis, key }));
    // What careless writes and reads of plain objects and arrays would run into.
    const traps = ['0', '1', '2', 'get', 'set', 'next', 'strings', 'recordable', 'toJSON']
      .flatMap((key) => [{ object: Object.prototype, key }, { object: Array.prototype, key }]);
    const change = (list, descriptor) => {
      for (let i = 0; i < list.length; ++i) {
        try { define(list[i].object, list[i].key, descriptor); } catch {}
      }
    };
    change(members, { __proto__: null, value: broken });
    change(globals, { __proto__: null, value: broken });
    // JSON asks for toJSON, which is the page's own affair: it stays harmless here.
    change(traps, { __proto__: null, get() {}, set: broken });
  `);
  assert.throws(() => run('[].push(1)'), { message: 'broken' });
  assert.throws(() => run("const list = []; list[0] = 'a'"), { message: 'broken' });
  run(
    "xocef.sendString('one'); xocef.sendString(['two', 'three', 4, { a: 1 }]); xocef.zoomChanged(5)",
  );
  run("xocef.saveValue('repo', 'name', { a: 1 }); xocef.loadValue('repo', 'name')");
  run("xocef.receive(['kept', 'x'])");
  run('xocef.addStringListener(a); xocef.addStringListener(broken); xocef.addStringListener(b)');
  await microtasks();
  run("xocef.receive(['new']); xocef.removeStringListener(a); xocef.receive('last')");
  assert.deepEqual(
    calls.map(([name, first]) => [name, first]),
    [
      ['__sendString', ['one']],
      ['__sendString', ['two', 'three', '4', '{"a":1}']],
      ['__notifyZoomChange', 5],
      ['__registerPromise', calls[3][1]],
      ['__saveValue', 7],
      ['__registerPromise', calls[5][1]],
      ['__loadValue', 7],
    ],
  );
  assert.deepEqual(calls[4][2], { origin: 'repo', name: 'name', value: '{"a":1}' });
  assert.deepEqual(calls[0][2], { url: pageUrl, line: 0, column: 0 });
  assert.deepEqual(toPlain(run('heard')), ['a:kept2', 'b:kept2', 'a:new1', 'b:new1', 'b:last1']);
});

test('a page that breaks error reporting still gets every answer', () => {
  const heard = [];
  const { run } = createPage({
    globals: {
      heard,
      reportError() {
        throw new Error('no report');
      },
    },
  });
  run(`
    xocef.addStringListener(() => { throw 1; });
    xocef.addStringListener((strings) => heard.push(strings[0]));
    xocef.receive('1');
    xocef.receive('2');
  `);
  assert.deepEqual(heard, ['1', '2']);
});

test('running out of stack in one call leaves the next ones whole', () => {
  const { calls, run } = createPage();
  run(`
    globalThis.heard = 0;
    xocef.addStringListener(() => { ++heard; });
    const dig = () => { try { dig(); } finally { xocef.receive('deep'); } };
    try { dig(); } catch {}
    heard = 0;
    xocef.receive('after');
    xocef.sendString('after');
  `);
  assert.ok(run('heard') >= 1);
  assert.deepEqual(calls.at(-1).slice(0, 2), ['__sendString', ['after']]);
});

test('works where code from strings is forbidden', () => {
  const { calls, run } = createPage();
  run(`
    globalThis.eval = () => { throw new Error('forbidden'); };
    globalThis.Function = eval;
    xocef.addStringListener(([text]) => xocef.sendString(text));
    xocef.receive('back');
  `);
  assert.deepEqual(calls[0].slice(0, 2), ['__sendString', ['back']]);
});

test('functions work detached from the object', () => {
  const { calls, run } = createPage();
  run(
    "const { sendString, addStringListener, receive } = xocef; addStringListener(sendString.bind(null, 'seen')); receive([])",
  );
  run("const send = xocef.sendString; send('a'); send.call(7, 'b')");
  assert.deepEqual(
    calls.map(([, strings]) => strings[0]),
    ['a', 'b'],
  );
});
