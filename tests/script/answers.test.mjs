import assert from 'node:assert/strict';
import test from 'node:test';

import { createPage, microtasks } from './support.mjs';

/** A page with a list of what its listeners heard, as texts "listener:strings". */
function createListeningPage(globals = {}) {
  const heard = [];
  const page = createPage({ globals: { ...globals, hear: (text) => heard.push(text) } });
  page.run(`
    globalThis.listener = (name, action) => (strings) => {
      hear(name + ':' + strings.join());
      if (action) action();
    };
  `);
  return { ...page, heard };
}

test('an answer reaches every listener at once, in the order of their addition', () => {
  const { heard, run } = createListeningPage();
  run("xocef.addStringListener(listener('a')); xocef.addStringListener(listener('b'))");
  run("xocef.receive(['1', '2'])");
  assert.deepEqual(heard, ['a:1,2', 'b:1,2']);
});

test('answers keep the order in which the host gave them', () => {
  const { heard, run } = createListeningPage();
  run("xocef.addStringListener(listener('a'))");
  for (let i = 0; i < 50; ++i) run(`xocef.receive(['${i}'])`);
  assert.deepEqual(
    heard,
    Array.from({ length: 50 }, (_, i) => `a:${i}`),
  );
});

test('strings of an answer pass through untouched, and other values become text', () => {
  const received = [];
  const { run } = createPage({ globals: { take: (strings) => received.push(...strings) } });
  run('xocef.addStringListener(take)');
  run(String.raw`xocef.receive(['\ud800', 'a\0b', 1, { b: 2 }, null]); xocef.receive('one')`);
  assert.deepEqual(received, ['\ud800', 'a\0b', '1', '{"b":2}', 'null', 'one']);
});

test('a listener gets a frozen array of its own page', () => {
  const { run } = createPage();
  run('xocef.addStringListener((strings) => { globalThis.got = strings; })');
  run("globalThis.given = ['a']; xocef.receive(given); given[0] = 'changed'");
  assert.deepEqual(
    run('[got[0], got instanceof Array, Object.isFrozen(got)]').join(),
    'a,true,true',
  );
});

test('an empty answer delivers nothing', () => {
  const { heard, run } = createListeningPage();
  run("xocef.addStringListener(listener('a')); xocef.receive([])");
  assert.deepEqual(heard, []);
});

test('answers before the first listener are kept and come right after the running script', async () => {
  const { heard, run } = createListeningPage();
  for (let i = 0; i < 1000; ++i) run(`xocef.receive(['${i}'])`);
  run(`
    xocef.addStringListener(listener('a'));
    hear('script ends');
  `);
  await microtasks();
  assert.deepEqual(heard, ['script ends', ...Array.from({ length: 1000 }, (_, i) => `a:${i}`)]);
});

test('listeners that are added together share the kept answers, later ones get none of them', async () => {
  const { heard, run } = createListeningPage();
  run("xocef.receive(['kept'])");
  run("xocef.addStringListener(listener('a')); xocef.addStringListener(listener('b'))");
  await microtasks();
  run("xocef.addStringListener(listener('c'))");
  await microtasks();
  assert.deepEqual(heard, ['a:kept', 'b:kept']);
});

test('a new answer does not overtake the kept ones', async () => {
  const { heard, run } = createListeningPage();
  run("xocef.receive(['1']); xocef.receive(['2'])");
  run("xocef.addStringListener(listener('a')); xocef.receive(['3'])");
  assert.deepEqual(heard, ['a:1', 'a:2', 'a:3']);
  await microtasks();
  assert.equal(heard.length, 3);
});

test('a listener that is taken back at once leaves the kept answers for the next one', async () => {
  const { heard, run } = createListeningPage();
  run("xocef.receive(['1'])");
  run("const a = listener('a'); xocef.addStringListener(a); xocef.removeStringListener(a)");
  await microtasks();
  run("xocef.receive(['2']); xocef.addStringListener(listener('b'))");
  await microtasks();
  assert.deepEqual(heard, ['b:1', 'b:2']);
});

