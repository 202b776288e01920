// What is fetched may be used and handed on, comes from no script, and names no host.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { repository } from "../support/paths.js";

interface Package {
  version?: string;
  license?: string;
  resolved?: string;
  integrity?: string;
  link?: boolean;
}

const files = ["fleet/package-lock.json", "fleet/windows-node/package-lock.json"];
const packages = files.flatMap((file) => {
  const text = readFileSync(`${repository}/${file}`, "utf8");
  const lock = JSON.parse(text) as { packages: Record<string, Package> };
  return Object.entries(lock.packages).filter(([name]) => name !== "");
});

const allowed =
  /^(?:MIT|ISC|Apache-2\.0|BSD-2-Clause|BSD-3-Clause|0BSD|Python-2\.0|BlueOak-1\.0\.0|CC0-1\.0)$/;

test("every package has a licence that is known to be free", () => {
  const others = packages.filter(([, { license = "none" }]) => !allowed.test(license));
  assert.deepEqual(
    others.map(([name, { license }]) => `${name}: ${license ?? "none"}`),
    [],
  );
});

test("every package has its version and its sum, and names no host", () => {
  for (const [name, { version, integrity, resolved }] of packages) {
    assert.match(version ?? "", /^\d+\.\d+\.\d+/, name);
    assert.match(integrity ?? "", /^sha512-/, name);
    assert.equal(resolved, undefined, name);
  }
});
