// The counts of notes, as the console's events and its outcome.json have them.
import { isObject, numberOf } from "../base/json.js";
import type { Counts } from "../jobs/jobData.js";

export function countsOf(value: unknown): Counts | null {
  if (!isObject(value)) return null;
  return {
    listed: numberOf(value, "listed") ?? 0,
    exported: numberOf(value, "exported") ?? 0,
    exportedWithLoss: numberOf(value, "exportedWithLoss") ?? 0,
    lost: numberOf(value, "lost") ?? 0,
  };
}
