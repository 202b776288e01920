// What the page asks of its server.
import type { BoardData, JobDetail, Told } from "../boardData.js";
import type { View } from "./view.js";

// What a change is made to: the ID of a job, the name of a server, or empty for all.
export interface Change {
  change: "cancel" | "retry" | "retry-failed" | "pause" | "resume";
  of: string;
  again?: boolean;
}

const patience = 30_000;
// Tens of thousands of jobs can be tried again at once.
const patienceOfChange = 600_000;
let token = "";

async function ask<T extends object>(path: string, more: RequestInit = {}): Promise<T> {
  const signal = AbortSignal.timeout(more.method === "POST" ? patienceOfChange : patience);
  const response = await fetch(path, { ...more, signal });
  if (response.status === 401) {
    location.assign("/login");
    throw new Error("sign in first");
  }
  const told = (await response.json()) as T & Told;
  if (!response.ok) throw new Error(told.error ?? `the board answered ${response.status}`);
  return told;
}

export async function readBoard(view: View): Promise<BoardData> {
  const data = await ask<BoardData>(`/api/board?${view.parameters().toString()}`);
  token = data.token;
  return data;
}

export function readJob(id: string): Promise<JobDetail> {
  return ask<JobDetail>(`/api/jobs/${encodeURIComponent(id)}`);
}

async function post(path: string, body: object): Promise<string> {
  const { told } = await ask<Told>(path, {
    method: "POST",
    headers: { "Content-Type": "application/json", "X-Board-Token": token },
    body: JSON.stringify(body),
  });
  return told ?? "";
}

export function makeChange(change: Change): Promise<string> {
  return post("/api/change", change);
}

export async function leave(): Promise<void> {
  await post("/api/leave", {});
  location.assign("/login");
}
