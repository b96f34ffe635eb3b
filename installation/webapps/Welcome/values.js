/** Values that the host keeps: saved, loaded and removed by name, and there again after a restart. */
import { find, onPress, onSubmit, start, write } from './gallery.js';

/** The set of values that belongs to this application. */
const REPOSITORY = 'Welcome';

const name = find('name');
const value = find('value');
const result = find('result');

/** @param {unknown} error */
function fail(error) {
  result.dataset.state = 'failed';
  result.textContent = String(error);
  write('failed', String(error));
}

/** @param {string} text */
function succeed(text) {
  result.dataset.state = 'done';
  result.textContent = text;
  write('received', text);
}

async function save() {
  write('sent', `save ${name.value}`);
  try {
    await xocef.saveValue(REPOSITORY, name.value, value.value);
    succeed(`Saved ${name.value}.`);
  } catch (error) {
    fail(error);
  }
}

async function load() {
  write('sent', `load ${name.value}`);
  try {
    const loaded = /** @type {string} */ (await xocef.loadValue(REPOSITORY, name.value));
    value.value = loaded;
    succeed(`Loaded ${name.value}: ${loaded}`);
  } catch (error) {
    fail(error);
  }
}

async function remove() {
  write('sent', `remove ${name.value}`);
  try {
    await xocef.removeValue(REPOSITORY, name.value);
    succeed(`Removed ${name.value}.`);
  } catch (error) {
    fail(error);
  }
}

start(['name', 'value', 'save', 'load', 'remove'], () => {
  onSubmit('form', save);
  onPress('load', load);
  onPress('remove', remove);
  value.focus();
});
