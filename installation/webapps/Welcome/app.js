/**
 * The road of one message: the page greets the host, the host answers, and the page says that it
 * has shown the answer. Each message is an array of two strings, its name and its text.
 */

const GREET = 'welcome.greet';
const ANSWER = 'welcome.answer';
const ANSWERED = 'welcome.answered';

/** Entries beyond this number leave the log at its end. */
const LOG_LIMIT = 200;

const form = document.getElementById('form');
const message = document.getElementById('message');
const road = document.getElementById('road');
const answer = document.getElementById('answer');
const log = document.getElementById('log');

function element(name, className, text) {
  const result = document.createElement(name);
  result.className = className;
  result.textContent = text;
  return result;
}

/**
 * Puts a message on top of the log.
 *
 * @param {'sent' | 'received'} way
 * @param {string} name
 * @param {string} text
 */
function write(way, name, text) {
  const now = new Date();
  const time = element('time', '', now.toLocaleTimeString());
  time.dateTime = now.toISOString();
  const entry = document.createElement('li');
  entry.dataset.way = way;
  entry.append(
    time,
    element('span', 'way', way === 'sent' ? 'Page to host' : 'Host to page'),
    element('span', 'text', `${name}: ${text}`),
  );
  log.prepend(entry);
  if (log.children.length > LOG_LIMIT) log.lastElementChild.remove();
}

/**
 * @param {string} name
 * @param {string} text
 */
function send(name, text) {
  xocef.sendString([name, text]);
  write('sent', name, text);
}

/** @param {ReadonlyArray<string>} strings */
function receive([name, text = '']) {
  // Other messages of the host are not for this page.
  if (name !== ANSWER) return;
  write('received', name, text);
  answer.textContent = text;
  road.dataset.state = 'answered';
  send(ANSWERED, text);
}

function submit(event) {
  event.preventDefault();
  road.dataset.state = 'sent';
  send(GREET, message.value);
  message.select();
}

if (typeof xocef === 'object') {
  form.addEventListener('submit', submit);
  xocef.addStringListener(receive);
  message.focus();
} else {
  document.getElementById('notice').hidden = false;
  message.disabled = true;
  document.getElementById('send').disabled = true;
}
