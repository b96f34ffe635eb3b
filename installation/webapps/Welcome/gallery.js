/**
 * What the pages of the gallery share: finding an element, the log at the foot of each page, and a
 * start that says so where there is no host.
 */

/** Entries beyond this number leave the log at its end. */
const LOG_LIMIT = 200;

/** @type {Record<string, string>} */
const WAYS = { sent: 'Page to host', received: 'Host to page', failed: 'Error' };

/**
 * The element of this name, which the page has.
 *
 * @param {string} id
 * @returns {any}
 */
export function find(id) {
  return document.getElementById(id);
}

/**
 * @param {string} name
 * @param {string} className
 * @param {string} text
 */
function element(name, className, text) {
  const result = document.createElement(name);
  result.className = className;
  result.textContent = text;
  return result;
}

/**
 * Puts an event on top of the log.
 *
 * @param {'sent' | 'received' | 'failed'} way
 * @param {string} text
 */
export function write(way, text) {
  const log = find('log');
  const now = new Date();
  const time = /** @type {HTMLTimeElement} */ (element('time', '', now.toLocaleTimeString()));
  time.dateTime = now.toISOString();
  const entry = document.createElement('li');
  entry.dataset.way = way;
  entry.append(time, element('span', 'way', WAYS[way]), element('span', 'text', text));
  log.prepend(entry);
  if (log.children.length > LOG_LIMIT) log.lastElementChild.remove();
}

/**
 * Calls `action` whenever the button is pressed.
 *
 * @param {string} id
 * @param {() => void} action
 */
export function onPress(id, action) {
  find(id).addEventListener('click', action);
}

/**
 * Calls `action` whenever the form is sent, which never goes to a server.
 *
 * @param {string} id
 * @param {() => void} action
 */
export function onSubmit(id, action) {
  find(id).addEventListener('submit', (/** @type {Event} */ event) => {
    event.preventDefault();
    action();
  });
}

/**
 * Runs the page, or tells its reader that there is no host and takes no input.
 *
 * @param {string[]} controls The elements that need the host.
 * @param {() => void} run
 */
export function start(controls, run) {
  if (typeof xocef === 'object') {
    run();
    return;
  }
  find('notice').hidden = false;
  for (const id of controls) find(id).disabled = true;
}
