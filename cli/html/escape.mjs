import { visible } from '../visible.mjs';

const entities = { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', "'": '&#39;' };

// A text, wherever it is from, as text of the page or as an attribute's value.
export const escape = (text) => visible(text).replace(/[&<>"']/g, (one) => entities[one]);
