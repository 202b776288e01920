// Reading JSON that others wrote: nothing of it is believed before it was looked at.

export type JsonObject = Record<string, unknown>;

export function isObject(value: unknown): value is JsonObject {
  return typeof value === "object" && value !== null && !Array.isArray(value);
}

// Undefined: no JSON, or no object.
export function parseObject(text: string): JsonObject | undefined {
  try {
    const value: unknown = JSON.parse(text);
    return isObject(value) ? value : undefined;
  } catch {
    return undefined;
  }
}

export function textOf(object: JsonObject, name: string): string {
  const value = object[name];
  return typeof value === "string" ? value : "";
}

export function numberOf(object: JsonObject, name: string): number | null {
  const value = object[name];
  return typeof value === "number" && Number.isFinite(value) ? value : null;
}
