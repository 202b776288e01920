// Links from a page to folders below the root of a project.
import path from "node:path";
import { exists, seenHere } from "../export/place.js";
import type { PathMap } from "../export/place.js";

const drive = /^([A-Za-z]:)\\(.*)$/;

function isOfWindows(name: string): boolean {
  return /^(?:[A-Za-z]:|[\\/]{2})/.test(name);
}

function encoded(parts: readonly string[]): string {
  return parts.map((part) => encodeURIComponent(part.toWellFormed())).join("/");
}

// Without the sign in front that allows a path to be long.
function plain(name: string): string {
  const path_ = name.replaceAll("/", "\\");
  return path_.replace(/^\\\\\?\\UNC\\/i, "\\\\").replace(/^\\\\\?\\/, "");
}

// Undefined: it does not say from where on.
export function fileUrl(name: string): string | undefined {
  if (!isOfWindows(name))
    return name.startsWith("/") ? `file://${encoded(name.split(/[\\/]/))}` : undefined;
  const whole = plain(name);
  const [, letter, rest = ""] = drive.exec(whole) ?? [];
  if (letter !== undefined) return `file:///${letter}/${encoded(rest.split("\\"))}`;
  return whole.startsWith("\\\\") ? `file://${encoded(whole.slice(2).split("\\"))}` : undefined;
}

function leadsOut(way: string, paths: path.PlatformPath): boolean {
  return /^\.\.(?:[\\/]|$)/.test(way) || paths.isAbsolute(way);
}

// By the names alone, before anything is looked for.
export function isBelow(root: string, target: string): boolean {
  const isWindows = isOfWindows(root);
  if (isWindows !== isOfWindows(target)) return false;
  const paths = isWindows ? path.win32 : path.posix;
  const named = (name: string) => (isWindows ? plain(name) : name.replaceAll("\\", "/"));
  const way = paths.relative(named(root), named(target));
  return way !== "" && !leadsOut(way, paths);
}

// From a page in the folder, when that lies in the root or is the one around it; else undefined.
export function relativeLink(folder: string, root: string, target: string): string | undefined {
  if (isOfWindows(root) !== isOfWindows(folder)) return undefined;
  const paths = isOfWindows(root) ? path.win32 : path.posix;
  const isOutside = leadsOut(paths.relative(root, folder), paths);
  if (isOutside && paths.relative(paths.dirname(root), folder) !== "") return undefined;
  return encoded(paths.relative(folder, target).split(paths.sep));
}

export class Links {
  private readonly folder: string;
  private readonly seen = new Map<string, Promise<boolean>>();

  constructor(
    page: string,
    private readonly maps: readonly PathMap[],
  ) {
    this.folder = path.dirname(path.resolve(page));
  }

  // The path is as the console calls it; undefined: no link can lead there, or none may, since a
  // path that a machine told leads out of the root.
  to(root: string, target: string): string | undefined {
    if (!isBelow(root, target)) return undefined;
    const near = relativeLink(this.folder, this.here(root), this.here(target));
    return near ?? fileUrl(target);
  }

  // Of several, the first that is there and can be linked to.
  async toFirst(root: string, targets: readonly string[]): Promise<string | undefined> {
    if (!(await this.sees(root))) return undefined;
    for (const target of targets)
      if (isBelow(root, target) && (await exists(this.here(target)))) return this.to(root, target);
    return undefined;
  }

  // Asked once: where the root is away, each question can take long.
  private sees(root: string): Promise<boolean> {
    const known = this.seen.get(root) ?? exists(this.here(root));
    this.seen.set(root, known);
    return known;
  }

  private here(name: string): string {
    const seen = seenHere(name, this.maps);
    return isOfWindows(seen) ? seen : seen.replaceAll("\\", "/");
  }
}
