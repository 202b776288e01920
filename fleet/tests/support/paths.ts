// Where things are; this file runs as fleet/dist/tests/support/paths.js.
import { fileURLToPath } from "node:url";

export const repository = fileURLToPath(new URL("../../../../", import.meta.url)).replace(
  /\/$/,
  "",
);
export const fleetProgram = fileURLToPath(new URL("../../src/main.js", import.meta.url));
export const fakeConsole = fileURLToPath(new URL("fakeConsole.js", import.meta.url));
// The Windows programs.
export const windowsPrograms =
  process.env["LARKSPAN_PROGRAMS"] ?? `${repository}/build/mingw-x64/bin`;
