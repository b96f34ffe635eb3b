/** What a page asks of its view: its size told to the host, its zoom, its home. */
import { find, onPress, start, write } from './gallery.js';

/** A step of half a zoom level, in hundredths. */
const STEP = 50;

/** How many lines one press adds to the document. */
const LINES = 20;

function showSize() {
  const { scrollWidth, scrollHeight } = document.documentElement;
  find('size').textContent = `${scrollWidth} × ${scrollHeight} CSS pixels`;
}

function showZoom() {
  find('zoom').textContent = `${Math.round(devicePixelRatio * 100)} %`;
}

function lengthen() {
  for (let i = 0; i < LINES; ++i) {
    const line = document.createElement('p');
    line.textContent = `Line ${find('more').children.length + 1}`;
    find('more').append(line);
  }
  showSize();
}

function tellSize() {
  showSize();
  xocef.sendDocumentSize();
  write('sent', `document size, ${find('size').textContent}`);
}

/** @param {number} step */
function zoom(step) {
  xocef.zoomChanged(step);
  write('sent', `zoom step ${step}`);
}

start(['tell', 'in', 'out', 'reset', 'home'], () => {
  onPress('tell', tellSize);
  onPress('in', () => zoom(STEP));
  onPress('out', () => zoom(-STEP));
  onPress('reset', () => {
    xocef.zoomReset();
    write('sent', 'zoom reset');
  });
  onPress('home', () => {
    write('sent', 'load home');
    xocef.loadHome();
  });
});
onPress('lengthen', lengthen);
// A change of the zoom changes the size of the window in CSS pixels.
addEventListener('resize', () => {
  showSize();
  showZoom();
});
showSize();
showZoom();
