/**
 * Tells the module when the page has loaded, when it goes away, and when its user zooms.
 *
 * Runs in the main frame when its context is created, normally before any script of the page. A
 * page without scripts gets its context only with the host's first script, when all may be loaded.
 */
(function () {
  'use strict';

  if (typeof xocef !== 'object' || xocef === null) return;
  const {
    __notifyLoad: notifyLoad,
    __notifyUnload: notifyUnload,
    __notifyZoomChange: notifyZoomChange,
    __notifyZoomReset: notifyZoomReset,
  } = xocef;

  // Steps are hundredths of a zoom level. One notch of a wheel makes 0.4 levels, a touchpad less.
  const LARGEST_ZOOM_STEP = 40;
  // Pixels for each of the units of WheelEvent.deltaMode: pixels, lines, pages.
  const PIXELS_PER_UNIT = [1, 40, 400];
  const KEY_CODE_0 = 48;

  const { max, min } = Math;
  const later = setTimeout;
  let loadTold = false;
  let unloadTold = false;

  function onLoad(event) {
    // Events that a page makes up do not count, and they must not use up the one notification.
    if (loadTold || !event.isTrusted || event.target !== document) return;
    loadTold = true;
    notifyLoad();
  }

  // Comes whenever the unload event comes, just before it, and costs a page no optimisation.
  function onPageHide(event) {
    if (unloadTold || !event.isTrusted) return;
    unloadTold = true;
    notifyUnload();
  }

  // A page that acts on such an event itself, a map for instance, prevents its default. Only after
  // all listeners of the page can be told whether it did.
  function unlessPrevented(event, action) {
    later(() => {
      if (!event.defaultPrevented) action();
    }, 0);
  }

  function onWheel(event) {
    if (!event.ctrlKey) return;
    const pixels = -event.deltaY * PIXELS_PER_UNIT[event.deltaMode];
    const step = max(-LARGEST_ZOOM_STEP, min(LARGEST_ZOOM_STEP, pixels));
    if (step) unlessPrevented(event, () => notifyZoomChange(step));
  }

  function onKeyDown(event) {
    const { ctrlKey, altKey, shiftKey, metaKey, repeat } = event;
    if (!ctrlKey || altKey || shiftKey || metaKey || repeat) return;
    // The code finds the key also where it writes a digit only with Shift, the name finds the one
    // of the number pad.
    if (event.keyCode === KEY_CODE_0 || event.key === '0') {
      unlessPrevented(event, () => notifyZoomReset());
    }
  }

  if (typeof notifyLoad === 'function') {
    if (document.readyState === 'complete') {
      // The event is over or about to come. A task comes after it in both cases.
      later(() => notifyLoad(), 0);
    } else {
      addEventListener('load', onLoad);
    }
  }
  if (typeof notifyUnload === 'function') addEventListener('pagehide', onPageHide, true);
  // Captured, so that nothing in the page can stop the events before, and passive, so that
  // scrolling never waits.
  if (typeof notifyZoomChange === 'function') {
    addEventListener('wheel', onWheel, { capture: true, passive: true });
  }
  if (typeof notifyZoomReset === 'function') addEventListener('keydown', onKeyDown, true);
})();
