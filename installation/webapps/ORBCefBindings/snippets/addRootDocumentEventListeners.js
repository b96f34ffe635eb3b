/**
 * Tells the module once that the root document is ready, at its DOMContentLoaded event.
 *
 * Runs in the main frame when its context is created, normally before any script of the page. A
 * page without scripts gets its context only with the host's first script, when all may be loaded.
 */
(function () {
  'use strict';

  const notifyDOMReady = typeof xocef === 'object' && xocef !== null && xocef.__notifyDOMReady;
  if (typeof notifyDOMReady !== 'function') return;

  let told = false;

  function onReady(event) {
    // Events that a page makes up do not count, and they must not use up the one notification.
    if (told || !event.isTrusted) return;
    if (event.type === 'readystatechange' && document.readyState !== 'complete') return;
    told = true;
    notifyDOMReady();
  }

  if (document.readyState === 'complete') {
    // The event is over. The module finishes its work on the new context first, hence not at once.
    setTimeout(() => notifyDOMReady(), 0);
    return;
  }

  // Captured, so that no other listener of the document comes first.
  document.addEventListener('DOMContentLoaded', onReady, true);
  // An interactive document may or may not have had that event. The next state comes in any case.
  if (document.readyState === 'interactive') {
    document.addEventListener('readystatechange', onReady, true);
  }
})();
