// The script of the page: asks its server every two seconds, while somebody looks, and shows what it
// says.
import type { BoardData } from "../boardData.js";
import type { Wish } from "./actions.js";
import { confirmed } from "./dialog.js";
import { byId, setBanner, setText } from "./dom.js";
import { JobView } from "./jobView.js";
import { Overview } from "./overview.js";
import { leave, makeChange, readBoard } from "./server.js";
import { View } from "./view.js";
import { time } from "./words.js";

const betweenLooks = 2000;

let view = new View(location.hash);
let next: ReturnType<typeof setTimeout> | undefined;
// An answer to an older question is not shown.
let asked = 0;

const overview = new Overview(ask, () => view);
const jobView = new JobView(ask);

function messageOf(error: unknown): string {
  return error instanceof Error ? error.message : String(error);
}

function haltedText({ isPaused, drained }: BoardData): string {
  if (drained !== "") return `Drained since ${time(drained)}: workers finish and end.`;
  return isPaused ? "Paused: no other export begins." : "";
}

function showState(data: BoardData): void {
  setText(byId("queue"), data.queue);
  setText(byId("as-of"), data.asOf === "" ? "" : `as of ${time(data.asOf)}`);
  const leaving = byId("leave");
  leaving.hidden = data.user === "";
  setText(leaving, `Sign out ${data.user}`);
  const late = data.asOf === "" ? "" : " What is shown here is older.";
  setBanner("trouble", data.failure === "" ? "" : `${data.failure}.${late}`);
  setBanner("halted", haltedText(data));
  document.title =
    data.databases === 0 ? "Fleet" : `${data.databases - data.open}/${data.databases} Fleet`;
}

async function look(): Promise<void> {
  clearTimeout(next);
  const question = ++asked;
  try {
    const data = await readBoard(view);
    if (question !== asked) return;
    showState(data);
    overview.show(data);
    if (view.job !== "") await jobView.show(view.job);
  } catch (error) {
    if (question === asked) setBanner("trouble", messageOf(error));
  }
  if (question !== asked || document.hidden) return;
  next = setTimeout(() => void look(), betweenLooks);
}

function ask(wish: Wish): void {
  void confirmed(wish).then(async (isMeant) => {
    if (!isMeant) return;
    try {
      setBanner("told", await makeChange(wish.change));
    } catch (error) {
      setBanner("told", messageOf(error));
    }
    await look();
  });
}

function showView(): void {
  view = new View(location.hash);
  byId("overview").hidden = view.job !== "";
  byId("job").hidden = view.job === "";
  jobView.hide();
  setBanner("told", "");
  void look();
}

addEventListener("hashchange", showView);
document.addEventListener("visibilitychange", () => {
  if (!document.hidden) void look();
});
byId("leave").addEventListener("click", () => void leave());
showView();
