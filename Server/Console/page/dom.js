// Elements without markup: nothing that the server tells is ever read as HTML.

export const find = (id) => document.getElementById(id);

/** An element; names that begin with "on" are listeners, and null children are left out. */
export function element(name, attributes = {}, ...children) {
  return filled(document.createElement(name), attributes, children);
}

export function svg(name, attributes = {}, ...children) {
  return filled(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);
}

function filled(made, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) made.addEventListener(name.slice(2), value);
    else if (value === true) made.setAttribute(name, '');
    else if (value !== false && value !== null) made.setAttribute(name, value);
  }
  made.append(...children.filter((child) => child !== null));
  return made;
}
