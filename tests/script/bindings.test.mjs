import assert from 'node:assert/strict';
import test from 'node:test';

import { createPage, declaredNatives, pageUrl, readBinding, readSource } from './support.mjs';

const position = { url: pageUrl, line: 0, column: 0 };
const defaults = { recordable: false, captureAll: true };

/** What a page sends with the call `script`, which must be one message. */
function sent(script, page = createPage()) {
  page.run(script);
  assert.equal(page.calls.length, 1);
  const [name, strings, where, options] = page.calls[0];
  assert.equal(name, '__sendString');
  assert.equal(page.calls[0].length, 4);
  return { strings, where, options };
}

test('the extension declares the natives of the general dispatch, in its order', () => {
  assert.deepEqual(declaredNatives(), [
    '__sendDocumentSize',
    '__notifyDOMReady',
    '__notifyLoad',
    '__notifyUnload',
    '__notifyZoomChange',
    '__notifyZoomReset',
    '__sendString',
    '__loadHomepage',
    '__openDevTools',
    '__closeDevTools',
    '__getEnv',
    '__registerPromise',
    '__resolvePromise',
    '__rejectPromise',
    '__saveValue',
    '__loadValue',
  ]);
});

test('the extension declares every native that the module dispatches, in the same order', () => {
  const source = readSource('ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefV8Handler.cpp');
  const constants = new Map(
    Array.from(source.matchAll(/ (k\w+) = "(__\w+)";/g), ([, constant, name]) => [constant, name]),
  );
  const rows = Array.from(source.matchAll(/^ {4}\{(?:"(__\w+)"|(k\w+)), \d+, /gm));
  const dispatched = rows.map(([, name, constant]) => name ?? constants.get(constant));
  assert.ok(dispatched.includes('__sendString'), 'the table of the module was not found');
  const declared = declaredNatives();
  assert.deepEqual(
    dispatched,
    declared.filter((name) => dispatched.includes(name)),
  );
});

test('every native stays reachable under its own name', () => {
  const { calls, run } = createPage();
  for (const name of declaredNatives()) run(`xocef.${name}(7, 'a')`);
  assert.deepEqual(
    calls,
    declaredNatives().map((name) => [name, 7, 'a']),
  );
});

test('the extension is ASCII, which is how the engine reads it', () => {
  assert.match(readBinding('cef_extensions.js'), /^[\x00-\x7f]+$/);
});

test('the extension touches neither window nor document while it loads', () => {
  const touched = [];
  const globals = {};
  for (const name of ['window', 'document', 'location', 'navigator', 'console', 'reportError']) {
    Object.defineProperty(globals, name, { get: () => touched.push(name), configurable: true });
  }
  const { run } = createPage({ globals });
  assert.equal(run('typeof xocef'), 'object');
  assert.deepEqual(touched, []);
  run("xocef.sendString('a')");
  assert.deepEqual(touched, ['location']);
});

test('one string goes out as it is, with the address of the page and the default options', () => {
  assert.deepEqual(sent("xocef.sendString('hello')"), {
    strings: ['hello'],
    where: position,
    options: defaults,
  });
});

test('an array goes out as one message in its order', () => {
  assert.deepEqual(sent("xocef.sendString(['b', 'a', '', 'b'])").strings, ['b', 'a', '', 'b']);
  assert.deepEqual(sent('xocef.sendString([])').strings, []);
});

test('messages go out in the order of the calls', () => {
  const { calls, run } = createPage();
  run("for (let i = 0; i < 100; ++i) xocef.sendString(['n', i])");
  assert.deepEqual(
    calls.map(([, strings]) => strings[1]),
    Array.from({ length: 100 }, (_, i) => `${i}`),
  );
});

test('lone surrogates, NUL, line ends and long texts pass through untouched', () => {
  const texts = ['\ud800', '\udc00a', 'a\0b', '\0', '\r\n\u2028', '\ud83d\ude00', 'x'.repeat(1e6)];
  const page = createPage({ globals: { texts } });
  assert.deepEqual(sent('xocef.sendString(texts)', page).strings, texts);
  assert.deepEqual(sent('xocef.sendString(texts[2])', createPage({ globals: { texts } })).strings, [
    'a\0b',
  ]);
});

for (const [value, text] of [
  ['0', '0'],
  ['-0', '0'],
  ['1.5', '1.5'],
  ['NaN', 'NaN'],
  ['12345678901234567890n', '12345678901234567890'],
  ['true', 'true'],
  ['null', 'null'],
  ['undefined', 'undefined'],
  ["Symbol('s')", 'Symbol(s)'],
  ['{ a: [1, "b"], c: null }', '{"a":[1,"b"],"c":null}'],
  ['new Date(0)', '"1970-01-01T00:00:00.000Z"'],
  ['{ toJSON: () => undefined, toString: () => "own" }', 'own'],
  ['function f() {}', 'function f() {}'],
]) {
  test(`${value} goes out as ${text}`, () => {
    assert.deepEqual(sent(`xocef.sendString((${value}))`).strings, [text]);
    assert.deepEqual(sent(`xocef.sendString(['x', (${value})])`).strings, ['x', text]);
  });
}

test('an array within the array goes out as its JSON text, a hole as undefined', () => {
  assert.deepEqual(sent('xocef.sendString([[1, "a"], , 2])').strings, [
    '[1,"a"]',
    'undefined',
    '2',
  ]);
});

test("a value that cannot become text is the caller's error, and nothing goes out", () => {
  for (const value of [
    '(() => { const a = {}; a.a = a; return a; })()',
    '{ n: 1n }',
    '[{ n: 1n }]',
  ]) {
    const { calls, run } = createPage();
    assert.throws(() => run(`xocef.sendString(['first', ${value}].flat())`), { name: 'TypeError' });
    assert.deepEqual(calls, []);
  }
});

test('options are carried as booleans, and an undefined one keeps its default', () => {
  for (const [given, expected] of [
    ['{}', defaults],
    ['null', defaults],
    ['undefined', defaults],
    ['{ recordable: true }', { recordable: true, captureAll: true }],
    ['{ captureAll: false }', { recordable: false, captureAll: false }],
    ['{ recordable: 1, captureAll: 0 }', { recordable: true, captureAll: false }],
    ['{ recordable: undefined, captureAll: undefined }', defaults],
    ['{ captureAll: null }', { recordable: false, captureAll: false }],
  ]) {
    assert.deepEqual(sent(`xocef.sendString('a', ${given})`).options, expected, given);
  }
});

test('a given position is carried with whole numbers and the address of the page by default', () => {
  for (const [given, expected] of [
    ['{ line: 3, column: 9 }', { url: pageUrl, line: 3, column: 9 }],
    ["{ url: 'app.js', line: 3.9 }", { url: 'app.js', line: 3, column: 0 }],
    ["{ line: 'x', column: null }", position],
  ]) {
    assert.deepEqual(sent(`xocef.sendString('a', { position: ${given} })`).where, expected, given);
  }
});

test('a page whose address cannot be read sends an empty one', () => {
  const location = Object.defineProperty({}, 'href', {
    get() {
      throw new Error('no address');
    },
  });
  assert.equal(sent("xocef.sendString('a')", createPage({ globals: { location } })).where.url, '');
});

test('wrong arguments of sendString throw, and nothing goes out', () => {
  const { calls, run } = createPage();
  for (const script of [
    'xocef.sendString()',
    "xocef.sendString('a', 'b')",
    "xocef.sendString('a', 1)",
    "xocef.sendString('a', { position: 7 })",
    "['a', 'b'].forEach(xocef.sendString)",
  ]) {
    assert.throws(
      () => run(script),
      { name: 'TypeError', message: /^xocef\.sendString: / },
      script,
    );
  }
  assert.deepEqual(calls, []);
});

test('ten thousand messages take no noticeable time', () => {
  const { calls, run } = createPage();
  const milliseconds = run(`
    const start = Date.now();
    for (let i = 0; i < 10000; ++i) xocef.sendString(['name', 'text of some length']);
    Date.now() - start;
  `);
  assert.equal(calls.length, 10000);
  // A stack trace at each call alone would take several times as long.
  assert.ok(milliseconds < 1000, `${milliseconds} ms`);
});

for (const [script, call] of [
  ['xocef.sendDocumentSize(1)', ['__sendDocumentSize']],
  ['xocef.zoomChanged(40)', ['__notifyZoomChange', 40]],
  ['xocef.zoomChanged(-0.5)', ['__notifyZoomChange', -0.5]],
  ['xocef.zoomReset()', ['__notifyZoomReset']],
  ['xocef.loadHome()', ['__loadHomepage']],
  ['xocef.openDevTools()', ['__openDevTools']],
  ['xocef.closeDevTools()', ['__closeDevTools']],
  ["xocef.getEnv('HOME')", ['__getEnv', 'HOME']],
  ['xocef._internals.resolvePromise(5, undefined)', ['__resolvePromise', 5, undefined]],
  ['xocef._internals.resolvePromise(5)', ['__resolvePromise', 5, undefined]],
  ["xocef._internals.rejectPromise(6, 'why')", ['__rejectPromise', 6, 'why']],
]) {
  test(`${script} calls its native`, () => {
    const { calls, run } = createPage();
    run(script);
    assert.deepEqual(calls, [call]);
  });
}

test('a zoom step of 0 does nothing, and one that is no finite number throws', () => {
  const { calls, run } = createPage();
  run('xocef.zoomChanged(0); xocef.zoomChanged(-0)');
  for (const step of ['', 'NaN', 'Infinity', "'40'", 'null']) {
    assert.throws(() => run(`xocef.zoomChanged(${step})`), { name: 'TypeError' }, step);
  }
  assert.deepEqual(calls, []);
});

test('getEnv gives what the native gives, and wants a name', () => {
  const { calls, run } = createPage({ results: { __getEnv: 'value' } });
  assert.equal(run("xocef.getEnv('NAME')"), 'value');
  for (const name of ['', "''", '1', 'null']) {
    assert.throws(() => run(`xocef.getEnv(${name})`), { name: 'TypeError' }, name);
  }
  assert.equal(calls.length, 1);
});

test('every public function is documented', () => {
  const { run } = createPage();
  const page = readSource('docs/script-api.md');
  const names = run('Object.keys(xocef)');
  assert.ok(names.includes('sendString'));
  for (const name of names) assert.ok(page.includes(`### \`xocef.${name}(`), name);
});
