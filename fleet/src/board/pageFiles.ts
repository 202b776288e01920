// The files of the page. The scripts are those that the compiler made of page/; nothing else of
// this program can be asked for.
import { readdirSync, readFileSync } from "node:fs";
import { icon } from "./pageText.js";
import { styleSheet } from "./styleSheet.js";

export interface PageFile {
  type: string;
  text: string;
}

export function readPageFiles(): Map<string, PageFile> {
  const files = new Map<string, PageFile>([
    ["/board.css", { type: "text/css", text: styleSheet }],
    ["/icon.svg", { type: "image/svg+xml", text: icon }],
  ]);
  const folder = new URL("page/", import.meta.url);
  for (const name of readdirSync(folder))
    if (name.endsWith(".js")) {
      const text = readFileSync(new URL(name, folder), "utf8").replace(/^\/\/# source.*$/m, "");
      files.set(`/page/${name}`, { type: "text/javascript", text });
    }
  return files;
}
