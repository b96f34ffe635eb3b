/**
 * The types of `xocef`, the object that a page in a view has besides what every browser gives it.
 *
 * An editor takes them from `jsconfig.json` in the folder above, or from this line in a script:
 *
 *     /// <reference path="../ORBCefBindings/xocef.d.ts" />
 */

/** What a page may say of a message that it sends. */
interface XocefSendOptions {
  /** Whether a recording may contain the message; by default it may not. */
  recordable?: boolean;
  /** Whether a recording takes all strings of the message; by default it does. */
  captureAll?: boolean;
  /** Where in the page's source the call stands; by default the page's address, line 0, column 0. */
  position?: {
    url?: string;
    line?: number;
    column?: number;
  };
}

/** Receives an answer of the host. */
type XocefStringListener = (strings: ReadonlyArray<string>) => void;

interface Xocef {
  /**
   * Sends strings to the host, in one message. The messages of a page arrive in the order of the
   * calls.
   *
   * A string is sent as it is, an object as its JSON text, everything else as `String(value)`.
   *
   * @param value An array, whose elements are sent as so many strings, or one value, which is sent
   *     as one string. The host hears nothing of an empty array.
   * @throws TypeError if a value cannot become text, or `options` is no object.
   */
  readonly sendString: (value: unknown, options?: XocefSendOptions | null) => void;

  /**
   * Adds a function that receives the host's answers, in the order in which the host gave them.
   * Answers that came while there was no listener are delivered right after the running script.
   *
   * @param listener Added once, however often given.
   * @throws TypeError if it is no function.
   */
  readonly addStringListener: (listener: XocefStringListener) => void;

  /** Takes back a listener. Without any, answers are kept for the next one that is added. */
  readonly removeStringListener: (listener: XocefStringListener) => void;

  /**
   * The one entry for the host: a script of the host calls it to hand strings to the page.
   *
   * @param value An array of strings, or one string. An empty array delivers nothing.
   */
  readonly receive: (value: unknown) => void;

  /**
   * Saves a value in a store of the host, where it outlives the page and the host. A value of the
   * same name is replaced.
   *
   * @param repository The set of values that this one belongs to, such as the name of the
   *     application. Like `name` not empty, and without `'`, backslash, line end and NUL.
   * @param value Whatever has a JSON text.
   * @returns Resolved when the host has saved the value; rejected with what the host says if it
   *     refuses, or with a `TypeError` if an argument is wrong.
   */
  readonly saveValue: (repository: string, name: string, value: unknown) => Promise<void>;

  /**
   * Loads a value that was saved.
   *
   * @returns Resolved with the value; rejected with an `Error` if there is none, or with a
   *     `TypeError` if an argument is wrong.
   */
  readonly loadValue: <T = unknown>(repository: string, name: string) => Promise<T>;

  /**
   * Removes a value that was saved.
   *
   * @returns Resolved also if there was no such value; rejected as by `saveValue`.
   */
  readonly removeValue: (repository: string, name: string) => Promise<void>;

  /** Tells the host the size of the document in CSS pixels. */
  readonly sendDocumentSize: () => void;

  /**
   * Asks for a zoom step.
   *
   * @param step Hundredths of a zoom level; a level scales the page by 1.2. Positive steps zoom in.
   * @throws TypeError if it is no finite number.
   */
  readonly zoomChanged: (step: number) => void;

  /** Asks for the page's original size. */
  readonly zoomReset: () => void;

  /** Loads the address that the view was opened with. */
  readonly loadHome: () => void;

  /** Opens the developer tools of the view in a window of their own. */
  readonly openDevTools: () => void;

  /** Closes the developer tools of the view. */
  readonly closeDevTools: () => void;

  /**
   * Reads an environment variable of the process that renders the page.
   *
   * @returns Its value, or the empty string if it is not set.
   * @throws TypeError if `name` is no string or is empty.
   */
  readonly getEnv: (name: string) => string;
}

/** Exists in a view only: a page that is opened elsewhere too asks `typeof xocef === 'object'`. */
declare const xocef: Xocef;
