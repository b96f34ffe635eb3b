/**
 * Completes with the size of the document in CSS pixels, as `{width, height}` of integers.
 *
 * The size covers all that can be scrolled to and is never less than the view's. Which element
 * knows it depends on the document: the root element in standards mode, the body in quirks mode,
 * the root element of a document that has no body. A document without any element has the size 0, 0.
 */
(function () {
  'use strict';

  // Elements outside HTML, an SVG root for instance, have no offset size.
  function larger(size, other) {
    return other > size ? other : size;
  }

  function extent(scroll, offset) {
    const root = document.documentElement;
    const { body } = document;
    let size = 0;
    if (root) size = larger(larger(size, root[scroll]), root[offset]);
    if (body) size = larger(larger(size, body[scroll]), body[offset]);
    return size | 0;
  }

  try {
    return {
      width: extent('scrollWidth', 'offsetWidth'),
      height: extent('scrollHeight', 'offsetHeight'),
    };
  } catch {
    // The caller needs an object also from a page that has spoilt these properties.
    return { width: 0, height: 0 };
  }
})();
