// Makes elements. Whatever comes from files goes in as text, never as markup.
const SVG = 'http://www.w3.org/2000/svg';

function fill(node, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) node.addEventListener(name.slice(2), value);
    else if (value !== null && value !== undefined && value !== false) node.setAttribute(name, value === true ? '' : value);
  }
  node.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined));
  return node;
}

function element(tag, attributes = {}, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

function svg(tag, attributes = {}, ...children) {
  return fill(document.createElementNS(SVG, tag), attributes, children);
}

function section(title, ...children) {
  return element('section', {}, element('h2', {}, title), children);
}

// A table of texts with a head; the first column names the rows.
function plainTable(head, rows) {
  return element('div', {class: 'wide'}, element('table', {},
    element('thead', {}, element('tr', {}, head.map((text) => element('th', {scope: 'col', class: 'figure'}, text)))),
    element('tbody', {}, rows.map((row) => element('tr', {}, row.map((text, i) =>
      i === 0 ? element('th', {scope: 'row'}, text) : element('td', {class: 'number'}, text)))))));
}
