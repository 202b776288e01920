// The counts, the filter and both tables.
import type { BoardData, RowPage } from "../boardData.js";
import type { RowVerdict } from "../../report/account.js";
import type { Ask } from "./actions.js";
import { byId, KeyedRows, make, partById, setName, setText } from "./dom.js";
import { makeJobRow } from "./jobTable.js";
import { makeServerRow } from "./serverTable.js";
import type { FilterName, View } from "./view.js";
import { count, verdictWords } from "./words.js";

// One for all, then one for each verdict.
const tiles: readonly (readonly [RowVerdict | "", string])[] = [["", "All"], ...verdictWords];

const afterTyping = 250;

export class Overview {
  private readonly jobs = new KeyedRows(
    byId("jobs"),
    ({ id }) => id,
    () => makeJobRow(this.ask),
  );
  private readonly servers = new KeyedRows(
    byId("servers"),
    ({ name }) => name,
    () => makeServerRow(this.ask),
  );
  private readonly tiles = new Map<string, HTMLButtonElement>();
  private typing: ReturnType<typeof setTimeout> | undefined;
  private list: RowPage = { rows: [], found: 0, page: 1, pages: 1 };

  constructor(
    private readonly ask: Ask,
    private readonly view: () => View,
  ) {
    for (const [verdict, name] of tiles) this.makeTile(verdict, name);
    byId("verdict").append(...tiles.map(([verdict, name]) => new Option(name, verdict)));
    this.listen();
  }

  show(data: BoardData): void {
    this.showCounts(data);
    this.showFilter(data);
    this.servers.show(data.servers);
    this.jobs.show(data.list.rows);
    this.showPager(data.list);
  }

  private makeTile(verdict: string, name: string): void {
    const parts = [make("span", { name: "count" }), make("span", { name: "name", text: name })];
    const tile = make("button", { children: parts });
    tile.type = "button";
    tile.addEventListener("click", () => {
      this.filter("verdict", verdict);
    });
    this.tiles.set(verdict, tile);
    byId("tiles").append(tile);
  }

  private filter(name: FilterName, value: string): void {
    location.hash = this.view().with(name, value);
  }

  private listen(): void {
    const search = partById(HTMLInputElement, "search");
    const apply = () => {
      clearTimeout(this.typing);
      this.filter("search", search.value.trim());
    };
    search.addEventListener("input", () => {
      clearTimeout(this.typing);
      this.typing = setTimeout(apply, afterTyping);
    });
    byId("filter").addEventListener("submit", (event) => {
      event.preventDefault();
      apply();
    });
    for (const name of ["verdict", "server"] as const) {
      const select = partById(HTMLSelectElement, name);
      select.addEventListener("change", () => {
        this.filter(name, select.value);
      });
    }
    const turn = (by: number) => () => {
      this.filter("page", String(this.list.page + by));
    };
    byId("earlier").addEventListener("click", turn(-1));
    byId("later").addEventListener("click", turn(1));
    this.listenForAll();
  }

  private listenForAll(): void {
    const wish = (id: "pause" | "resume" | "retry-failed", question: string, yes: string) => {
      byId(id).addEventListener("click", () => {
        this.ask({ question, yes, change: { change: id, of: "" } });
      });
    };
    wish("pause", "Pause all? No other export begins; those that run go on.", "Pause all");
    wish("resume", "Resume all? That takes back every pause, and a drain too.", "Resume all");
    wish("retry-failed", "Have all that failed tried again?", "Retry all that failed");
  }

  private showCounts({ tally, databases, open, servers, isPaused, drained }: BoardData): void {
    for (const [verdict, tile] of this.tiles) {
      const number = verdict === "" ? databases : tally[verdict as RowVerdict];
      const figure = tile.querySelector(".count");
      if (figure === null) continue;
      setText(figure, count(number));
      setName(figure, `count ${number === 0 ? "zero" : verdict}`);
      tile.setAttribute("aria-pressed", String(this.view().get("verdict") === verdict));
    }
    const done = databases - open;
    setText(byId("share"), `${count(done)} of ${count(databases)} databases have ended`);
    const bar = partById(HTMLProgressElement, "done");
    bar.max = Math.max(1, databases);
    bar.value = done;
    const isHalted = isPaused || drained !== "" || servers.some((server) => server.isPaused);
    partById(HTMLButtonElement, "pause").disabled = isPaused;
    partById(HTMLButtonElement, "resume").disabled = !isHalted;
    partById(HTMLButtonElement, "retry-failed").disabled = tally.failed === 0;
  }

  private showFilter({ servers }: BoardData): void {
    const view = this.view();
    const select = partById(HTMLSelectElement, "server");
    const wanted = JSON.stringify(servers.map(({ key }) => key));
    if (select.dataset["keys"] !== wanted) {
      const options = servers.map(({ name, key }) => new Option(name, key));
      select.replaceChildren(new Option("All", ""), ...options);
      select.dataset["keys"] = wanted;
    }
    select.value = view.get("server");
    partById(HTMLSelectElement, "verdict").value = view.get("verdict");
    const search = partById(HTMLInputElement, "search");
    if (document.activeElement !== search) search.value = view.get("search");
  }

  private showPager(list: RowPage): void {
    this.list = list;
    setText(byId("found"), `${count(list.found)} found`);
    setText(byId("page"), `Page ${count(list.page)} of ${count(list.pages)}`);
    partById(HTMLButtonElement, "earlier").disabled = list.page <= 1;
    partById(HTMLButtonElement, "later").disabled = list.page >= list.pages;
  }
}
