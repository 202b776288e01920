// Calls a board as its page does.
import type { BoardData } from "../../src/board/boardData.js";
import { request } from "./request.js";
import type { Answer } from "./request.js";

export class BoardCaller {
  private cookie = "";

  constructor(
    readonly url: string,
    private readonly ca?: string,
  ) {}

  get origin(): string {
    return this.url.replace(/\/$/, "");
  }

  get(path: string, headers: Record<string, string> = {}): Promise<Answer> {
    return request(this.origin + path, {
      headers: { Cookie: this.cookie, ...headers },
      ca: this.ca,
    });
  }

  async data(query = ""): Promise<BoardData> {
    const answer = await this.get(`/api/board?${query}`);
    if (answer.code !== 200) throw new Error(answer.text);
    return JSON.parse(answer.text) as BoardData;
  }

  // With headers of its own, which stand over those that the page would send.
  post(path: string, body: string, headers: Record<string, string> = {}): Promise<Answer> {
    const usual = { Cookie: this.cookie, Origin: this.origin, "Content-Type": "application/json" };
    const asked = { method: "POST", body, headers: { ...usual, ...headers }, ca: this.ca };
    return request(this.origin + path, asked);
  }

  async change(change: object): Promise<Answer> {
    const { token } = await this.data();
    return this.post("/api/change", JSON.stringify(change), { "X-Board-Token": token });
  }

  // Keeps the cookie.
  async signIn(name: string, password: string): Promise<Answer> {
    const form = new URLSearchParams({ name, password }).toString();
    const type = { "Content-Type": "application/x-www-form-urlencoded" };
    const answer = await this.post("/login", form, type);
    this.cookie = answer.headers["set-cookie"]?.[0]?.split(";")[0] ?? this.cookie;
    return answer;
  }
}
