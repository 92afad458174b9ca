// The part of a stack.
const LINKS_AT_ONCE = 12;

function pairLinks(pairs) {
  const links = (some) => some.map((pair) => [element('a', {href: `#p${pair.index}`}, pair.name), ' ']);
  return [links(pairs.slice(0, LINKS_AT_ONCE)), pairs.length <= LINKS_AT_ONCE ? null : element('details', {},
    element('summary', {}, `and ${pairs.length - LINKS_AT_ONCE} more`), links(pairs.slice(LINKS_AT_ONCE)))];
}

// What went wrong, by cause: the most frequent one first.
function failures(pairs, ending) {
  const causes = new Map();
  for (const pair of pairs.filter((one) => one.ending === ending)) {
    const [text, , remedy] = causeOf(pair);
    const cause = causes.get(text) ?? {text, remedy, pairs: []};
    cause.pairs.push(pair);
    causes.set(text, cause);
  }
  return [...causes.values()].sort((a, b) => b.pairs.length - a.pairs.length).map((cause) => element('article', {class: ending},
    element('p', {}, element('b', {}, `${cause.pairs.length} ${ending}`), ' ', element('code', {}, cause.text)),
    remedyText(cause.remedy), element('p', {class: 'links'}, pairLinks(cause.pairs))));
}

function plainEndings(pairs, ending, words) {
  const some = pairs.filter((pair) => pair.ending === ending);
  return some.length ? element('article', {class: ending.split(' ')[0]}, element('p', {}, element('b', {}, `${some.length} ${ending}`), ' ', words),
    element('p', {class: 'links'}, pairLinks(some))) : null;
}

function tile(number, words, kind = '') {
  return element('div', {class: `tile ${kind}`}, element('b', {}, number), element('span', {}, words));
}

function tiles(pairs) {
  const count = (ending) => pairs.filter((pair) => pair.ending === ending).length;
  const warned = pairs.filter((pair) => pair.ending === 'done' && messageCount(pair) > 0).length;
  const days = pairs.flatMap((pair) => [secondsOf(pair, 0), secondsOf(pair, 1)]).filter(isNumber);
  return element('div', {class: 'tiles'}, tile(count('done'), 'done'),
    ['failed', 'stopped', 'without results'].filter(count).map((ending) => tile(count(ending), ending, ending.split(' ')[0])),
    tile(warned, 'done with warnings', warned ? 'warned' : ''),
    days.length ? tile(dayText(Math.min(...days)), 'first scene') : null, days.length ? tile(dayText(Math.max(...days)), 'last scene') : null);
}

function stackPart() {
  const pairs = DATA.pairs;
  const done = pairs.filter((pair) => pair.ending === 'done');
  const bad = [failures(pairs, 'failed'),
    plainEndings(pairs, 'without results', 'The InSAR pool lacks results, or can\'t be read.'),
    plainEndings(pairs, 'stopped', 'The run found a STOP file: find out why before you run the pair again.')].flat().filter(Boolean);
  const table = new PairTable(pairs);
  return [element('h1', {tabindex: -1}, `${done.length} of ${counted(pairs.length, 'pair')} done`), tiles(pairs),
    bad.length ? section('Not done', bad) : null, done.length ? stackPictures(done) : null, table.node];
}
