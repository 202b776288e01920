// The markup of the page and of its login. Both stand as they are: what a queue holds comes to the
// page as data, and is written there as text.

function frame(main: string, script: string): string {
  return `<!doctype html>
<html lang="en">
  <head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <meta name="color-scheme" content="light dark">
    <title>Fleet</title>
    <link rel="icon" href="/icon.svg" type="image/svg+xml">
    <link rel="stylesheet" href="/board.css">
    ${script}
  </head>
  <body>
${main}
  </body>
</html>
`;
}

const overview = `
      <section aria-label="Progress">
        <div class="line">
          <p id="share" class="large"></p>
          <span class="actions">
            <button id="retry-failed" type="button">Retry all that failed</button>
            <button id="pause" type="button">Pause all</button>
            <button id="resume" type="button">Resume all</button>
          </span>
        </div>
        <progress id="done" aria-label="Databases that have ended" max="1" value="0"></progress>
      </section>
      <div id="tiles" class="tiles" role="group" aria-label="Show the databases of one state"></div>
      <section>
        <h2>Servers</h2>
        <div class="scroll">
          <table>
            <thead>
              <tr>
                <th scope="col">Server</th>
                <th scope="col" class="number">Done</th>
                <th scope="col" class="number">Failed</th>
                <th scope="col" class="number">Open</th>
                <th scope="col" class="number">Running</th>
                <th scope="col" class="number">Limit</th>
                <th scope="col">State</th>
                <th><span class="unseen">Actions</span></th>
              </tr>
            </thead>
            <tbody id="servers"></tbody>
          </table>
        </div>
      </section>
      <section>
        <h2>Databases</h2>
        <form id="filter" class="controls">
          <label>Search <input id="search" type="search" autocomplete="off"
            placeholder="Server, path, title, machine, cause"></label>
          <label>State <select id="verdict"></select></label>
          <label>Server <select id="server"></select></label>
          <span id="found" class="quiet" role="status"></span>
        </form>
        <table class="jobs">
          <thead>
            <tr>
              <th scope="col">State</th>
              <th scope="col">Database</th>
              <th scope="col">Progress or cause</th>
              <th scope="col">Machine</th>
              <th scope="col" class="number">Lost</th>
              <th scope="col" class="number">Restarts</th>
              <th scope="col" class="number">Tries</th>
              <th><span class="unseen">Actions</span></th>
            </tr>
          </thead>
          <tbody id="jobs"></tbody>
        </table>
        <nav class="pager" aria-label="Pages of databases">
          <button id="earlier" type="button">Previous</button>
          <span id="page"></span>
          <button id="later" type="button">Next</button>
        </nav>
      </section>`;

export const page = frame(
  `    <header>
      <div class="line">
        <div>
          <p class="over">Fleet of exports</p>
          <h1 id="queue">&nbsp;</h1>
        </div>
        <p class="quiet"><span id="as-of">reading</span> · <a href="/queues/">Queues</a>
          <button id="leave" type="button" hidden>Sign out</button></p>
      </div>
    </header>
    <main>
      <noscript><p class="banner fault">This page needs its script.</p></noscript>
      <p id="trouble" class="banner fault" role="alert" hidden></p>
      <p id="halted" class="banner loss" hidden></p>
      <p id="told" class="banner" role="status" hidden></p>
      <div id="overview">${overview}
      </div>
      <section id="job" hidden></section>
    </main>
    <dialog id="ask" aria-labelledby="question">
      <form method="dialog">
        <p id="question"></p>
        <p class="actions">
          <button id="no" value="no">No</button>
          <button id="yes" value="yes" class="strong">Yes</button>
        </p>
      </form>
    </dialog>`,
  '<script type="module" src="/page/main.js"></script>',
);

// The message is one of the program's own.
export function loginPage(message: string): string {
  const told = message === "" ? "" : `<p class="banner fault" role="alert">${message}</p>`;
  return frame(
    `    <main class="login">
      <section>
        <h1>Fleet of exports</h1>
        ${told}
        <form method="post" action="/login">
          <label>Name <input name="name" autocomplete="username" required autofocus></label>
          <label>Password <input name="password" type="password" autocomplete="current-password"
            required></label>
          <button class="strong">Sign in</button>
        </form>
      </section>
    </main>`,
    "",
  );
}

export const icon = `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
  <rect width="16" height="16" rx="3" fill="#2b6a94"/>
  <path d="M4 4h8v2H4zm0 3h6v2H4zm0 3h4v2H4z" fill="#fff"/>
</svg>
`;
