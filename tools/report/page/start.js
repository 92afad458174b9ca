// Shows the stack, or the pair that the address names; each part is built when it is first asked for.
const STACK = document.getElementById('stack');
const PAIR = document.getElementById('pair');

function pairOfAddress() {
  const found = /^#p(\d+)$/.exec(location.hash);
  return DATA.is_stack ? DATA.pairs[found ? Number(found[1]) : -1] : DATA.pairs[0];
}

function show(isFirst) {
  const pair = pairOfAddress();
  PAIR.replaceChildren(...(pair ? pairPart(pair) : []).flat(Infinity).filter(Boolean));
  if (!pair && !STACK.firstChild) STACK.append(...stackPart().flat(Infinity).filter(Boolean));
  PAIR.hidden = !pair;
  STACK.hidden = Boolean(pair);
  document.title = pair ? `${pair.name}, varnoth` : `${counted(DATA.pairs.length, 'pair')}, varnoth`;
  runWaiting();
  if (isFirst) return;
  window.scrollTo(0, 0);
  (pair ? PAIR : STACK).querySelector('h1').focus();
}

document.getElementById('made').textContent = `Made ${DATA.made} by varnoth-tools.`;
window.addEventListener('hashchange', () => show(false));
show(true);
