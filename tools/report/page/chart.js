// Curves by dygraphs: values under the pointer, arrow keys instead of a pointer, colours of both modes.
// Colours that colour-blind readers can tell apart (Okabe and Ito 2008), on light and on dark.
const COLOURS = {light: ['#0072B2', '#D55E00', '#007F5C', '#A3548A'], dark: ['#56B4E9', '#E69F00', '#2BC49A', '#E39BC5']};
const GRID = 'rgba(128,128,128,0.35)';
const CHART_HEIGHT = 220;
const MARGIN = 12; // pixels between the outermost points and the frame
const PRINTED_WIDTH = 325; // half of a page
const darkMode = window.matchMedia('(prefers-color-scheme: dark)');
const charts = new Set();
let isPrinting = false;

// The library's own legend writes markup and styles into the page; here figures have their own.
Dygraph.PLUGINS = Dygraph.PLUGINS.filter((plugin) => plugin !== Dygraph.Plugins.Legend);

function colours() {
  return COLOURS[darkMode.matches && !isPrinting ? 'dark' : 'light'];
}

function redraw() {
  for (const chart of charts) {
    if (!chart.host.isConnected) { chart.destroy(); charts.delete(chart); continue; }
    chart.updateOptions({colors: colours().slice(0, chart.seriesCount)});
    // What is drawn stays and is only made smaller: a canvas of another size would be printed empty.
    chart.host.style.zoom = isPrinting ? Math.min(1, PRINTED_WIDTH / chart.host.clientWidth) : '';
  }
}

darkMode.addEventListener('change', redraw);
window.addEventListener('beforeprint', () => { isPrinting = true; redraw(); });
window.addEventListener('afterprint', () => { isPrinting = false; redraw(); });

function drawBars(plot) {
  const context = plot.drawingContext;
  const width = plot.points.length > 1 ? plot.points[1].canvasx - plot.points[0].canvasx : 20;
  const bottom = plot.dygraph.toDomYCoord(0);
  context.fillStyle = plot.color;
  for (const point of plot.points) {
    context.fillRect(point.canvasx - width / 2 + 1, point.canvasy, width - 2, bottom - point.canvasy);
  }
}

function drawDot(graph, series, context, x, y, colour, radius) {
  context.beginPath();
  context.fillStyle = colour;
  context.arc(x, y, radius, 0, 2 * Math.PI);
  context.fill();
}

// A key to the series, with the values of the selected row behind the names.
class Key {
  constructor(figure) {
    this.figure = figure;
    this.values = figure.series.map(() => element('output', {}));
    this.at = element('output', {class: 'at'}, figure.hint ?? '');
    this.node = element('div', {class: 'key'}, figure.series.map((series, i) => element('span', {},
      figure.series.length > 1 ? element('i', {class: `swatch s${i}`}) : null,
      figure.series.length > 1 ? series + ' ' : null, this.values[i])), this.at);
  }

  show(row) {
    this.values.forEach((value, i) => {
      value.textContent = this.figure.valueText(this.figure.rows[row][i + 1]);
    });
    this.at.textContent = this.figure.rowText(row);
  }

  clear() {
    this.values.forEach((value) => { value.textContent = ''; });
    this.at.textContent = this.figure.hint ?? '';
  }
}

function moveSelection(graph, key, figure, event) {
  const last = figure.rows.length - 1;
  const row = graph.getSelection();
  const next = {ArrowRight: Math.min(row + 1, last), ArrowLeft: row < 0 ? last : Math.max(row - 1, 0), Home: 0, End: last}[event.key];
  if (next !== undefined) {
    graph.setSelection(next);
    key.show(next);
  } else if (event.key === 'Enter' && row >= 0 && figure.open) {
    figure.open(row);
  } else if (event.key === 'Escape') {
    graph.clearSelection();
    key.clear();
  } else {
    return;
  }
  event.preventDefault();
}

