#pragma once

#include <string_view>

namespace tolvane {

// How a page looks. Bars are filled shapes, which a browser prints, unlike backgrounds.
inline constexpr std::string_view kPageStyle = R"(
:root { --paper: #fff; --ink: #1b1f24; --dim: #57606a; --soft: #f3f5f7; --line: #d0d7de;
  --good: #1a7f37; --warn: #8a5a00; --bad: #b42318; --bar: #3b6ea5; }
@media screen and (prefers-color-scheme: dark) {
  :root { --paper: #15181c; --ink: #e6e9ed; --dim: #9aa5b1; --soft: #20252b; --line: #3a424b;
    --good: #4ac26b; --warn: #d9a93a; --bad: #ff8278; --bar: #6ea8dc; }
}
* { box-sizing: border-box; }
body { max-width: 70rem; margin: 0 auto; padding: 1.5rem; background: var(--paper); color: var(--ink);
  font: 16px/1.45 "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; }
h1 { margin: 0 0 1rem; font-size: 1.6rem; }
h2 { margin: 2rem 0 .5rem; font-size: 1.15rem; break-after: avoid; }
p { margin: .3rem 0; white-space: pre-line; overflow-wrap: anywhere; }
.verdict { padding: .7rem 1rem; border-left: .4rem solid; background: var(--soft); break-inside: avoid; }
.verdict p { color: var(--ink); }
.verdict .word { color: inherit; font-size: 1.15rem; font-weight: 600; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .15rem 1rem; margin: 1rem 0 0; }
dt { color: var(--dim); }
dd { margin: 0; overflow-wrap: anywhere; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
th, td { padding: .3rem 1.2rem .3rem 0; border-bottom: 1px solid var(--line); text-align: left;
  vertical-align: top; }
thead th { color: var(--dim); font-weight: 600; vertical-align: bottom; }
td.number, th.number { text-align: right; font-variant-numeric: tabular-nums; }
th:last-child, td:last-child { padding-right: 0; }
.good { color: var(--good); }
.warn { color: var(--warn); }
.bad { color: var(--bad); }
td.good, td.warn, td.bad { font-weight: 600; }
td.name, td.good, td.warn, td.bad { white-space: nowrap; }
.bars { width: 100%; }
.bars th { width: 1%; font-weight: 400; white-space: nowrap; }
.bars .number { width: 1%; white-space: nowrap; }
.bars .picture { width: 45%; min-width: 6rem; vertical-align: middle; }
svg { display: block; width: 100%; height: .9rem; color: var(--bar); }
svg.warn { color: var(--warn); }
svg.bad { color: var(--bad); }
rect { fill: currentColor; }
@page { margin: 12mm; }
@media print {
  body { max-width: none; padding: 0; font-size: 9pt; }
  .wide { overflow: visible; }
  .verdict { border: 1px solid; border-left-width: .4rem; }
  th, td { padding-right: .6rem; }
}
)";

}  // namespace tolvane
