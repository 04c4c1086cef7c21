// Elements of the page.

export const byId = id => document.getElementById(id);

export function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children.filter(child => child !== null && child !== undefined && child !== ''));
  return element;
}

export function setOptions(select, pairs) {
  select.replaceChildren(...pairs.map(([value, textContent]) => make('option', {value, textContent})));
}
