// The table of all pairs, which sorts by its heads and filters.
const COLUMNS = [
  {name: 'Pair', value: (pair) => pair.name},
  {name: 'Ending', value: (pair) => pair.ending},
  {name: 'Master', value: (pair) => dayOf(pair, 0).text, title: (pair) => dayOf(pair, 0).raw},
  {name: 'Slave', value: (pair) => dayOf(pair, 1).text, title: (pair) => dayOf(pair, 1).raw},
  {name: 'Days', value: daysOf, decimals: 0},
  {name: 'Effective baseline', unit: 'm', value: (pair) => numberOf(pair, 'eff_baseline'), decimals: 1},
  {name: 'Metres per cycle', unit: 'm', value: (pair) => hasMarker(pair) ? null : numberOf(pair, 'height_conversion_factor'), decimals: 1},
  {name: 'Range difference', unit: 'm', value: (pair) => numberOf(pair, 'varnoth_deltaR'), decimals: 1},
  {name: 'Incidence', unit: '°, mid', value: (pair) => numberOf(pair, 'incidence_angle_mid_range'), decimals: 2},
  {name: 'Misfit', unit: 'cycles', value: misfitOf, decimals: 4},
  {name: 'Messages', value: messageCount, decimals: 0}];
const ROWS_AT_ONCE = 200; // more wait for a word, so that a page of thousands stays quick
const PRINTED_ROWS = 2000;
const ENDINGS = ['done', 'failed', 'stopped', 'without results'];

function isNumeric(column) {
  return column.decimals !== undefined;
}

// What has no value comes last, whichever way the rest goes.
function compare(a, b, direction) {
  const [hasA, hasB] = [a, b].map((value) => value !== null && value !== undefined && value !== '');
  if (!hasA || !hasB) return Number(hasB) - Number(hasA);
  return direction * (typeof a === 'number' ? (a > b) - (a < b) : a.localeCompare(b, 'en', {numeric: true}));
}

class PairTable {
  constructor(pairs) {
    this.rows = pairs.map((pair) => ({pair, node: null, words: [pair.name, pair.ending, ...pair.times.map(([text]) => text),
      ...pair.notices.map(([, text]) => text), ...pair.remarks].join('\n').toLowerCase()}));
    this.text = element('input', {type: 'search', id: 'filter-text', oninput: () => this.filter()});
    this.ending = element('select', {id: 'filter-ending', onchange: () => this.filter()}, element('option', {value: ''}, 'all'),
      ENDINGS.filter((ending) => pairs.some((pair) => pair.ending === ending)).map((ending) => element('option', {value: ending}, ending)));
    this.limit = element('input', {type: 'number', id: 'filter-baseline', min: 0, step: 'any', oninput: () => this.filter()});
    this.count = element('output', {'aria-live': 'polite'});
    this.heads = COLUMNS.map((column, i) => element('th', {scope: 'col', class: isNumeric(column) ? 'number' : ''},
      element('button', {type: 'button', onclick: () => this.sortBy(i)}, column.name, column.unit ? element('small', {}, ` ${column.unit}`) : null)));
    this.body = element('tbody');
    this.most = ROWS_AT_ONCE;
    this.more = element('button', {type: 'button', class: 'more', onclick: () => { this.most = Infinity; this.show(this.most); }});
    this.left = element('p', {class: 'printed'});
    window.addEventListener('beforeprint', () => this.show(Math.max(this.most, PRINTED_ROWS)));
    window.addEventListener('afterprint', () => this.show(this.most));
    this.filter();
  }

  row(pair) {
    return element('tr', {class: pair.ending}, COLUMNS.map((column, i) => {
      const text = isNumeric(column) ? fixed(column.value(pair), column.decimals) : column.value(pair) || NOTHING;
      return i === 0 ? element('th', {scope: 'row'}, element('a', {href: `#p${pair.index}`}, text)) : element('td', {class: isNumeric(column) ? 'number' : '', title: column.title?.(pair)}, text);
    }));
  }

  sortBy(place) {
    const head = this.heads[place];
    const isUp = head.getAttribute('aria-sort') === 'ascending';
    this.heads.forEach((other) => other.removeAttribute('aria-sort'));
    head.setAttribute('aria-sort', isUp ? 'descending' : 'ascending');
    const value = COLUMNS[place].value;
    this.rows.sort((a, b) => compare(value(a.pair), value(b.pair), isUp ? -1 : 1));
    this.filter();
  }

  filter() {
    const words = this.text.value.toLowerCase().split(/\s+/).filter(Boolean);
    const limit = this.limit.value === '' ? Infinity : Number(this.limit.value);
    this.fitting = this.rows.filter(({pair, words: all}) => {
      const baseline = numberOf(pair, 'eff_baseline');
      return words.every((word) => all.includes(word)) && (!this.ending.value || pair.ending === this.ending.value) &&
        (limit === Infinity || (isNumber(baseline) && Math.abs(baseline) <= limit));
    });
    this.count.textContent = `${this.fitting.length} of ${counted(this.rows.length, 'pair')}`;
    this.show(this.most);
  }

  show(most) {
    const left = Math.max(this.fitting.length - most, 0);
    this.body.replaceChildren(...this.fitting.slice(0, most).map((row) => row.node ??= this.row(row.pair)));
    this.more.textContent = `Show all ${this.fitting.length} rows`;
    this.more.hidden = left === 0;
    this.left.textContent = `${counted(left, 'more pair')} left out here: filter the table, or show all rows, before you print.`;
    this.left.hidden = left === 0;
  }

  get node() {
    return section('Pairs', element('form', {class: 'filters', onsubmit: (event) => event.preventDefault()},
      element('label', {for: 'filter-text'}, 'Words ', this.text), element('label', {for: 'filter-ending'}, 'Ending ', this.ending),
      element('label', {for: 'filter-baseline'}, 'Baseline up to ', this.limit, ' m'), this.count),
    element('div', {class: 'wide', tabindex: 0, role: 'region', 'aria-label': 'Table of pairs'}, element('table', {class: 'pairs'}, element('thead', {}, element('tr', {}, this.heads)), this.body)), this.more, this.left);
  }
}
