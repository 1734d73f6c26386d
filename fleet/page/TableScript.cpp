#include "fleet/page/Inlays.h"

namespace fleet::page {

// What is asked for stands behind the address's "#", so that it can be handed on as a link;
// whatever stands there becomes text or a number, never markup.
const Inlay kTableScript = {R"js(
'use strict';

(() => {
const kRows = 50;
const kColumns = 40;
const kUsual = {machine: '', verdict: 'any', group: '', sort: 'worst', page: 1, tests: 1, open: ''};
const kSorts = [['worst', 'worst first'], ['name', 'by name'], ['failures', 'most failures first'],
                ['slow', 'most outliers first']];

const byId = id => document.getElementById(id);
const fleet = new Fleet(JSON.parse(byId('data').textContent));

function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  made.append(...children);
  return made;
}

const counted = (count, what) => count.toLocaleString('en') + ' ' + what + (count === 1 ? '' : 's');

function mark(style) {
  return byId('marks').content.querySelector('.' + style).firstElementChild.cloneNode(true);
}

function badge(style, word) {
  return element('span', {class: 'badge ' + style}, mark(style), element('span', {}, word));
}

function wanted() {
  const given = new URLSearchParams(location.hash.slice(1));
  const state = {};
  for (const [key, usual] of Object.entries(kUsual)) {
    const text = given.get(key) ?? '';
    state[key] = typeof usual === 'number' ? Math.max(parseInt(text, 10) || 1, 1) : text || usual;
  }
  return state;
}

function addressOf(state) {
  const given = new URLSearchParams();
  for (const [key, usual] of Object.entries(kUsual)) {
    if (state[key] !== usual) given.set(key, state[key]);
  }
  // One that names nothing on the page does not scroll it.
  return '#' + (given.toString() || 'verdict=any');
}

function go(changes) {
  location.replace(addressOf({...wanted(), ...changes}));
}

// Any other choice begins with the first page of what it leaves.
const choose = changes => go({page: 1, ...changes});

function button(text, key, act) {
  const made = element('button', {type: 'button', 'data-key': key}, text);
  made.addEventListener('click', act);
  return made;
}

function selection(name, label, choices) {
  const select = element('select', {name});
  for (const [value, text] of choices) select.append(element('option', {value}, text));
  select.addEventListener('change', () => choose({[name]: select.value}));
  return [element('label', {}, element('span', {}, label), select), select];
}

function searchField() {
  const field = element('input', {type: 'search', name: 'machine', autocomplete: 'off', spellcheck: 'false'});
  let timer;
  field.addEventListener('input', () => {
    clearTimeout(timer);
    timer = setTimeout(() => choose({machine: field.value}), 150);
  });
  return [element('label', {}, element('span', {}, 'Machine'), field), field];
}

function pager(name, what) {
  const back = button('Previous ' + what, name + '-', () => go({[name]: wanted()[name] - 1}));
  const on = button('Next ' + what, name + '+', () => go({[name]: wanted()[name] + 1}));
  const where = element('span');
  const box = element('nav', {class: 'pager', 'aria-label': 'Pages of ' + what}, back, where, on);
  const show = (page, size, count) => {
    box.hidden = count <= size;
    back.disabled = page === 1;
    on.disabled = page * size >= count;
    where.textContent = (page - 1) * size + 1 + ' to ' + Math.min(page * size, count) + ' of ' +
        count.toLocaleString('en');
  };
  return [box, show];
}

const verdicts = [['any', 'any'], ...fleet.kinds.map(([key, , word]) => [key, word.toLowerCase()]),
                  ['slow', 'has outliers']];
const [searchLabel, search] = searchField();
const [verdictLabel, verdict] = selection('verdict', 'Verdict', verdicts);
const [sortLabel, sort] = selection('sort', 'Order', kSorts);
const ofTest = element('option', {hidden: ''}, 'worst in one test first');
const group = button('', 'group', () => choose({group: ''}));
const status = element('p', {class: 'note', role: 'status'});
const table = element('table');
const [rowPager, showRows] = pager('page', 'machines');
const [columnPager, showColumns] = pager('tests', 'tests');

function headings(tests, state) {
  const cells = [element('th', {scope: 'col', class: 'name'}, 'Machine'), element('th', {scope: 'col'}, 'Verdict')];
  for (const test of tests) {
    const name = fleet.tests[test];
    const key = 'test' + test;
    const isFirst = state.sort === key;
    const sorter = button('', key, () => choose({sort: isFirst ? 'worst' : key}));
    sorter.title = name;
    sorter.append(element('span', {}, name));
    cells.push(element('th', {scope: 'col', class: 'test', 'aria-sort': isFirst ? 'descending' : 'none'}, sorter));
  }
  return element('tr', {}, ...cells);
}

function cell(machine, test) {
  const look = fleet.looks.get(machine.resultOf(test));
  if (!look) return element('td', {class: 'cell'});
  return element('td', {class: 'cell ' + look.style, title: fleet.tests[test] + ': ' + look.word,
                        'aria-label': look.word}, look.sign);
}

function row(machine, tests, isOpen) {
  const opener = button(machine.name, 'machine' + machine.number, () => go({open: isOpen ? '' : machine.name}));
  opener.setAttribute('aria-expanded', isOpen);
  opener.title = machine.name;
  const [, style, word] = fleet.kinds[machine.kind];
  const verdictCell = element('td', {class: 'verdict-of'}, badge(style, word));
  if (machine.slow > 0) verdictCell.append(badge('warn', counted(machine.slow, 'outlier')));
  return element('tr', {class: 'row'}, element('th', {scope: 'row', class: 'name'}, opener),
                 verdictCell, ...tests.map(test => cell(machine, test)));
}

// How many tests came to what, and which did not pass.
function resultsOf(machine) {
  const lists = [];
  for (const [letter, {style, word}] of fleet.looks) {
    const names = machine.tests.filter((test, i) => machine.results[i] === letter).map(test => fleet.tests[test]);
    if (names.length === 0) continue;
    const text = style === 'pass' ? counted(names.length, 'test') : names.join(', ');
    lists.push(element('dt', {}, word), element('dd', {}, text));
  }
  return lists;
}

function details(machine, width) {
  const facts = element('dl', {class: 'facts'});
  for (const [name, text] of machine.facts) facts.append(element('dt', {}, name), element('dd', {}, text));
  facts.append(...resultsOf(machine));
  const box = element('div', {class: 'open-box'}, facts);
  for (const [style, heading, text] of machine.notes) {
    box.append(element('div', {class: 'says ' + style}, element('p', {class: 'top'}, mark(style),
               element('b', {}, heading)), element('p', {class: 'text'}, text)));
  }
  return element('tr', {class: 'details'}, element('td', {colspan: width}, box));
}

function body(machines, tests, open) {
  const rows = [];
  for (const machine of machines) {
    const isOpen = open !== '' && machine.name === open;
    rows.push(row(machine, tests, isOpen));
    if (isOpen) rows.push(details(machine, tests.length + 2));
  }
  return rows;
}

function showControls(state, count) {
  if (document.activeElement !== search) search.value = state.machine;
  verdict.value = verdicts.some(([key]) => key === state.verdict) ? state.verdict : 'any';
  ofTest.value = state.sort;
  sort.value = /^test[0-9]+$/.test(state.sort) || kSorts.some(([key]) => key === state.sort) ? state.sort : 'worst';
  const chosen = fleet.group(state.group);
  group.hidden = !chosen;
  group.textContent = chosen ? 'Only: ' + chosen.name + ' \u00d7' : '';
  group.title = 'Show all machines';
  status.textContent = counted(count, 'machine') + ' of ' + fleet.machines.length.toLocaleString('en');
}

function drawTable(state, machines) {
  const page = Math.min(state.page, Math.max(Math.ceil(machines.length / kRows), 1));
  const columns = Math.min(state.tests, Math.max(Math.ceil(fleet.tests.length / kColumns), 1));
  const tests = [...fleet.tests.keys()].slice((columns - 1) * kColumns, columns * kColumns);
  const shown = machines.slice((page - 1) * kRows, page * kRows);
  table.replaceChildren(element('caption', {class: 'unseen'}, 'What each test came to on each machine'),
                        element('thead', {}, headings(tests, state)),
                        element('tbody', {}, ...body(shown, tests, state.open)));
  showRows(page, kRows, machines.length);
  showColumns(columns, kColumns, fleet.tests.length);
}

function draw() {
  const state = wanted();
  const machines = fleet.chosen(state);
  const focused = document.activeElement?.dataset.key;
  showControls(state, machines.length);
  drawTable(state, machines);
  if (focused) document.querySelector(`[data-key="${CSS.escape(focused)}"]`)?.focus();
}

function legend() {
  const list = element('ul', {class: 'legend'});
  for (const [, {style, word, sign}] of fleet.looks) {
    list.append(element('li', {}, element('span', {class: 'cell ' + style, 'aria-hidden': 'true'}, sign), ' ' + word));
  }
  return list;
}

function showTable() {
  const heading = byId('machines').firstElementChild;
  heading.tabIndex = -1;
  heading.focus();
  heading.scrollIntoView();
}

sort.append(ofTest);
const controls = element('div', {class: 'controls', role: 'search'}, searchLabel, verdictLabel, sortLabel, group);
const scroller = element('div', {class: 'scroller', tabindex: '0', role: 'region', 'aria-label': 'Machines and tests'}, table);
byId('matrix').replaceChildren(controls, status, scroller, legend(), columnPager, rowPager);
let isLed = false;
window.addEventListener('hashchange', () => {
  draw();
  if (isLed) showTable();
  isLed = false;
});
// A link from another part of the page leads to the table, when that is drawn.
document.addEventListener('click', event => {
  const link = event.target.closest('a');
  isLed = link !== null && link.hash !== location.hash;
  if (link && !isLed) showTable();
});
draw();
if (location.hash.length > 1) showTable();
})();
)js",
                            "sha256-O1QbKrJzKu1ZJe2EJ6kXrRJw0dMrG4av5sjjB+Qg0jU="};

}  // namespace fleet::page
