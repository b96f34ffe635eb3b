// What the script tests share: the installation's files, and contexts in which they run as they do
// in the engine, with natives that record their calls.
import { readFileSync } from 'node:fs';
import vm from 'node:vm';

export const root = new URL('../../', import.meta.url);
const bindings = new URL('installation/webapps/ORBCefBindings/', root);

export const pageUrl = 'xortv://webapps/Welcome/index.html';

export function readSource(path) {
  return readFileSync(new URL(path, root), 'utf8');
}

export function readBinding(path) {
  return readFileSync(new URL(path, bindings), 'utf8');
}

const nativeDeclaration = /(?<=^ +)native function (\w+)\([\w, ]*\);/gm;

/** The names that the extension declares as natives, in their order. */
export function declaredNatives() {
  return Array.from(
    readBinding('cef_extensions.js').matchAll(nativeDeclaration),
    ([, name]) => name,
  );
}

/**
 * A context of a page with the bindings in it.
 *
 * `calls` holds an array for each call of a native: its name, then its arguments as plain values.
 * `results` gives the values that natives return. `globals` are put into the context first.
 */
export function createPage({ results = {}, globals = {} } = {}) {
  const calls = [];
  const context = vm.createContext({ location: { href: pageUrl } });
  Object.defineProperties(context, Object.getOwnPropertyDescriptors(globals));
  const native =
    (name) =>
    (...values) => {
      calls.push([name, ...values.map(toPlain)]);
      return results[name];
    };
  // The engine alone understands the declarations, so each becomes an ordinary function here.
  const source = readBinding('cef_extensions.js').replace(
    nativeDeclaration,
    (_, name) => `var ${name} = native('${name}');`,
  );
  vm.compileFunction(source, ['native'], { parsingContext: context })(native);
  return { calls, context, run: (script) => vm.runInContext(script, context) };
}

/**
 * Copies a value of a context into this one, so that it compares with values of this one. Nothing
 * that the page may have broken is used.
 */
export function toPlain(value) {
  if (Array.isArray(value))
    return Array.from({ length: value.length }, (_, i) => toPlain(value[i]));
  if (typeof value !== 'object' || value === null) return value;
  return Object.fromEntries(Object.entries(value).map(([key, item]) => [key, toPlain(item)]));
}

/** Ends when all microtasks that are waiting now have run. */
export function microtasks() {
  return new Promise((resolve) => {
    setImmediate(resolve);
  });
}

/** An event target of a fake page: keeps listeners by phase and calls them as a document does. */
export class FakeTarget {
  constructor() {
    this.listeners = [];
  }

  addEventListener(type, listener, options = false) {
    const capture = typeof options === 'object' ? Boolean(options.capture) : options;
    this.listeners.push({ type, listener, capture, passive: options.passive });
  }

  listenersOf(type) {
    return this.listeners.filter((entry) => entry.type === type);
  }

  /** Calls the capturing listeners, then `page`, then the others. */
  dispatch(type, properties = {}, page = () => {}) {
    const event = { type, target: this, isTrusted: true, defaultPrevented: false, ...properties };
    const called = this.listenersOf(type);
    for (const entry of called.filter(({ capture }) => capture)) entry.listener(event);
    page(event);
    for (const entry of called.filter(({ capture }) => !capture)) entry.listener(event);
  }
}
