// The page, with places for what it shows.
//
// Colours come in pairs, for light and dark, each with a contrast of 4.5 or more on its ground; no state is told by
// colour alone. Pictures have a name for screen readers and their numbers beside them.

#pragma once

inline constexpr const char* kPageTemplate = R"PAGE(<!DOCTYPE html>
<html xmlns="http://www.w3.org/1999/xhtml" lang="en" xml:lang="en">
<head>
<meta charset="UTF-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<title>{{title}}</title>
<style>
:root { color-scheme: light dark; --ground: #ffffff; --ink: #1b1f24; --quiet: #57606a; --line: #d0d7de; --panel: #f6f8fa;
  --used: #0b5cad; --added: #8a5a00; --bad: #b3261e; --good: #1a6b34; --rest: #e7ebef; }
@media (prefers-color-scheme: dark) { :root { --ground: #14181d; --ink: #e6e9ed; --quiet: #a3adb8; --line: #3b434d;
  --panel: #1d232a; --used: #6db3ff; --added: #e6b450; --bad: #ff9a92; --good: #7fd897; --rest: #2c343d; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 72rem; padding: 1rem; background: var(--ground); color: var(--ink);
  font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.7rem; margin: .5rem 0; } h2 { font-size: 1.35rem; margin: 2.5rem 0 .5rem; border-bottom: 2px solid var(--line); }
h3 { font-size: 1.1rem; margin: 1.5rem 0 .5rem; }
a { color: var(--used); } p { margin: .4rem 0; } .quiet { color: var(--quiet); } .bad { color: var(--bad); font-weight: 600; }
.good { color: var(--good); }
table { border-collapse: collapse; width: 100%; } table.plain { width: auto; min-width: min(100%, 30rem); }
th, td { text-align: left; vertical-align: top; padding: .3rem .6rem; border-bottom: 1px solid var(--line); }
th .quiet { font-weight: 400; } thead th { overflow-wrap: normal; } th.file { width: 100%; }
.number { text-align: right; font-variant-numeric: tabular-nums; } td.number { min-width: 6.4em; } td.id { min-width: 2em; }
table.plain td { overflow-wrap: normal; } table.plain td.long { overflow-wrap: anywhere; }
tr.pictured > * { border-bottom: 0; } tr.picture td { padding-top: 0; }
svg.bar { display: block; width: 100%; height: 1.1rem; border: 1px solid var(--line); border-radius: .2rem; }
.rest { fill: var(--rest); } .used { fill: var(--used); } .added { fill: var(--added); } .over { fill: var(--bad); }
svg.map { display: block; width: 100%; height: 2.2rem; border: 1px solid var(--line); }
.block { stroke: var(--ground); stroke-width: 2; fill: var(--used); } .block.even { fill: var(--quiet); }
.map text { fill: var(--ground); font-size: .9rem; dominant-baseline: central; }
.specimen { height: 2.6rem; max-width: 100%; display: block; } .specimen path { fill: var(--ink); }
.specimen .missing { fill: none; stroke: var(--bad); stroke-width: 40; }
.gamut { width: 11rem; max-width: 100%; aspect-ratio: 1; display: block; background: var(--panel); border: 1px solid var(--line); }
.gamut .axis { stroke: var(--quiet); } .gamut .own { fill: var(--used); fill-opacity: .25; stroke: var(--used); }
.gamut .standard { fill: none; stroke: var(--ink); stroke-dasharray: 4 3; }
.gamut .axis, .gamut .own, .gamut .standard { vector-effect: non-scaling-stroke; stroke-width: 1.5; }
ul.slots { list-style: none; padding: 0; display: flex; flex-wrap: wrap; gap: .3rem; }
ul.slots li { border: 1px solid var(--line); border-radius: .3rem; padding: .15rem .5rem; background: var(--panel); max-width: 100%; }
ul.slots li.taken { border-color: var(--used); } ul.slots li.clashing { border: 2px solid var(--bad); color: var(--bad); }
ul.findings { padding-left: 1.2rem; } nav ul { columns: 14rem; padding-left: 1.2rem; }
@media (max-width: 40rem) { body { padding: .6rem; } th, td { padding: .25rem; font-size: .92rem; }
  td.number { min-width: 5.6em; } }
@media print { :root { color-scheme: light; --ground: #fff; --ink: #000; --quiet: #444; --line: #999; --panel: #fff; --used: #0b5cad;
  --added: #8a5a00; --bad: #b3261e; --good: #1a6b34; --rest: #eee; } body { max-width: none; padding: 0; font-size: 10pt; }
  nav { display: none; } tr, svg, li { break-inside: avoid; } h2, h3 { break-after: avoid; } svg * { print-color-adjust: exact; } }
</style>
</head>
<body>
<header>
<h1>{{title}}</h1>
{{#made}}<p class="quiet">{{made}}</p>{{/made}}
</header>
<main>
<section aria-labelledby="findings">
<h2 id="findings">What needs attention</h2>
{{^findings}}<p class="good">Nothing: no errors and no warnings.</p>{{/findings}}
{{#hasFindings}}<ul class="findings">
{{#findings}}<li><span class="{{severityClass}}">{{severity}}</span>: {{#anchor}}<a href="#{{anchor}}">{{where}}</a>{{/anchor}}{{^anchor}}{{where}}{{/anchor}}: {{text}}{{#advice}}<br/><span class="quiet">{{advice}}</span>{{/advice}}</li>
{{/findings}}</ul>{{/hasFindings}}
</section>
<nav aria-label="Documents"><ul>
{{#sections}}<li><a href="#{{anchor}}">{{title}}</a></li>
{{/sections}}</ul></nav>
{{#sections}}
<section aria-labelledby="{{anchor}}">
<h2 id="{{anchor}}">{{title}}</h2>
<p class="quiet">{{source}}</p>
{{#problem}}<p class="bad">{{problem}}</p>{{/problem}}
{{#devices}}
<h3>Device {{name}}</h3>
<table>
<thead><tr><th scope="col">Volume: label, location, status</th><th scope="col" class="number">Total</th><th scope="col" class="number">Free</th></tr></thead>
<tbody>
{{#volumes}}<tr class="pictured"{{#anchor}} id="{{anchor}}"{{/anchor}}><th scope="row">{{name}}<br/><span class="quiet">{{description}}</span></th><td class="number">{{total}}</td><td class="number">{{free}}</td></tr>
<tr class="picture"><td colspan="3">{{#bar}}{{>barPicture}}{{/bar}}{{^bar}}<span class="quiet">sizes unknown</span>{{/bar}}</td></tr>
{{/volumes}}</tbody></table>
{{/devices}}
{{#partitions}}
<h3>{{title}}</h3>
<svg class="map" role="img" aria-label="{{title}}: the table below has the numbers">
<rect class="rest" width="100%" height="100%"/>
{{#blocks}}<svg x="{{x}}%" width="{{width}}%"><title>{{name}}</title><rect class="block{{#even}} even{{/even}}" width="100%" height="100%"/><text x=".5rem" y="50%">{{name}}</text></svg>
{{/blocks}}</svg>
<table class="plain">
<thead><tr><th scope="col">Partition</th><th scope="col" class="number">Size</th><th scope="col" class="number">Percent</th></tr></thead>
<tbody>
{{#blocks}}<tr{{#anchor}} id="{{anchor}}"{{/anchor}}><th scope="row">{{name}}</th><td class="number long">{{size}}</td><td class="number long">{{percent}}</td></tr>
{{/blocks}}</tbody></table>
{{/partitions}}
{{#hasSending}}
<h3>Sending the ticked files</h3>
<table>
<thead><tr><th scope="col">Volume</th><th scope="col" class="number">Files</th><th scope="col" class="number">Free before</th><th scope="col" class="number">Free after</th></tr></thead>
<tbody>
{{#sending}}<tr class="pictured"><th scope="row">{{volume}}</th><td class="number">{{files}}</td><td class="number">{{before}}</td><td class="number">{{#fits}}{{after}}{{/fits}}{{^fits}}<span class="bad">does not fit: {{after}}</span>{{/fits}}</td></tr>
<tr class="picture"><td colspan="4">{{#bar}}{{>barPicture}}{{/bar}}{{^bar}}<span class="quiet">sizes unknown</span>{{/bar}}</td></tr>
{{/sending}}</tbody></table>
{{/hasSending}}
{{#files}}
<h3>{{title}}</h3>
<table>
<thead><tr><th scope="col" class="number">ID</th><th scope="col" class="file">File, and its place on the printer</th><th scope="col" class="number">Size</th><th scope="col">Ticked</th></tr></thead>
<tbody>
{{#rows}}<tr{{#anchor}} id="{{anchor}}"{{/anchor}}><td class="number id">{{#clash}}<span class="bad">{{id}}</span>{{/clash}}{{^clash}}{{id}}{{/clash}}</td><th scope="row">{{title}}<br/><span class="quiet">{{target}}</span>{{#clash}}<br/><span class="bad">{{clash}}</span>{{/clash}}{{#specimen}}<svg class="specimen" viewBox="{{box}}" role="img" aria-label="{{specimenLabel}}"><path d="{{path}}"/>{{#missingPath}}<path class="missing" d="{{missingPath}}"/>{{/missingPath}}</svg>{{#remark}}<span class="quiet">{{remark}}</span>{{/remark}}{{/specimen}}{{#gamut}}<svg class="gamut" viewBox="{{box}}" role="img" aria-label="{{gamutLabel}}"><path class="axis" d="{{axes}}"/><path class="own" d="{{own}}"/><path class="standard" d="{{standard}}"/></svg><span class="quiet">{{gamutLabel}}</span>{{/gamut}}{{#notShown}}<br/><span class="quiet">{{notShown}}</span>{{/notShown}}</th><td class="number">{{size}}</td><td>{{#ticked}}yes{{/ticked}}{{^ticked}}no{{/ticked}}</td></tr>
{{/rows}}</tbody></table>
{{/files}}
{{#slots}}
<h3>{{title}}</h3>
<ul class="slots">
{{#cells}}<li class="{{state}}">{{number}} {{state}}{{#owner}}: {{owner}}{{/owner}}</li>
{{/cells}}</ul>
{{/slots}}
{{#tables}}
<h3>{{title}}</h3>
<table class="plain">
<thead><tr>{{#headings}}<th scope="col">{{.}}</th>{{/headings}}</tr></thead>
<tbody>
{{#rows}}<tr{{#anchor}} id="{{anchor}}"{{/anchor}}>{{#cells}}<td{{#long}} class="long"{{/long}}>{{text}}</td>{{/cells}}</tr>
{{/rows}}</tbody></table>
{{/tables}}
</section>
{{/sections}}
</main>
</body>
</html>
)PAGE";

inline constexpr const char* kBarTemplate =
    R"BAR(<svg class="bar" viewBox="0 0 1000 10" preserveAspectRatio="none" role="img" aria-label="{{text}}"><rect class="rest" width="1000" height="10"/><rect class="used" width="{{used}}" height="10"/>{{#added}}<rect class="{{addedClass}}" x="{{used}}" width="{{added}}" height="10"/>{{/added}}</svg><span>{{text}}</span>)BAR";
