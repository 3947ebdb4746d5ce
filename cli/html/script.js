'use strict';
// Whatever is pointed at or focused, its bytes and their meaning light up in both
// halves of the page. The elements of a section have one order everywhere.
(() => {
  const [left, right] = document.querySelectorAll('main > div');
  const status = document.querySelector('output');
  const parts = new Map();
  let lit = [];

  // What a section consists of, gathered when it is first needed.
  function partAt(index) {
    if (!parts.has(index)) parts.set(index, gather(left.children[index], right.children[index]));
    return parts.get(index);
  }

  function gather(meanings, dump) {
    const bytes = [...dump.querySelectorAll('pre + pre > *')];
    let offset = Number(dump.dataset.start);
    return {
      elements: [...meanings.querySelectorAll('.tree p')],
      rows: [...meanings.querySelectorAll('[data-at]')],
      bytes,
      // Where each element begins, and the last one ends.
      offsets: [offset, ...bytes.map(({ textContent }) => offset += textContent.length / 3)],
    };
  }

  // The elements that a place in the page stands for: { part, first, count }.
  function rangeOf(place) {
    const fault = place.closest('header a');
    if (fault) return rangeOf(document.querySelector(fault.hash));
    const section = place.closest('main > div > details');
    if (!section) return undefined;
    const part = partAt([...section.parentNode.children].indexOf(section));
    return rowRange(part, place) ?? elementRange(part, place);
  }

  function rowRange(part, place) {
    const row = place.closest('[data-at]');
    if (!row) return undefined;
    const [first, count] = row.dataset.at.split(',').map(Number);
    return { part, first, count };
  }

  function elementRange(part, place) {
    if (place.matches('.tree strong')) {
      const own = place.parentNode.querySelectorAll('p');
      return own.length === 0 ? undefined
        : { part, first: part.elements.indexOf(own[0]), count: own.length };
    }
    const one = place.closest('.tree p, pre + pre > *');
    if (!one) return undefined;
    return { part, first: Math.max(part.elements.indexOf(one), part.bytes.indexOf(one)), count: 1 };
  }

  // A value is lit if it has all that is pointed at.
  function valuesWith({ part, first, count }) {
    return part.rows.filter((row) => {
      const own = rowRange(part, row);
      return own.first <= first && own.first + own.count >= first + count;
    });
  }

  function show(place) {
    for (const one of lit) one.classList.remove('lit');
    lit = [];
    status.textContent = '';
    const range = rangeOf(place);
    if (!range) return;
    const { part, first, count } = range;
    const bytes = part.bytes.slice(first, first + count);
    const meanings = [...valuesWith(range), ...part.elements.slice(first, first + count)];
    const sides = [[left, unfolded(meanings)], [right, unfolded(bytes)]];
    lit = [...bytes, ...meanings, ...sides.flatMap(([, shown]) => shown)];
    for (const one of lit) one.classList.add('lit');
    status.textContent = describe(range);
    for (const [pane, shown] of sides) if (!pane.contains(place)) reveal(shown, pane);
  }

  // Those that can be seen; if all are folded away, the titles they are under.
  function unfolded(places) {
    const titles = places.map(titleOfFolded);
    const open = places.filter((_, i) => titles[i] === null);
    return open.length === 0 ? [...new Set(titles)] : open;
  }

  function titleOfFolded(place) {
    let title = null;
    for (let at = place.closest('details'); at; at = at.parentNode.closest('details')) {
      if (!at.open) title = at.firstChild;
    }
    return title;
  }

  // Scrolls only if nothing of it is in sight.
  function reveal(places, pane) {
    const { top, bottom } = pane.getBoundingClientRect();
    const isInSight = (place) => {
      const box = place.getBoundingClientRect();
      return box.bottom > top && box.top < bottom;
    };
    if (places.length !== 0 && !places.some(isInSight)) places[0].scrollIntoView({ block: 'center' });
  }

  function describe({ part, first, count }) {
    const [start, end] = [part.offsets[first], part.offsets[first + count]];
    const names = [];
    for (let at = part.elements[first]; at; at = at.parentNode.closest('.tree div')) {
      names.unshift((at.matches('p') ? at : at.firstChild).textContent.trim());
    }
    const shown = count === 1 ? names : names.slice(0, -1);
    return `offset ${start} (0x${start.toString(16)}), ${end - start} bytes: ${shown.join(' \u203a ')}`;
  }

  // The arrow keys go from element to element, in the tree and in the bytes.
  function move(event) {
    const step = { ArrowDown: 1, ArrowRight: 1, ArrowUp: -1, ArrowLeft: -1 }[event.key];
    if (!step || !event.target.matches('.tree p, pre + pre > *')) return;
    const { part, first } = rangeOf(event.target);
    const next = (left.contains(event.target) ? part.elements : part.bytes)[first + step];
    if (!next) return;
    event.preventDefault();
    next.tabIndex = -1;
    next.focus();
  }

  document.addEventListener('pointerover', ({ target }) => show(target));
  document.addEventListener('focusin', ({ target }) => show(target));
  document.addEventListener('keydown', move);
})();
