/** A variable of the environment, as the process sees it that renders the page. */
import { find, onSubmit, start, write } from './gallery.js';

const name = find('name');
const result = find('result');

function read() {
  const text = xocef.getEnv(name.value);
  // The module gives an empty text for a variable that is not set.
  result.dataset.state = text === '' ? 'failed' : 'done';
  result.textContent = text === '' ? `${name.value} is not set or empty.` : text;
  write('received', `${name.value} = ${text}`);
  name.select();
}

start(['name', 'read'], () => {
  onSubmit('form', read);
  name.focus();
});
