/** What goes wrong, and how a page hears of it: thrown, rejected, or reported to the window. */
import { find, onPress, start, write } from './gallery.js';

/**
 * @param {string} how
 * @param {unknown} error
 */
function show(how, error) {
  find('result').textContent = `${how}: ${error}`;
  write('failed', `${how}: ${error}`);
}

/** A wrong argument is the caller's mistake: it is thrown at the call. */
function wrongArgument() {
  try {
    xocef.zoomChanged(Number('a lot'));
  } catch (error) {
    show('Thrown', error);
  }
}

/** What the host has to say comes later, so it rejects the promise. */
async function missingValue() {
  try {
    await xocef.loadValue('Welcome', 'a value that nobody saved');
  } catch (error) {
    show('Rejected', error);
  }
}

/** A value that contains itself has no text that could be kept. */
async function endlessValue() {
  /** @type {{ self?: object }} */
  const endless = {};
  endless.self = endless;
  try {
    await xocef.saveValue('Welcome', 'endless', endless);
  } catch (error) {
    show('Rejected', error);
  }
}

/** A listener's mistake harms no other listener; the window hears of it as of any uncaught error. */
function throwingListener() {
  const broken = () => {
    throw new Error('from a listener');
  };
  const sound = () => write('received', 'the next listener has its answer all the same');
  xocef.addStringListener(broken);
  xocef.addStringListener(sound);
  // Stands in for the host, which gives its answers by this call.
  xocef.receive('an answer');
  xocef.removeStringListener(broken);
  xocef.removeStringListener(sound);
}

start(['argument', 'missing', 'endless', 'listener'], () => {
  onPress('argument', wrongArgument);
  onPress('missing', missingValue);
  onPress('endless', endlessValue);
  onPress('listener', throwingListener);
  addEventListener('error', ({ error }) => show('Reported', error));
});
