// How the page looks: the colours and shapes of the console's pages.

export const styleSheet = `:root {
  color-scheme: light dark;
  --back: #f6f7f8;
  --surface: #ffffff;
  --text: #1d2329;
  --quiet: #5b6670;
  --line: #dfe3e7;
  --hover: #f1f4f6;
  --accent: #2b6a94;
  --on-accent: #ffffff;
  --whole: #1a7a4a;
  --loss: #96610a;
  --fault: #b3261e;
  --loss-back: #fcf3e0;
  --fault-back: #fcebea;
  --track: #e3e8ec;
}

@media (prefers-color-scheme: dark) {
  :root {
    --back: #121518;
    --surface: #1a1e22;
    --text: #e5e9ec;
    --quiet: #9ba6b0;
    --line: #30373d;
    --hover: #22282d;
    --accent: #7db8de;
    --on-accent: #121518;
    --whole: #5ac78d;
    --loss: #e5ab4b;
    --fault: #ff8a80;
    --loss-back: #2d2412;
    --fault-back: #331b1a;
    --track: #30373d;
  }
}

* { box-sizing: border-box; }
[hidden] { display: none !important; }

body {
  margin: 0;
  background: var(--back);
  color: var(--text);
  overflow-wrap: break-word;
  font: 15px/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", sans-serif;
}

header, main { max-width: 82rem; margin: 0 auto; padding: 0 1.5rem; }
header { padding-top: 1.4rem; padding-bottom: 1rem; }
main { padding-bottom: 2rem; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0; overflow-wrap: anywhere; }
h2 { font-size: 1.1rem; margin: 0 0 .6rem; }
h1, h2 { font-weight: 650; letter-spacing: -.01em; }
p { margin: 0; }

.quiet, .over { color: var(--quiet); }
.over { font-size: .85rem; }
.small { font-size: .85rem; }
.large { font-size: 1.05rem; font-weight: 600; }
.unseen { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); }
.path { font-family: ui-monospace, Consolas, "DejaVu Sans Mono", monospace; font-size: .9em; }
.number { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
.line { display: flex; flex-wrap: wrap; gap: .4rem 1rem; align-items: center; }
.line > :first-child { flex: 1 1 16rem; min-width: 0; }
.actions { display: flex; flex-wrap: wrap; gap: .4rem; justify-content: flex-end; }

section, .tiles button, .banner {
  background: var(--surface);
  border: 1px solid var(--line);
  border-radius: 8px;
}
section { padding: 1.1rem 1.4rem; margin-bottom: 1rem; }

.banner { padding: .6rem 1rem; margin-bottom: 1rem; border-left-width: 5px; }
.banner { border-left-color: var(--accent); overflow-wrap: anywhere; }
.banner.fault { background: var(--fault-back); border-left-color: var(--fault); }
.banner.loss { background: var(--loss-back); border-left-color: var(--loss); }

button, input, select {
  font: inherit;
  color: inherit;
  background: var(--surface);
  border: 1px solid var(--line);
  border-radius: 6px;
  padding: .25rem .7rem;
}
input, select { border-color: var(--quiet); }
button { cursor: pointer; white-space: nowrap; }
button:hover { background: var(--hover); }
button.strong { background: var(--accent); border-color: var(--accent); color: var(--on-accent); }
button:disabled { opacity: .5; cursor: default; }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 1px; }
a { color: var(--accent); }

progress {
  appearance: none;
  display: block;
  width: 100%;
  height: .55rem;
  margin-top: .5rem;
  border: 0;
  border-radius: 4px;
  overflow: hidden;
  background: var(--track);
}
progress::-webkit-progress-bar { background: var(--track); }
progress::-webkit-progress-value { background: var(--accent); }
progress::-moz-progress-bar { background: var(--accent); }

.tiles { display: grid; grid-template-columns: repeat(8, 1fr); gap: .7rem; margin-bottom: 1rem; }
.tiles button { text-align: left; padding: .6rem .8rem; white-space: normal; }
.tiles button[aria-pressed="true"] { border-color: var(--accent); box-shadow: 0 0 0 1px var(--accent); }
.tiles .count { display: block; font-size: 1.5rem; line-height: 1.2; font-weight: 650; }
.tiles .name { color: var(--quiet); font-size: .85rem; }

.whole { color: var(--whole); }
.losses, .retrying { color: var(--loss); }
.failed { color: var(--fault); }
.running { color: var(--accent); }
.cancelled, .waiting { color: var(--quiet); }
.zero { color: var(--text); opacity: .45; }

.scroll { max-height: 17rem; overflow: auto; }
table { width: 100%; border-collapse: collapse; }
th { text-align: left; font-size: .85rem; font-weight: 600; color: var(--quiet); }
th.number { text-align: right; }
th, td { padding: .4rem .8rem .4rem 0; border-bottom: 1px solid var(--line); vertical-align: top; }
th:last-child, td:last-child { padding-right: 0; }
td:last-child { text-align: right; }
tbody tr:last-child td { border-bottom: 0; }
tbody tr:hover { background: var(--hover); }
.scroll thead th { position: sticky; top: 0; background: var(--surface); }
.state { white-space: nowrap; }
.state::before {
  content: "";
  display: inline-block;
  width: .6rem;
  height: .6rem;
  margin-right: .5rem;
  border-radius: 50%;
  background: currentColor;
}
.jobs { table-layout: fixed; }
.jobs th:nth-child(1) { width: 8.5rem; }
.jobs th:nth-child(4) { width: 8rem; }
.jobs th:nth-child(5), .jobs th:nth-child(7) { width: 4rem; }
.jobs th:nth-child(6) { width: 5.2rem; }
.jobs th:nth-child(8) { width: 8.5rem; }
.jobs td { overflow-wrap: anywhere; }
.jobs .title { display: block; }
.jobs .cut { display: -webkit-box; -webkit-line-clamp: 6; -webkit-box-orient: vertical; overflow: hidden; }

.controls { display: flex; flex-wrap: wrap; gap: .8rem; align-items: end; margin-bottom: .6rem; }
.controls label { display: flex; flex-direction: column; font-size: .85rem; color: var(--quiet); }
.controls input, .controls select { font-size: 15px; height: 2.2rem; color: var(--text); max-width: 16rem; }
.controls input { width: 20rem; max-width: 100%; }
#found { margin-left: auto; }
.pager { display: flex; gap: .8rem; align-items: center; justify-content: center; padding-top: .9rem; }

dl { display: grid; grid-template-columns: max-content 1fr; gap: .3rem 1.2rem; margin: 1rem 0; }
dt { color: var(--quiet); }
dd { margin: 0; overflow-wrap: anywhere; }
.log {
  margin: 0;
  padding: .8rem;
  max-height: 26rem;
  overflow: auto;
  white-space: pre-wrap;
  overflow-wrap: anywhere;
  background: var(--back);
  border-radius: 6px;
  font: .85em/1.5 ui-monospace, Consolas, "DejaVu Sans Mono", monospace;
}

dialog {
  max-width: 34rem;
  color: var(--text);
  background: var(--surface);
  border: 1px solid var(--line);
  border-radius: 8px;
  padding: 1.4rem;
}
dialog::backdrop { background: rgb(0 0 0 / .45); }
dialog .actions { margin-top: 1.2rem; }
#question { overflow-wrap: anywhere; }

.login { max-width: 26rem; padding-top: 12vh; }
.login h1 { margin-bottom: 1rem; }
.login label { display: block; margin-bottom: .9rem; color: var(--quiet); font-size: .9rem; }
.login input { display: block; width: 100%; padding: .4rem .6rem; color: var(--text); font-size: 15px; }

@media (max-width: 70rem) {
  .tiles { grid-template-columns: repeat(4, 1fr); }
}

@media (max-width: 60rem) {
  header, main { padding-left: .8rem; padding-right: .8rem; }
  section { padding: .9rem; }
  .jobs thead { position: absolute; clip-path: inset(50%); width: 1px; height: 1px; overflow: hidden; }
  .jobs tr { display: grid; grid-template-columns: 8.5rem 1fr auto; border-bottom: 1px solid var(--line); }
  .jobs td { border: 0; padding: .25rem .6rem .25rem 0; }
  .jobs td:nth-child(3) { grid-column: 2; grid-row: 2; }
  .jobs td:nth-child(n + 4):nth-child(-n + 7) { grid-column: 2; text-align: left; color: var(--quiet); }
  .jobs td:nth-child(n + 4):nth-child(-n + 7):empty { display: none; }
  .jobs td:nth-child(n + 4):nth-child(-n + 7)::before { content: attr(data-label) ": "; }
  .jobs td:last-child { grid-column: 3; grid-row: 1 / span 3; }
}
`;
