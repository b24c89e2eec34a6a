#pragma once

#include <string_view>

namespace tolvane::simulator {

inline constexpr std::string_view kPageStyle = R"css(
:root { color-scheme: light dark; --ink: #1b1f24; --soft: #57606a; --paper: #ffffff; --ground: #f3f4f6;
  --line: #d0d7de; --link: #0a58ca; --on: #b42318; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e6e9ed; --soft: #a3adb8; --paper: #1b2027; --ground: #12161b; --line: #3a424c;
    --link: #7cb7ff; --on: #ff9a8f; }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--ground); color: var(--ink);
  font: 16px/1.45 system-ui, "DejaVu Sans", sans-serif; }
main, header { max-width: 75rem; margin: 0 auto; padding: 0 1rem; }
h1 { font-size: 1.4rem; margin: 1rem 0 .5rem; }
h2 { font-size: 1.1rem; margin: 0 0 .6rem; }
section { background: var(--paper); border: 1px solid var(--line); border-radius: .5rem; padding: 1rem;
  margin: 0 0 1rem; }
a { color: var(--link); }
p { margin: .4rem 0; }
.soft { color: var(--soft); }
#ended { color: var(--on); font-weight: 600; }
dl { display: grid; grid-template-columns: repeat(auto-fill, minmax(9.5rem, 1fr)); gap: .6rem 1rem; margin: 0; }
dt { color: var(--soft); font-size: .85rem; }
dd { margin: 0; overflow-wrap: anywhere; }
.mode { font-weight: 600; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: .93rem; }
th, td { text-align: left; padding: .25rem .6rem .25rem 0; border-bottom: 1px solid var(--line);
  vertical-align: top; overflow-wrap: anywhere; }
th { color: var(--soft); font-weight: 500; white-space: nowrap; }
.number, th.number { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap;
  padding-right: 1rem; }
.labels { display: grid; grid-template-columns: repeat(auto-fill, minmax(15.5rem, 1fr)); gap: .8rem; }
.label { background: #fff; color: #000; border: 1px solid var(--line); border-radius: .25rem; padding: .6rem;
  font-size: .85rem; display: flex; flex-direction: column; gap: .35rem; overflow-wrap: anywhere; }
.label b { font-size: 1rem; display: block; }
.label p { margin: 0; }
.sums { display: grid; grid-template-columns: 1fr 1fr 1.2fr; border: 1px solid #000; margin-top: auto; }
.sums span { padding: .15rem .3rem; border-left: 1px solid #000; font-variant-numeric: tabular-nums; }
.sums span:first-child { border-left: 0; }
.sums small { display: block; }
.sums .total { font-weight: 700; }
.bars { width: 226px; max-width: 100%; margin: 0 auto; background: #fff; }
.bars path { shape-rendering: crispEdges; }
.bars text { font: 9px "DejaVu Sans Mono", monospace; }
code { font: .85rem "DejaVu Sans Mono", ui-monospace, monospace; overflow-wrap: anywhere; }
form { display: inline-flex; flex-wrap: wrap; gap: .4rem; align-items: center; margin: 0; }
.switches { display: flex; flex-wrap: wrap; gap: .4rem; margin: .5rem 0; }
button, input { font: inherit; color: inherit; background: var(--ground); border: 1px solid var(--line);
  border-radius: .35rem; padding: .35rem .6rem; min-height: 2.4rem; }
button { cursor: pointer; }
button.on { border: 2px solid var(--on); color: var(--on); font-weight: 600; }
input[type=number] { width: 7rem; }
input[name=fault] { width: min(26rem, 100%); }
nav { display: flex; flex-wrap: wrap; gap: 1rem; margin: .4rem 0; }
@media (max-width: 40rem) {
  section { padding: .7rem; }
  .rows thead { position: absolute; left: -999rem; }
  .rows tr { display: block; border-bottom: 1px solid var(--line); padding: .4rem 0; }
  .rows td { display: flex; gap: .6rem; border: 0; padding: .1rem 0; text-align: left; white-space: normal; }
  .rows td::before { content: attr(data-title); color: var(--soft); flex: 0 0 6rem; }
}
)css";

// Takes the changing part anew each second. Nothing is replaced while somebody types or looks at
// bytes.
inline constexpr std::string_view kPageScript = R"js(
'use strict';
const content = document.getElementById('content');
const ended = document.getElementById('ended');
let last = null, answers = 0;
function busy() {
  return content.contains(document.activeElement) && document.activeElement.matches('input') ||
    content.querySelector('details[open]') !== null || !getSelection().isCollapsed;
}
async function refresh() {
  try {
    const answer = await fetch('content' + location.search, { cache: 'no-store' });
    if (!answer.ok) throw new Error(answer.status);
    const text = await answer.text();
    ended.hidden = true;
    content.dataset.answers = ++answers;
    if (text !== last && !busy()) {
      const focused = document.activeElement && document.activeElement.id;
      content.innerHTML = text;
      last = text;
      if (focused) document.getElementById(focused)?.focus();
    }
  } catch {
    ended.hidden = false;
  }
  setTimeout(refresh, 1000);
}
setTimeout(refresh, 1000);
)js";

}  // namespace tolvane::simulator
