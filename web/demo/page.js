/// Elements of the page, by their names in index.html.

/**
 * @template {Element} T
 * @param {string} selector
 * @param {new () => T} type
 * @param {ParentNode} [within]
 */
export function find(selector, type, within = document) {
  const element = within.querySelector(selector);
  if (!(element instanceof type)) throw new Error(`index.html has no ${type.name} ${selector}`);
  return element;
}

/**
 * A line that says what is wrong, and is gone without text. It is an alert: screen readers read it when it changes.
 *
 * @param {HTMLElement} element
 * @param {string} text
 */
export function say(element, text) {
  element.textContent = text;
  element.hidden = text === '';
}

/** @param {unknown} error */
export function wordsOf(error) {
  const words = error instanceof Error && error.message ? error.message : String(error);
  return words[0].toUpperCase() + words.slice(1);
}
