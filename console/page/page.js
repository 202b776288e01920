// Filters, sorts and shows the table of losses, findings and warnings. What is chosen stands in the
// address behind "#", so that a view of the table can be linked to:
// #filter=crash&kind=loss.note&sort=note&order=descending
'use strict';
(() => {
  const holder = document.getElementById('notices-data');
  if (!holder) return;
  const chunk = 500;
  const columns = ['what', 'note', 'where', 'cause'];
  const data = JSON.parse(holder.textContent);
  const rows = data.rows.map(([kind, id, where, text], place) => {
    const { group, word, label } = data.kinds[kind];
    const cells = [label, id, where, text];
    return { cells, group, word, place, searched: cells.join('\n').toLowerCase() };
  });
  const byId = id => document.getElementById(id);
  const filter = byId('filter');
  const kind = byId('kind');
  const body = byId('notices-body');
  const more = byId('more');
  const headers = [...document.querySelectorAll('#notices th')];
  const grouped = number => number.toLocaleString('en-US');
  const order = new Intl.Collator('en', { numeric: false }).compare;
  let sort = '';
  let descending = false;
  let chosen = rows;
  let shown = 0;

  function rowElement({ cells, group }) {
    const row = document.createElement('tr');
    const classes = ['kind ' + group, 'id', 'where', 'cause'];
    cells.forEach((text, column) => {
      const cell = row.insertCell();
      cell.className = classes[column];
      cell.textContent = text;
    });
    return row;
  }

  function showMore(count) {
    const next = chosen.slice(shown, shown + count);
    body.append(...next.map(rowElement));
    shown += next.length;
    const left = chosen.length - shown;
    more.hidden = left === 0;
    more.textContent = `Show ${grouped(Math.min(left, chunk))} more`;
    byId('none').hidden = chosen.length > 0;
    const matching = chosen.length === rows.length
      ? grouped(rows.length) : `${grouped(chosen.length)} of ${grouped(rows.length)}`;
    byId('count').textContent = left === 0 ? `${matching} shown`
      : `first ${grouped(shown)} of ${grouped(chosen.length)} shown` +
        (chosen.length === rows.length ? '' : `, ${grouped(rows.length)} in all`);
  }

  // What has no text in the sorted column comes last, whichever way round.
  function compare(one, other) {
    const column = columns.indexOf(sort);
    const [first, second] = [one.cells[column], other.cells[column]];
    if ((first === '') !== (second === '')) return first === '' ? 1 : -1;
    return (descending ? order(second, first) : order(first, second)) || one.place - other.place;
  }

  function render() {
    const words = filter.value.toLowerCase().split(/\s+/).filter(Boolean);
    const wanted = kind.value;
    chosen = rows.filter(row => (!wanted || row.word === wanted || row.group === wanted) &&
      words.every(word => row.searched.includes(word)));
    if (sort) chosen.sort(compare);
    headers.forEach(header => {
      const isSorted = header.dataset.column === sort;
      header.setAttribute('aria-sort',
        !isSorted ? 'none' : descending ? 'descending' : 'ascending');
    });
    body.replaceChildren();
    shown = 0;
    showMore(chunk);
  }

  function readAddress() {
    const wanted = new URLSearchParams(location.hash.slice(1));
    filter.value = wanted.get('filter') || '';
    kind.value = wanted.get('kind') || '';
    if (kind.selectedIndex < 0) kind.value = '';
    sort = columns.includes(wanted.get('sort')) ? wanted.get('sort') : '';
    descending = sort !== '' && wanted.get('order') === 'descending';
    render();
  }

  function writeAddress() {
    const wanted = new URLSearchParams();
    if (filter.value) wanted.set('filter', filter.value);
    if (kind.value) wanted.set('kind', kind.value);
    if (sort) wanted.set('sort', sort);
    if (descending) wanted.set('order', 'descending');
    const text = wanted.toString();
    try {
      history.replaceState(null, '', text ? '#' + text : location.pathname + location.search);
    } catch {
      // Where a page has no address of its own the table works without.
    }
  }

  function change() {
    writeAddress();
    render();
  }

  // Ascending, descending, and as it was.
  function sortBy(column) {
    if (sort !== column) [sort, descending] = [column, false];
    else if (!descending) descending = true;
    else [sort, descending] = ['', false];
    change();
  }

  // Only a script makes buttons of the headers: without one they would do nothing.
  headers.forEach(header => {
    const button = document.createElement('button');
    button.type = 'button';
    button.textContent = header.textContent;
    button.addEventListener('click', () => sortBy(header.dataset.column));
    header.replaceChildren(button);
  });
  filter.addEventListener('input', change);
  kind.addEventListener('change', change);
  more.addEventListener('click', () => showMore(chunk));
  window.addEventListener('hashchange', readAddress);
  window.addEventListener('beforeprint', () => showMore(chosen.length));
  byId('controls').hidden = false;
  readAddress();
})();
