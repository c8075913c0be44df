#include "tools/sealserver/Html.h"

const char kStyleSheet[] = R"(:root {
  color-scheme: light dark;
  --page: #f6f7f9; --card: #fff; --text: #1b1f24; --soft: #57606a; --line: #d5dae0;
  --accent: #a3161e; --on-accent: #fff; --done: #e3f4e6; --done-text: #14532d;
  --fault: #fde8e8; --fault-text: #8b1118; --paper: #fff;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #14171b; --card: #1d2127; --text: #e8eaed; --soft: #a3acb7; --line: #3a424c;
    --accent: #ff8a8f; --on-accent: #2b0608; --done: #123321; --done-text: #a9e8bd;
    --fault: #451418; --fault-text: #ffc9cc;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--page); color: var(--text);
  font: 1rem/1.5 system-ui, "Noto Sans", "Noto Sans CJK SC", "Microsoft YaHei", sans-serif;
}
.bar, main { max-width: 68rem; margin: 0 auto; padding: 0 1.25rem; }
header { background: var(--card); border-bottom: 1px solid var(--line); }
.bar { display: flex; flex-wrap: wrap; align-items: center; gap: .5rem 1rem; min-height: 3.5rem; }
.brand { font-weight: 650; color: var(--text); text-decoration: none; }
.tag { font-size: .8rem; color: var(--soft); border: 1px solid var(--line); border-radius: 1rem;
  padding: 0 .6rem; }
nav { display: flex; flex-wrap: wrap; align-items: center; gap: 1rem; margin-left: auto; }
main { padding-top: 1.5rem; padding-bottom: 3rem; }
h1 { font-size: 1.6rem; line-height: 1.25; margin: 0 0 1rem; overflow-wrap: anywhere; }
h2 { font-size: 1.15rem; margin: 0 0 .75rem; }
a { color: var(--accent); }
.card { background: var(--card); border: 1px solid var(--line); border-radius: .6rem;
  padding: 1.25rem; margin: 0 0 1.5rem; }
.narrow { max-width: 26rem; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; }
caption { text-align: left; font-weight: 600; padding-bottom: .5rem; }
th, td { text-align: left; vertical-align: middle; padding: .5rem .75rem .5rem 0;
  border-top: 1px solid var(--line); }
th { color: var(--soft); font-weight: 550; font-size: .9rem; }
td { overflow-wrap: anywhere; }
.actions, .row { display: flex; align-items: center; gap: .5rem; }
.row { flex-wrap: wrap; }
form { margin: 0; }
label { display: block; font-weight: 550; margin: .9rem 0 .25rem; }
.hint { color: var(--soft); font-size: .9rem; margin: .25rem 0 0; }
input { font: inherit; color: inherit; background: var(--page); border: 1px solid var(--soft);
  border-radius: .4rem; padding: .5rem .6rem; width: 100%; max-width: 36rem; }
button, .button { font: inherit; white-space: nowrap; cursor: pointer; border: 1px solid var(--soft);
  border-radius: .4rem; padding: .35rem .8rem; background: transparent; color: var(--text);
  text-decoration: none; display: inline-block; }
button:hover, .button:hover { border-color: var(--accent); color: var(--accent); }
.main { background: var(--accent); border-color: var(--accent); color: var(--on-accent);
  margin-top: 1.1rem; }
.main:hover { color: var(--on-accent); filter: brightness(1.1); }
.quiet { border-color: transparent; padding: .35rem .25rem; text-decoration: underline;
  color: var(--accent); }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 2px; }
.notice { border-radius: .4rem; padding: .7rem 1rem; margin: 0 0 1.25rem; }
.done { background: var(--done); color: var(--done-text); }
.fault { background: var(--fault); color: var(--fault-text); }
.seal { background: var(--paper); border: 1px solid var(--line); border-radius: .4rem;
  padding: .25rem; max-width: 100%; }
.small { width: 4.5rem; height: 4.5rem; object-fit: contain; }
.large { max-height: 22rem; }
.state { font-weight: 600; }
.state, .whole { white-space: nowrap; }
.suspended { color: var(--accent); }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .4rem 1.25rem; margin: 0; }
dt { color: var(--soft); } dd { margin: 0; overflow-wrap: anywhere; }
.skip { position: absolute; left: -100rem; } .skip:focus { left: 1rem; top: .5rem; }
@media (max-width: 34rem) { dl { grid-template-columns: 1fr; gap: 0; } dd { margin-bottom: .6rem; } }
)";

const char kIcon[] =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 32 32\"><circle cx=\"16\" cy=\"16\" "
    "r=\"13\" fill=\"#fff\" stroke=\"#b5121b\" stroke-width=\"3\"/><path fill=\"#b5121b\" d=\"M16 "
    "7l2.1 6.3h6.6l-5.3 3.9 2 6.3-5.4-3.9-5.4 3.9 2-6.3-5.3-3.9h6.6z\"/></svg>";
