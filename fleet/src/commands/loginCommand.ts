// The command "login": who may sign in to the board.
import { existsSync } from "node:fs";
import { chown, open, rename, rm, stat, writeFile } from "node:fs/promises";
import { createInterface } from "node:readline";
import { Writable } from "node:stream";
import { CannotError, messageOf, UsageError } from "../base/failures.js";
import { loginLine, loginName, readLogins } from "../board/logins.js";

const shortestPassword = 12;
const longestPassword = 1000;

// On a terminal without a trace of what is typed.
function readLine(question: string): Promise<string> {
  const isTerminal = process.stdin.isTTY;
  if (isTerminal) process.stderr.write(question);
  const silence = new Writable({
    write: (_piece, _encoding, done) => {
      done();
    },
  });
  const lines = createInterface({ input: process.stdin, output: silence, terminal: isTerminal });
  return new Promise((resolve, reject) => {
    lines.on("SIGINT", () => {
      reject(new CannotError("nothing was changed"));
    });
    lines.on("close", () => {
      resolve("");
    });
    lines.once("line", (line) => {
      resolve(line);
      lines.close();
    });
  }).finally(() => {
    lines.close();
    if (isTerminal) process.stderr.write("\n");
  }) as Promise<string>;
}

async function askForPassword(name: string): Promise<string> {
  const password = await readLine(`Password of ${name}: `);
  if (password.length < shortestPassword || password.length > longestPassword)
    throw new UsageError(`a password has ${shortestPassword} letters or more`);
  if (process.stdin.isTTY && (await readLine("Once more: ")) !== password)
    throw new UsageError("these are two passwords");
  return password;
}

// Of the user who had the file, whoever calls this: a board of that user could not read it else.
async function keepOwner(stage: string, file: string): Promise<void> {
  if (!existsSync(file)) return;
  const [made, earlier] = [await stat(stage), await stat(file)];
  if (made.uid !== earlier.uid || made.gid !== earlier.gid)
    await chown(stage, earlier.uid, earlier.gid);
}

async function replace(file: string, text: string): Promise<void> {
  const stage = `${file}.new`;
  try {
    await rm(stage, { force: true });
    await writeFile(stage, text, { mode: 0o600, flag: "wx" });
    await keepOwner(stage, file);
    await rename(stage, file);
  } finally {
    await rm(stage, { force: true });
  }
}

// On Windows another file would have the access list of its folder.
async function overwrite(file: string, text: string): Promise<void> {
  const handle = await open(file, "r+");
  try {
    const { bytesWritten } = await handle.write(text, 0);
    await handle.truncate(bytesWritten);
    await handle.sync();
  } finally {
    await handle.close();
  }
}

// Readable by nobody else at any moment.
async function write(file: string, lines: readonly string[]): Promise<void> {
  const text = lines.map((line) => `${line}\n`).join("");
  const isInPlace = process.platform === "win32" && existsSync(file);
  try {
    await (isInPlace ? overwrite(file, text) : replace(file, text));
  } catch (error) {
    throw new CannotError(`the password file '${file}' cannot be written: ${messageOf(error)}`);
  }
}

// Returns a sentence.
export async function setLogin(name: string, file: string, isRemoved: boolean): Promise<string> {
  if (!loginName.test(name)) throw new UsageError(`'${name}' is no name for a login`);
  const logins = existsSync(file) ? readLogins(file) : [];
  const others = logins.filter((login) => login.name !== name).map(({ line }) => line);
  if (isRemoved) {
    if (others.length === logins.length) throw new CannotError(`'${name}' is not in '${file}'`);
    await write(file, others);
    return `${name} is let in no more`;
  }
  await write(file, [...others, await loginLine(name, await askForPassword(name))]);
  return `${name} may sign in`;
}
