// Takes over the page's new state once a second; the page turns pale while nobody answers.
const PERIOD_MS = 1000;

async function refresh() {
  let stale = true;
  try {
    const reply = await fetch("/", { cache: "no-store" });
    const main = new DOMParser().parseFromString(await reply.text(), "text/html").querySelector("main");
    stale = !reply.ok || !main;
    // What the reader has selected stays.
    if (!stale && getSelection().isCollapsed) document.querySelector("main").replaceWith(main);
  } catch {}
  document.body.classList.toggle("stale", stale);
  setTimeout(refresh, PERIOD_MS);
}

setTimeout(refresh, PERIOD_MS);
