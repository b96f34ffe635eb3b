/**
 * The road of one message: the page greets the host, the host answers, and the page says that it
 * has shown the answer. Each message is an array of two strings, its name and its text.
 */
import { find, onSubmit, start, write } from './gallery.js';

const GREET = 'welcome.greet';
const ANSWER = 'welcome.answer';
const ANSWERED = 'welcome.answered';

const message = find('message');
const road = find('road');

/**
 * @param {string} name
 * @param {string} text
 */
function send(name, text) {
  xocef.sendString([name, text]);
  write('sent', `${name}: ${text}`);
}

/** @param {ReadonlyArray<string>} strings */
function receive([name, text = '']) {
  // Other messages of the host are not for this page.
  if (name !== ANSWER) return;
  write('received', `${name}: ${text}`);
  find('answer').textContent = text;
  road.dataset.state = 'answered';
  send(ANSWERED, text);
}

start(['message', 'send'], () => {
  xocef.addStringListener(receive);
  onSubmit('form', () => {
    road.dataset.state = 'sent';
    send(GREET, message.value);
    message.select();
  });
  message.focus();
});
