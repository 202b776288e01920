// Values of options, read from the words that a person gives.
import { InvalidArgumentError } from "commander";
import { parseDuration } from "../base/time.js";
import type { PathMap } from "../export/place.js";

export function wholeNumber(text: string): number {
  if (!/^[1-9]\d{0,5}$/.test(text)) throw new InvalidArgumentError("It is no number above 0.");
  return Number(text);
}

export function duration(text: string): number {
  const milliseconds = parseDuration(text);
  if (milliseconds === undefined || milliseconds === 0)
    throw new InvalidArgumentError("It is no time, such as 90s or 10m.");
  return milliseconds;
}

export function pathMap(text: string, earlier: PathMap[] = []): PathMap[] {
  const at = text.indexOf("=");
  if (at < 1) throw new InvalidArgumentError("It is not FROM=TO.");
  return [...earlier, { from: text.slice(0, at), to: text.slice(at + 1) }];
}

export function collected(text: string, earlier: string[] = []): string[] {
  return [...earlier, text];
}
