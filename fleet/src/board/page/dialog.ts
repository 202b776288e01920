// Asks before something is changed. "No" has the focus, so that a stray Enter changes nothing.
import type { Wish } from "./actions.js";
import { byId, partById } from "./dom.js";

export function confirmed(wish: Wish): Promise<boolean> {
  const dialog = partById(HTMLDialogElement, "ask");
  byId("question").textContent = wish.question;
  byId("yes").textContent = wish.yes;
  dialog.returnValue = "no";
  dialog.showModal();
  return new Promise((resolve) => {
    const close = () => {
      resolve(dialog.returnValue === "yes");
    };
    dialog.addEventListener("close", close, { once: true });
  });
}
