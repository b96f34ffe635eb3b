import assert from 'node:assert/strict';
import test from 'node:test';

import { createPage, toPlain } from './support.mjs';

/** A page whose promises get the key 7; `settle` are the functions that the module keeps for it. */
function createWaitingPage(options) {
  const page = createPage({ results: { __registerPromise: 7 }, ...options });
  return { ...page, settle: () => page.calls.find(([name]) => name === '__registerPromise')[1] };
}

/** How a promise of the page ends, as far as this context can compare it. */
async function rejection(promise) {
  try {
    await promise;
  } catch (error) {
    return error;
  }
  return assert.fail('the promise was not rejected');
}

test('saving registers the promise first and sends the JSON text under its key', async () => {
  const { calls, run, settle } = createWaitingPage();
  const promise = run("xocef.saveValue('repo', 'name', { a: [1, 'b'], c: null })");
  assert.deepEqual(
    calls.map(([name]) => name),
    ['__registerPromise', '__saveValue'],
  );
  assert.deepEqual(calls[1].slice(1), [
    7,
    { origin: 'repo', name: 'name', value: '{"a":[1,"b"],"c":null}' },
  ]);
  settle().resolve(undefined);
  assert.equal(await promise, undefined);
});

test('loading sends no value and resolves with what the host gives', async () => {
  const { calls, run, settle } = createWaitingPage();
  const promise = run("xocef.loadValue('repo', 'name')");
  assert.deepEqual(calls[1], ['__loadValue', 7, { origin: 'repo', name: 'name' }]);
  settle().resolve('stored');
  assert.equal(await promise, 'stored');
});

test('removing saves the empty text, which counts as none', async () => {
  const { calls, run, settle } = createWaitingPage();
  const promise = run("xocef.removeValue('repo', 'name')");
  assert.deepEqual(calls[1], ['__saveValue', 7, { origin: 'repo', name: 'name', value: '' }]);
  settle().resolve(undefined);
  assert.equal(await promise, undefined);
});

test("the host's refusal rejects with what the host says", async () => {
  const { run, settle } = createWaitingPage();
  const promise = run("xocef.loadValue('repo', 'name')");
  settle().reject('why');
  assert.equal(await rejection(promise), 'why');
});

for (const [value, text] of [
  ['null', 'null'],
  ["''", '""'],
  ['NaN', 'null'],
  ["'a\\0\\u2028</script>'", '"a\\u0000\u2028</script>"'],
  ["'\\ud800'", '"\\ud800"'],
  ['new Date(0)', '"1970-01-01T00:00:00.000Z"'],
  ['[undefined]', '[null]'],
  ["'__proto__'", '"__proto__"'],
  ['\'"__proto__":\'', '"\\"__proto__\\":"'],
]) {
  test(`${value} is saved as a text that is JavaScript and JSON alike`, async () => {
    const { calls, run } = createWaitingPage();
    run(`xocef.saveValue('r', 'n', ${value})`);
    const stored = calls[1][2].value;
    assert.equal(stored, text);
    assert.deepEqual(toPlain(run(`(${stored})`)), JSON.parse(stored));
  });
}

for (const value of [
  'undefined',
  '() => {}',
  'Symbol()',
  '1n',
  '(() => { const a = {}; a.a = a; return a; })()',
  "JSON.parse('{\"__proto__\": 1}')",
  "[{ a: JSON.parse('{\"__proto__\": {}}') }]",
]) {
  test(`${value} cannot be saved, and nothing is sent`, async () => {
    const { calls, run } = createWaitingPage();
    assert.equal((await rejection(run(`xocef.saveValue('r', 'n', ${value})`))).name, 'TypeError');
    assert.deepEqual(calls, []);
  });
}

test("an error of the page's own conversion comes out unchanged", async () => {
  const { calls, run } = createWaitingPage();
  const promise = run("xocef.saveValue('r', 'n', { toJSON() { throw 'own'; } })");
  assert.equal(await rejection(promise), 'own');
  assert.deepEqual(calls, []);
});

test('a wrong repository or name rejects and sends nothing', async () => {
  const { calls, run } = createWaitingPage();
  for (const name of [
    ...['undefined', 'null', '1', '{}', "['a']", "''"],
    ...["'it\\'s'", "'a\\\\b'", "'a\\nb'", "'a\\rb'", "'a\\0b'"],
  ]) {
    for (const call of [
      `xocef.loadValue(${name}, 'n')`,
      `xocef.loadValue('r', ${name})`,
      `xocef.saveValue(${name}, 'n', 1)`,
      `xocef.saveValue('r', ${name}, 1)`,
      `xocef.removeValue(${name}, 'n')`,
      `xocef.removeValue('r', ${name})`,
    ]) {
      const { name: kind, message } = await rejection(run(call));
      assert.equal(kind, 'TypeError', call);
      assert.match(message, /^xocef: the (repository|name) must /, call);
    }
  }
  assert.deepEqual(calls, []);
});

test('names of any other characters are sent as they are', () => {
  const { calls, run } = createWaitingPage();
  run(String.raw`xocef.loadValue('a "b" \u2028/;\u20ac', '\ud83d\ude00 \`x\`')`);
  assert.deepEqual(calls[1][2], { origin: 'a "b" \u2028/;\u20ac', name: '\ud83d\ude00 `x`' });
});

test('without a view the promise is rejected at once', async () => {
  const { calls, run } = createPage();
  for (const call of [
    "saveValue('r', 'n', 1)",
    "loadValue('r', 'n')",
    "removeValue('r', 'n')",
  ]) {
    const error = await rejection(run(`xocef.${call}`));
    assert.equal(error.message, 'xocef: this page has no view any more');
  }
  assert.deepEqual([...new Set(calls.map(([name]) => name))], ['__registerPromise']);
});

test('a promise of the page is an ordinary one', () => {
  const { run } = createWaitingPage();
  assert.equal(run("xocef.loadValue('r', 'n') instanceof Promise"), true);
});