test('answers are kept again once no listener is left', async () => {
  const { heard, run } = createListeningPage();
  run("const a = listener('a'); xocef.addStringListener(a); xocef.receive(['1'])");
  run("xocef.removeStringListener(a); xocef.receive(['2'])");
  assert.deepEqual(heard, ['a:1']);
  run('xocef.addStringListener(a)');
  await microtasks();
  assert.deepEqual(heard, ['a:1', 'a:2']);
});

test('a listener added twice is called once, and one removal takes it back', () => {
  const { heard, run } = createListeningPage();
  run("const a = listener('a'); xocef.addStringListener(listener('b'))");
  run('xocef.addStringListener(a); xocef.addStringListener(a)');
  run("xocef.receive(['1']); xocef.removeStringListener(a); xocef.receive(['2'])");
  assert.deepEqual(heard, ['b:1', 'a:1', 'b:2']);
});

test('removing what is no listener changes nothing', () => {
  const { heard, run } = createListeningPage();
  run("xocef.addStringListener(listener('a'))");
  run(
    'xocef.removeStringListener(() => {}); xocef.removeStringListener(null); xocef.removeStringListener()',
  );
  run("xocef.receive(['1'])");
  assert.deepEqual(heard, ['a:1']);
});

test('a throwing listener is reported and stops neither the others nor the next answers', () => {
  const reported = [];
  const { heard, run } = createListeningPage({
    reportError: (error) => reported.push(error.message),
  });
  run("xocef.addStringListener(() => { throw new Error('broken'); })");
  run("xocef.addStringListener(listener('a')); xocef.receive(['1']); xocef.receive(['2'])");
  assert.deepEqual(heard, ['a:1', 'a:2']);
  assert.deepEqual(reported, ['broken', 'broken']);
});

test('without reportError a throwing listener is reported to the console', () => {
  const reported = [];
  const { run } = createPage({ globals: { console: { error: (error) => reported.push(error) } } });
  run("xocef.addStringListener(() => { throw 'thrown'; }); xocef.receive(['1'])");
  assert.deepEqual(reported, ['thrown']);
});

test('a listener added during a delivery hears the next answer, a removed one no more', () => {
  const { heard, run } = createListeningPage();
  run(`
    const last = listener('last');
    const added = listener('added');
    xocef.addStringListener(listener('first', () => {
      xocef.removeStringListener(last);
      xocef.addStringListener(added);
    }));
    xocef.addStringListener(last);
    xocef.receive(['1']);
  `);
  assert.deepEqual(heard, ['first:1']);
  run("xocef.receive(['2'])");
  assert.deepEqual(heard.slice(1), ['first:2', 'added:2']);
});

test('an answer that a listener causes waits until all have heard the present one', () => {
  const { heard, run } = createListeningPage();
  run(`
    let once = true;
    xocef.addStringListener(listener('a', () => {
      if (once) xocef.receive(['nested']);
      once = false;
    }));
    xocef.addStringListener(listener('b'));
    xocef.receive(['1']);
  `);
  assert.deepEqual(heard, ['a:1', 'b:1', 'a:nested', 'b:nested']);
});

test('a listener may send', () => {
  const { calls, run } = createPage();
  run(
    "xocef.addStringListener(([name]) => xocef.sendString([name, 'seen'])); xocef.receive(['n'])",
  );
  assert.deepEqual(
    calls.map(([name, strings]) => [name, strings]),
    [['__sendString', ['n', 'seen']]],
  );
});

test('wrong arguments throw and deliver nothing', () => {
  const { heard, run } = createListeningPage();
  run("xocef.addStringListener(listener('a'))");
  for (const script of [
    'xocef.addStringListener()',
    "xocef.addStringListener('a')",
    'xocef.addStringListener({ handleEvent() {} })',
    'xocef.receive()',
    'xocef.receive([{ n: 1n }])',
  ]) {
    assert.throws(() => run(script), { name: 'TypeError' }, script);
  }
  assert.deepEqual(heard, []);
});
