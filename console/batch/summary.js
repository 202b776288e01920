// Filters and sorts the table of databases. Without it the table stands as it is.
'use strict';
(() => {
  const table = document.getElementById('databases');
  if (!table) return;
  const body = table.tBodies[0];
  const filter = document.getElementById('filter');
  const state = document.getElementById('state');
  const count = document.getElementById('count');
  const order = new Intl.Collator('en', {numeric: true}).compare;
  const rows = [...body.rows].map(
      (element, place) => ({
        element,
        place,
        state: element.dataset.state,
        cells: [...element.cells].map(cell => cell.dataset.value ?? cell.textContent),
        searched: element.textContent.toLowerCase(),
      }));
  const headers = [...table.tHead.rows[0].cells];
  let sort = -1;
  let descending = false;

  function compare(one, other) {
    const [first, second] = [one.cells[sort], other.cells[sort]];
    if ((first === '') !== (second === '')) return first === '' ? 1 : -1;
    return (descending ? order(second, first) : order(first, second)) || one.place - other.place;
  }

  function render() {
    const words = filter.value.toLowerCase().split(/\s+/).filter(Boolean);
    const chosen = rows.filter(
        row => (!state.value || row.state === state.value) &&
            words.every(word => row.searched.includes(word)));
    if (sort >= 0) chosen.sort(compare);
    headers.forEach(
        (header, column) => header.setAttribute(
            'aria-sort',
            column !== sort ? 'none' :
                descending  ? 'descending' :
                              'ascending'));
    body.replaceChildren(...chosen.map(row => row.element));
    count.textContent = chosen.length === rows.length ? `${rows.length} shown` :
                                                        `${chosen.length} of ${rows.length} shown`;
  }

  // Ascending, descending, and as it was.
  function sortBy(column) {
    if (sort !== column)
      [sort, descending] = [column, false];
    else if (!descending)
      descending = true;
    else
      sort = -1;
    render();
  }

  headers.forEach((header, column) => {
    const button = document.createElement('button');
    button.type = 'button';
    button.textContent = header.textContent;
    button.addEventListener('click', () => sortBy(column));
    header.replaceChildren(button);
  });
  filter.addEventListener('input', render);
  state.addEventListener('change', render);
  document.getElementById('controls').hidden = false;
  render();
})();
