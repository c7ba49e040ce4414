#pragma once

namespace kora::tracelog {

/// The page's style sheet: everything that it needs stands in the page itself.
inline constexpr char kPageStyle[] = R"css(
:root { color-scheme: light dark;
  --paper: #fbfbf9; --card: #fff; --ink: #1d2330; --soft: #667085; --line: #e2e4e9; --shade: #f3f4f7;
  --sev0: #2a7fb8; --sev1: #b77905; --sev2: #d3541b; --sev3: #c01f2e;
  --hue0: #4c78a8; --hue1: #5b8c5a; --hue2: #9a6fb0; --hue3: #c28135; --hue4: #3f9a97; --hue5: #b0657d; }
@media (prefers-color-scheme: dark) { :root {
  --paper: #14171d; --card: #1b1f27; --ink: #e4e7ed; --soft: #98a1b2; --line: #2d333f; --shade: #222732;
  --sev0: #5fb0e6; --sev1: #e3b341; --sev2: #f08a4b; --sev3: #ff6b74;
  --hue0: #6f9fd2; --hue1: #7fb87d; --hue2: #bd93d3; --hue3: #dba45c; --hue4: #5fc0bc; --hue5: #d588a0; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1280px; padding: 28px 24px 60px; background: var(--paper); color: var(--ink);
  font: 14px/1.45 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1 { font-size: 22px; margin: 0; } h2 { font-size: 16px; margin: 0; overflow-wrap: anywhere; }
p { margin: 4px 0; } a { color: inherit; } .soft { color: var(--soft); }
.card { background: var(--card); border: 1px solid var(--line); border-radius: 8px; padding: 16px 18px; margin: 16px 0; }
.damage { color: var(--sev2); }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; }
th { text-align: left; font-weight: 600; color: var(--soft); border-bottom: 1px solid var(--line); }
th, td { padding: 2px 10px 2px 0; vertical-align: top; }
td.n { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; } th.n { text-align: right; }
.overview { min-width: 760px; } td.date { white-space: nowrap; }
td.w { font-family: ui-monospace, "DejaVu Sans Mono", Consolas, monospace; font-size: 12.5px; white-space: nowrap; }
.steps tr.data td { color: var(--soft); } .steps td:last-child { width: 45%; overflow-wrap: anywhere; }
.steps tr.group td:first-child { box-shadow: inset 3px 0 var(--line); }
.times { font-weight: 600; white-space: nowrap; }
.log { margin: 16px 18px; } .log p { overflow-wrap: anywhere; } .log .date { color: var(--soft); margin-right: 10px; }
.skipped { color: var(--sev2); }
summary { cursor: pointer; color: var(--soft); margin: 8px 0; }
.chip { display: inline-block; border-radius: 4px; padding: 0 7px; color: var(--card); font-weight: 600; }
.sev0 { --sev: var(--sev0); } .sev1 { --sev: var(--sev1); } .sev2 { --sev: var(--sev2); } .sev3 { --sev: var(--sev3); }
.chip { background: var(--sev); } tr.sev0 td, tr.sev1 td, tr.sev2 td, tr.sev3 td { color: var(--sev); }
.timeline { width: 100%; min-width: 960px; height: auto; display: block; margin: 12px 0 4px; }
.timeline text { font-size: 11px; fill: var(--soft); } .timeline .name { text-anchor: end; fill: var(--ink); }
.timeline .name tspan { fill: var(--soft); } .timeline .age { text-anchor: middle; }
.timeline .ages { text-anchor: end; } .wrap { fill: var(--soft); }
.lane { fill: none; } .lane.shaded { fill: var(--shade); } .tick { stroke: var(--line); }
.missing { fill: var(--soft); fill-opacity: .12; }
.hue0 { fill: var(--hue0); } .hue1 { fill: var(--hue1); } .hue2 { fill: var(--hue2); } .hue3 { fill: var(--hue3); }
.hue4 { fill: var(--hue4); } .hue5 { fill: var(--hue5); }
.fault line { stroke: var(--sev); stroke-opacity: .6; stroke-dasharray: 3 2; }
.fault path { fill: var(--sev); stroke: var(--card); stroke-width: 1.5; }
.timeline .fault text { fill: var(--sev); text-anchor: middle; font-weight: 700; }
)css";

}  // namespace kora::tracelog