// The library finds no scale for a single date.
function showOneDate(options, time) {
  options.dateWindow = [time - DAY * 1000, time + DAY * 1000];
  options.axes.x.ticker = () => [{v: time, label: dayText(time / 1000)}];
}

function startGraph(host, figure, key) {
  const isDots = figure.plot === 'dots';
  const options = {
    labels: ['x', ...figure.series], colors: colours().slice(0, figure.series.length), height: CHART_HEIGHT,
    legend: 'never', labelsUTC: true, interactionModel: {}, axisLineColor: GRID, gridLineColor: GRID, axisLabelFontSize: 12,
    drawPoints: figure.plot !== 'bars', pointSize: isDots ? 2.5 : 2, strokeWidth: isDots ? 0 : 1.5, highlightCircleSize: 4,
    drawPointCallback: drawDot, drawHighlightPointCallback: drawDot, xRangePad: MARGIN, yRangePad: MARGIN, includeZero: figure.plot === 'bars',
    series: Object.fromEntries(figure.series.map((name, i) => [name, {strokePattern: i % 2 ? [6, 3] : null}])),
    axes: {x: {pixelsPerLabel: 80, axisLabelWidth: 72}, y: {axisLabelWidth: 58, pixelsPerLabel: 36, axisLabelFormatter: (value) => String(Number(value.toPrecision(6)))}},
    highlightCallback: (event, x, points, row) => key.show(row),
    unhighlightCallback: () => key.clear(),
  };
  // The library takes an undefined option for a value.
  if (figure.plot === 'bars') {
    const highest = 1.1 * Math.max(...figure.rows.map((row) => row[1]));
    Object.assign(options, {plotter: drawBars, dateWindow: figure.window, valueRange: [0, highest], yRangePad: 0});
    options.axes.y.axisLabelFormatter = (count) => Number.isInteger(count) ? String(count) : '';
  }
  if (isDots && Number(figure.rows[0][0]) === Number(figure.rows.at(-1)[0])) showOneDate(options, Number(figure.rows[0][0]));
  if (figure.axisText) options.axes.x.axisLabelFormatter = figure.axisText;
  if (figure.under) options.underlayCallback = figure.under;
  if (figure.open) options.pointClickCallback = (event, point) => figure.open(point.idx);
  const graph = new Dygraph(host, figure.rows, options);
  graph.host = host;
  graph.seriesCount = figure.series.length;
  charts.add(graph);
  return graph;
}

// figure: title, unit, series (names), rows ([x, value of each series]), valueText(value), rowText(row),
// and where they differ from a line's: plot, window (of bars), axisText, hint, open(row), under, hasTable.
function chart(figure) {
  const key = new Key(figure);
  const host = element('div', {class: 'plot', tabindex: 0, role: 'img', 'aria-label':
    `${figure.title}, ${counted(figure.rows.length, 'point')}; arrow keys show the values`});
  const node = element('figure', {}, element('figcaption', {}, figure.title,
    figure.unit ? element('small', {}, ` ${figure.unit}`) : null), key.node, host);
  if (figure.hasTable) {
    node.append(element('details', {}, element('summary', {}, 'Values'), plainTable([figure.xName, ...figure.series],
      figure.rows.map((row, i) => [figure.xText(i), ...row.slice(1).map(figure.valueText)]))));
  }
  // The library measures its place, which it has only in the page.
  whenShown(host, () => {
    const graph = startGraph(host, figure, key);
    host.addEventListener('keydown', (event) => moveSelection(graph, key, figure, event));
    host.addEventListener('blur', () => { graph.clearSelection(); key.clear(); });
  });
  return node;
}

const waiting = [];

function whenShown(node, action) {
  waiting.push({node, action});
}

// Runs what waited for its element to be in the page.
function runWaiting() {
  for (const {node, action} of waiting.splice(0)) if (node.isConnected) action();
}
