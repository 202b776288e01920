// The persons who may sign in: a file with a line for each, "name:scrypt:cost:salt:sum". A password
// stands in it as a sum that takes a tenth of a second to make, so that who gets hold of the file
// has not got the passwords.
import { randomBytes, scrypt } from "node:crypto";
import { readSecretFile } from "../base/secretFile.js";
import { CannotError } from "../base/failures.js";
import { isSameSecret } from "./guard.js";

const usualCost = 2 ** 15;
const highestCost = 2 ** 20;
const blockSize = 8;
const sumBytes = 32;
const saltBytes = 16;

export interface Login {
  name: string;
  // All of the line, so that a change of it ends what was begun with the old one.
  line: string;
  cost: number;
  salt: string;
  sum: string;
}

export const loginName = /^[^\s:][^:\p{Cc}]{0,63}$/u;

function sumOf(password: string, salt: string, cost: number): Promise<string> {
  const memory = 256 * cost * blockSize;
  return new Promise((resolve, reject) => {
    const options = { N: cost, r: blockSize, p: 1, maxmem: memory };
    scrypt(
      password.normalize(),
      Buffer.from(salt, "base64url"),
      sumBytes,
      options,
      (error, sum) => {
        if (error === null) resolve(sum.toString("base64url"));
        else reject(error);
      },
    );
  });
}

export async function loginLine(name: string, password: string): Promise<string> {
  const salt = randomBytes(saltBytes).toString("base64url");
  return `${name}:scrypt:${usualCost}:${salt}:${await sumOf(password, salt, usualCost)}`;
}

function parseLine(line: string): Login | undefined {
  const match = /^([^:]+):scrypt:(\d{4,7}):([\w-]{16,}):([\w-]{43})$/.exec(line);
  const [, name = "", cost = "", salt = "", sum = ""] = match ?? [];
  const number = Number(cost);
  const isPower = Number.isInteger(Math.log2(number)) && number <= highestCost;
  return match === null || !isPower ? undefined : { name, line, cost: number, salt, sum };
}

export function parseLogins(text: string, file: string): Login[] {
  const lines = text.replace(/^\ufeff/, "").split(/\r?\n/);
  return lines.flatMap((line, index) => {
    if (line.trim() === "") return [];
    const login = parseLine(line);
    if (login === undefined)
      throw new CannotError(`line ${index + 1} of the password file '${file}' is no login`);
    return [login];
  });
}

export function readLogins(file: string): Login[] {
  return parseLogins(readSecretFile(file, "the password file"), file);
}

// For names that nobody has: that they are none must not show in the time it takes.
const nobody: Login = { name: "", line: "", cost: usualCost, salt: "A".repeat(22), sum: "" };

export async function findLogin(
  logins: readonly Login[],
  name: string,
  password: string,
): Promise<Login | undefined> {
  const login = logins.find((one) => one.name === name) ?? nobody;
  const isRight = isSameSecret(await sumOf(password, login.salt, login.cost), login.sum);
  return isRight && login !== nobody ? login : undefined;
}
