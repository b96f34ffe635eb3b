/**
 * The bindings of a web page to the host: the global object `xocef`.
 *
 * The engine registers this file as a V8 extension and runs it in every context (the page, each of
 * its frames, the developer tools) before any script of the page. Three things follow:
 *
 * - `native function name();` is extension syntax. It binds a function of the module, and an
 *   ordinary script parser refuses it.
 * - The text is taken byte by byte, so the file holds ASCII only, and nothing in it may throw while
 *   it loads: a context whose extension fails is not created at all.
 * - There may be no window or document yet. Both are looked at only when a page calls a function.
 *
 * The page shares this context and may replace any global or prototype afterwards, by accident or
 * not. What runs later therefore uses only the functions kept below, the language's own operators
 * and properties that were defined as own properties.
 */
(function () {
  'use strict';

  // The functions of the module, in the order in which the module compares their names.
  native function __sendDocumentSize();
  native function __notifyDOMReady();
  native function __notifyLoad();
  native function __notifyUnload();
  native function __notifyZoomChange(step);
  native function __notifyZoomReset();
  native function __sendString(strings, position, options);
  native function __loadHomepage();
  native function __openDevTools();
  native function __closeDevTools();
  native function __getEnv(name);
  native function __registerPromise(executor);
  native function __resolvePromise(key, value);
  native function __rejectPromise(key, value);
  native function __saveValue(key, request);
  native function __loadValue(key, request);

  const natives = {
    __sendDocumentSize,
    __notifyDOMReady,
    __notifyLoad,
    __notifyUnload,
    __notifyZoomChange,
    __notifyZoomReset,
    __sendString,
    __loadHomepage,
    __openDevTools,
    __closeDevTools,
    __getEnv,
    __registerPromise,
    __resolvePromise,
    __rejectPromise,
    __saveValue,
    __loadValue,
  };

  const { isArray } = Array;
  const { stringify } = JSON;
  const { isFinite: isFiniteNumber } = Number;
  const { apply } = Reflect;
  const { includes } = String.prototype;
  const { defineProperty, entries, freeze, setPrototypeOf } = Object;
  const arrayPrototype = Array.prototype;
  const toPrimitiveText = String;
  const ArgumentError = TypeError;
  const Failure = Error;
  const PagePromise = Promise;

  /** An array to be filled by index: one that inherits no setter which a page made for an index. */
  function bareArray() {
    return setPrototypeOf([], null);
  }

  function indexOf(list, value) {
    for (let i = 0; i < list.length; ++i) {
      if (list[i] === value) return i;
    }
    return -1;
  }

  function isObject(value) {
    return (typeof value === 'object' && value !== null) || typeof value === 'function';
  }

  function toText(value) {
    if (typeof value === 'string') return value;
    if (isObject(value)) {
      const json = stringify(value);
      if (json !== undefined) return json;
    }
    return toPrimitiveText(value);
  }

  function toStrings(value) {
    if (!isArray(value)) return [toText(value)];
    const strings = bareArray();
    const { length } = value;
    for (let i = 0; i < length; ++i) strings[i] = toText(value[i]);
    return setPrototypeOf(strings, arrayPrototype);
  }

  /** The address of the document; empty where it cannot be read, as in a frame that was removed. */
  function documentUrl() {
    try {
      return toPrimitiveText(location.href);
    } catch {
      return '';
    }
  }

  /** Building a stack trace at each call would cost far more than the call, so none is built. */
  function toPosition(position) {
    if (position === undefined) return { url: documentUrl(), line: 0, column: 0 };
    if (!isObject(position)) {
      throw new ArgumentError('xocef.sendString: options.position must be an object');
    }
    const { url, line, column } = position;
    return {
      url: url === undefined ? documentUrl() : toText(url),
      line: line | 0,
      column: column | 0,
    };
  }

  // Answers of the host that no listener has had yet: a chain, oldest first.
  let oldest = null;
  let newest = null;
  // Replaced and never changed, so that a delivery in progress keeps the list it began with.
  let listeners = bareArray();
  let delivering = false;

  function enqueue(strings) {
    const answer = { strings, next: null };
    if (newest === null) {
      oldest = answer;
    } else {
      newest.next = answer;
    }
    newest = answer;
  }

  function dequeue() {
    const { strings, next } = oldest;
    oldest = next;
    if (next === null) newest = null;
    return strings;
  }

  /** Shows an error of a listener as the engine would show an uncaught one. */
  function report(error) {
    try {
      if (typeof reportError === 'function') {
        reportError(error);
      } else {
        console.error(error);
      }
    } catch {
      // A page whose own reporting is broken must still receive the answers that follow.
    }
  }

  function call(listener, strings) {
    try {
      listener(strings);
    } catch (error) {
      report(error);
    }
  }

  function deliver() {
    // A listener that causes another answer must not overtake the one in progress.
    if (delivering) return;
    delivering = true;
    try {
      while (oldest !== null && listeners.length > 0) {
        const strings = dequeue();
        const present = listeners;
        for (let i = 0; i < present.length; ++i) {
          // One that an earlier listener took back a moment ago is not called any more.
          if (indexOf(listeners, present[i]) >= 0) call(present[i], strings);
        }
      }
    } finally {
      delivering = false;
    }
  }

  /** `await` uses the language's own promises, whatever a page has made of `Promise`. */
  async function deliverSoon() {
    await undefined;
    deliver();
  }

  // The host answers a request for a value with a script that names the repository and the value
  // between single quotes. One of these characters would end the script or the text instead, and
  // the promise would wait for ever.
  const FORBIDDEN_IN_NAMES = "'\\\n\r\0";

  function toName(value, what) {
    if (typeof value !== 'string' || value === '') {
      throw new ArgumentError(`xocef: the ${what} must be a string that is not empty`);
    }
    for (let i = 0; i < FORBIDDEN_IN_NAMES.length; ++i) {
      if (apply(includes, value, [FORBIDDEN_IN_NAMES[i]])) {
        throw new ArgumentError(
          `xocef: the ${what} must hold no quotation mark ', backslash, line end or NUL`,
        );
      }
    }
    return value;
  }

  /** The JSON text of a value, which is JavaScript as well: the host gives it back as such. */
  function toStoredText(value) {
    const text = stringify(value);
    if (text === undefined) {
      throw new ArgumentError('xocef.saveValue: the value has no JSON text');
    }
    // The one text that means something else in JavaScript than in JSON.
    if (apply(includes, text, ['"__proto__":'])) {
      throw new ArgumentError('xocef.saveValue: no property may be named __proto__');
    }
    return text;
  }

  /**
   * A promise that the host settles. Whatever is thrown here rejects it.
   *
   * @param {function(number, object): void} native Sends the request, with the key under which the
   *     module keeps the promise.
   * @param {function(): object} prepare Gives the request, from arguments that it checks.
   */
  function ask(native, prepare) {
    return new PagePromise((resolve, reject) => {
      const request = prepare();
      const key = __registerPromise({ resolve, reject });
      if (typeof key !== 'number') throw new Failure('xocef: this page has no view any more');
      native(key, request);
    });
  }

  const functions = {
    /**
     * Sends strings to the host, in one message. The messages of a page arrive in the order of the
     * calls.
     *
     * A string is sent as it is, an object as its JSON text or, if it has none (a function), as
     * `String(value)`, and everything else as `String(value)`. An error of that conversion is
     * thrown to the caller, and nothing is sent.
     *
     * @param {*} value An array, whose elements are sent as so many strings, or one value, which is
     *     sent as one string. The host hears nothing of an empty array.
     * @param {object} [options]
     * @param {boolean} [options.recordable=false] Whether a recording may contain the message.
     * @param {boolean} [options.captureAll=true] Whether a recording takes all of its strings.
     * @param {{url?: string, line?: number, column?: number}} [options.position] Where in the
     *     page's source the call stands. By default the document's address, line 0, column 0.
     * @throws {TypeError} Without arguments, or if `options` or `options.position` is no object.
     */
    sendString(value, options) {
      if (arguments.length === 0) throw new ArgumentError('xocef.sendString: a value is required');
      const strings = toStrings(value);
      if (options === undefined || options === null) {
        __sendString(strings, toPosition(undefined), { recordable: false, captureAll: true });
        return;
      }
      if (!isObject(options)) {
        throw new ArgumentError('xocef.sendString: options must be an object');
      }
      const { recordable, captureAll, position } = options;
      __sendString(strings, toPosition(position), {
        recordable: !!recordable,
        captureAll: captureAll === undefined || !!captureAll,
      });
    },

    /**
     * Adds a function that receives the host's answers: a frozen array of strings for each answer,
     * in the order in which the host gave them. Listeners are called in the order of their
     * addition. Answers that came while there was no listener are delivered right after the running
     * script.
     *
     * @param {function(ReadonlyArray<string>): void} listener Added once, however often given.
     * @throws {TypeError} If `listener` is not a function.
     */
    addStringListener(listener) {
      if (typeof listener !== 'function') {
        throw new ArgumentError('xocef.addStringListener: the listener must be a function');
      }
      if (indexOf(listeners, listener) >= 0) return;
      const extended = bareArray();
      for (let i = 0; i < listeners.length; ++i) extended[i] = listeners[i];
      extended[extended.length] = listener;
      listeners = extended;
      if (oldest !== null) deliverSoon();
    },

    /**
     * Takes back a listener. A function that is none is ignored. Without any listener, answers are
     * kept for the next one that is added.
     *
     * @param {function(ReadonlyArray<string>): void} listener
     */
    removeStringListener(listener) {
      if (indexOf(listeners, listener) < 0) return;
      const remaining = bareArray();
      for (let i = 0; i < listeners.length; ++i) {
        if (listeners[i] !== listener) remaining[remaining.length] = listeners[i];
      }
      listeners = remaining;
    },

    /**
     * The one entry for the host: a script of the host calls it to hand strings to the page. Values
     * that are no strings are converted as in `sendString`. An empty array delivers nothing.
     *
     * @param {*} value An array of strings, or one string.
     * @throws {TypeError} Without arguments.
     */
    receive(value) {
      if (arguments.length === 0) throw new ArgumentError('xocef.receive: a value is required');
      const strings = freeze(toStrings(value));
      if (strings.length === 0) return;
      enqueue(strings);
      deliver();
    },

    /**
     * Saves a value in a store of the host, where it outlives the page and the host.
     *
     * Whatever has a JSON text can be saved. A value of the same name is replaced.
     *
     * @param {string} repository The set of values that this one belongs to, such as the name of
     *     the application.
     * @param {string} name
     * @param {*} value
     * @returns {Promise<void>} Resolved when the host has saved the value; rejected with what the
     *     host says if it refuses, or with a `TypeError` if an argument is wrong.
     */
    saveValue(repository, name, value) {
      return ask(__saveValue, () => ({
        origin: toName(repository, 'repository'),
        name: toName(name, 'name'),
        value: toStoredText(value),
      }));
    },

    /**
     * Loads a value that was saved.
     *
     * @param {string} repository
     * @param {string} name
     * @returns {Promise<*>} Resolved with the value; rejected with an `Error` if there is none, or
     *     with a `TypeError` if an argument is wrong.
     */
    loadValue(repository, name) {
      return ask(__loadValue, () => ({
        origin: toName(repository, 'repository'),
        name: toName(name, 'name'),
      }));
    },

    /**
     * Removes a value that was saved: from then on it cannot be loaded.
     *
     * @param {string} repository
     * @param {string} name
     * @returns {Promise<void>} Resolved also if there was no such value; rejected as by `saveValue`.
     */
    removeValue(repository, name) {
      // To the host an empty text and none are the same.
      return ask(__saveValue, () => ({
        origin: toName(repository, 'repository'),
        name: toName(name, 'name'),
        value: '',
      }));
    },

    /** Tells the host the size of the document in CSS pixels. */
    sendDocumentSize() {
      __sendDocumentSize();
    },

    /**
     * Asks for a zoom step, in hundredths of a zoom level. A level scales the page by 1.2. Positive
     * steps zoom in, and 0 does nothing.
     *
     * @param {number} step
     * @throws {TypeError} If `step` is not a finite number.
     */
    zoomChanged(step) {
      if (!isFiniteNumber(step)) {
        throw new ArgumentError('xocef.zoomChanged: step must be a finite number');
      }
      if (step !== 0) __notifyZoomChange(step);
    },

    /** Asks for the page's original size. */
    zoomReset() {
      __notifyZoomReset();
    },

    /** Loads the address that the view was opened with. */
    loadHome() {
      __loadHomepage();
    },

    /** Opens the developer tools for the view. */
    openDevTools() {
      __openDevTools();
    },

    /** Closes the developer tools of the view. */
    closeDevTools() {
      __closeDevTools();
    },

    /**
     * Reads an environment variable of the process that renders the page.
     *
     * @param {string} name
     * @returns {string} Its value, or the empty string if it is not set.
     * @throws {TypeError} If `name` is not a string or is empty.
     */
    getEnv(name) {
      if (typeof name !== 'string' || name === '') {
        throw new ArgumentError('xocef.getEnv: name must be a string that is not empty');
      }
      return __getEnv(name);
    },
  };

  /** For the scripts with which the browser process settles a promise; no page calls these. */
  const internals = freeze({
    resolvePromise: freeze(function resolvePromise(key, value) {
      __resolvePromise(key, value);
    }),
    rejectPromise: freeze(function rejectPromise(key, value) {
      __rejectPromise(key, value);
    }),
  });

  // Every property is locked. The object itself stays open: the extension of record and replay runs
  // adds its own, locked property, and what a page might add takes nothing away from anyone.
  const xocef = {};
  function lock(target, name, value, enumerable) {
    defineProperty(target, name, {
      __proto__: null,
      value: freeze(value),
      writable: false,
      enumerable,
      configurable: false,
    });
  }
  for (const [name, value] of entries(functions)) lock(xocef, name, value, true);
  for (const [name, value] of entries(natives)) lock(xocef, name, value, false);
  lock(xocef, '_internals', internals, false);

  defineProperty(globalThis, 'xocef', {
    __proto__: null,
    value: xocef,
    writable: false,
    enumerable: false,
    configurable: false,
  });
})();
