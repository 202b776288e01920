// The version, as package.json has it.
import { readFileSync } from "node:fs";
import { parseObject, textOf } from "./json.js";

// From dist/src/base/.
const file = new URL("../../../package.json", import.meta.url);

export function version(): string {
  return textOf(parseObject(readFileSync(file, "utf8")) ?? {}, "version");
}
