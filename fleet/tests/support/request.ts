// Requests as no browser would let a page make them: with any header.
import { request as requestPlain } from "node:http";
import type { IncomingHttpHeaders } from "node:http";
import { request as requestTls } from "node:https";

export interface Answer {
  code: number;
  headers: IncomingHttpHeaders;
  text: string;
}

export interface Asked {
  method?: string;
  headers?: Record<string, string>;
  body?: string;
  ca?: string;
}

export function request(url: string, asked: Asked = {}): Promise<Answer> {
  const { method = "GET", headers = {}, body = "", ca } = asked;
  const send = url.startsWith("https:") ? requestTls : requestPlain;
  // The certificate is that of the address, whatever the header names.
  const options = { method, headers, ca, agent: false, servername: new URL(url).hostname };
  return new Promise((resolve, reject) => {
    const sent = send(url, options, (response) => {
      let text = "";
      response.setEncoding("utf8");
      response.on("data", (piece: string) => (text += piece));
      response.on("error", reject);
      response.on("end", () => {
        resolve({ code: response.statusCode ?? 0, headers: response.headers, text });
      });
    });
    sent.on("error", reject);
    sent.end(body);
  });
}
