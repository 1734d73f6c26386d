#include "reports/html/Style.h"

namespace reports::html {

const char* const kStyle = R"css(
:root{color-scheme:light dark;--paper:#f6f6f3;--card:#fff;--ink:#1c2126;--soft:#5d6670;--line:#e2e3df;
--sunk:#f1f1ee;--pass:#1b7743;--pass-t:#e6f2ea;--warn:#8a5800;--warn-t:#fbf0da;--fail:#b3261e;
--fail-t:#fae7e5;--open:#4b5763;--open-t:#e9edf0;--plot:#2c6288;--band:#2c628833}
@media (prefers-color-scheme:dark){:root{--paper:#14171a;--card:#1c2024;--ink:#e7e9ea;--soft:#9da6ae;
--line:#30363c;--sunk:#23282d;--pass:#6fcf97;--pass-t:#17301f;--warn:#e8b45a;--warn-t:#33280f;
--fail:#ff8a80;--fail-t:#3a1b19;--open:#aebac5;--open-t:#272e35;--plot:#7fb5da;--band:#7fb5da33}}
*{box-sizing:border-box}
html{-webkit-text-size-adjust:100%}
body{margin:0;background:var(--paper);color:var(--ink);font:16px/1.5 system-ui,-apple-system,"Segoe UI",
Roboto,"Noto Sans","Liberation Sans",sans-serif;overflow-wrap:anywhere}
main,.verdict>div,footer{max-width:1000px;margin:0 auto;padding:0 20px}
h1,h2,h3,h4,p,dl,dd,ol,ul,table,figure{margin:0;padding:0}
h1,h2,h3,h4,p,dt,dd,li,td,th,span,b,a{unicode-bidi:isolate}
h2{font-size:1.15rem;font-weight:650;margin:40px 0 12px}
h3{font-size:1rem;font-weight:650}
h4{font-size:.8rem;font-weight:650;color:var(--soft);margin-bottom:4px}
a{color:inherit;text-decoration-color:var(--line);text-underline-offset:3px}
a:hover{text-decoration-color:currentColor}
.soft,.note{color:var(--soft);font-size:.875rem}
.card{background:var(--card);border:1px solid var(--line);border-radius:12px;padding:16px 20px}
.pass{--tone:var(--pass);--tint:var(--pass-t)}
.warn{--tone:var(--warn);--tint:var(--warn-t)}
.fail{--tone:var(--fail);--tint:var(--fail-t)}
.open,.info{--tone:var(--open);--tint:var(--open-t)}
.mark{width:1em;height:1em;fill:none;stroke:currentColor;stroke-width:2;stroke-linecap:round;
stroke-linejoin:round;flex:none}
.verdict{background:var(--tint);border-bottom:1px solid var(--line);padding:36px 0 28px}
.verdict .what{color:var(--soft);font-size:.875rem;margin-bottom:12px}
.verdict .head{display:flex;gap:16px;align-items:center}
.verdict .sign{display:grid;place-items:center;flex:none;width:52px;height:52px;border-radius:50%;
background:var(--tone);color:var(--tint);font-size:28px}
.verdict h1{font-size:1.75rem;line-height:1.2;font-weight:680;letter-spacing:-.01em}
.verdict .lead{margin-top:12px}
.counts{list-style:none;display:flex;flex-wrap:wrap;gap:8px;margin-top:16px}
.badge,.counts li{display:inline-flex;align-items:center;gap:6px;color:var(--tone);background:var(--tint);
border-radius:99px;padding:2px 10px;font-size:.8125rem;font-weight:600;white-space:nowrap}
.counts li{background:var(--card);border:1px solid var(--line)}
.actions{list-style:none;display:grid;gap:10px}
.actions li{display:flex;gap:12px;align-items:flex-start}
.actions .n{flex:none;width:26px;height:26px;border-radius:50%;background:var(--fail-t);color:var(--fail);
display:grid;place-items:center;font-size:.8125rem;font-weight:650}
.actions p+p{color:var(--soft);font-size:.875rem}
.machine{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(280px,100%),1fr));gap:12px}
.machine .kind{color:var(--soft);font-size:.8125rem;flex:none;max-width:50%}
.machine .part.fail{border-color:var(--fail)}
.machine .top{display:flex;justify-content:space-between;gap:8px;align-items:center;min-height:26px}
dl.facts{display:grid;grid-template-columns:fit-content(40%) minmax(0,1fr);gap:2px 14px;font-size:.875rem}
dl.facts dt{color:var(--soft)}
.part{padding:12px 16px}
.part p{font-size:.875rem}
code,pre{font-family:ui-monospace,"SF Mono",Menlo,Consolas,"Liberation Mono",monospace;font-size:.8125rem}
.list{list-style:none}
.list a{text-decoration:none;display:grid;grid-template-columns:112px minmax(0,1fr) max-content;gap:12px;
align-items:center;padding:8px 0}
.list .badge{justify-self:start}
.list li+li{border-top:1px solid var(--line)}
.list .took{color:var(--soft);font-size:.875rem;font-variant-numeric:tabular-nums}
.list .where{color:var(--soft);font-size:.875rem;margin-left:8px}
.test{margin-top:12px;border-left:4px solid var(--tone);scroll-margin-top:12px}
.test>header{display:grid;grid-template-columns:minmax(0,1fr) max-content;gap:2px 12px;align-items:center}
.test>header .badge{grid-column:2;grid-row:1}
.test>header .where,.test>header .took{color:var(--soft);font-size:.875rem}
.test>header .took{text-align:right}
.test>*+*{margin-top:12px}
.says{border-radius:8px;background:var(--tint);padding:10px 14px}
.says .top{display:flex;gap:8px;align-items:baseline;color:var(--tone);font-weight:600;font-size:.875rem}
.says .top .mark{align-self:center}
.says .text{white-space:pre-wrap}
.says ol{padding-left:1.3em;margin-top:6px}
.says .from{color:var(--soft);font-size:.875rem;margin-top:4px}
.test>.says+.says{margin-top:8px}
table{border-collapse:collapse;width:100%;font-size:.875rem}
th{text-align:left;font-weight:600;color:var(--soft);font-size:.8125rem;padding:4px 12px 4px 0}
td{padding:6px 12px 6px 0;border-top:1px solid var(--line);vertical-align:middle}
td.value{font-variant-numeric:tabular-nums;font-weight:600}
td.value.out{color:var(--fail)}
td .of{display:block;color:var(--soft);font-size:.8125rem;font-weight:400}
th:first-child{width:26%}
th.picture{width:232px}
th.value{width:20%}
.plot{display:block;width:220px;max-width:100%;overflow:visible}
.track{fill:var(--sunk);stroke:var(--line)}
.good{fill:var(--pass);opacity:.28}
rect.value{fill:var(--plot)}
rect.out,circle.out{fill:var(--fail)}
.limit{stroke:var(--soft);stroke-dasharray:4 4}
.band{fill:var(--band)}
.course{fill:none;stroke:var(--plot);stroke-width:1.75;stroke-linejoin:round}
.latest{fill:var(--plot)}
.timeline{display:grid;gap:10px}
.timeline .row{display:grid;grid-template-columns:minmax(0,240px) minmax(0,1fr) 80px;gap:12px;
align-items:center;font-size:.875rem}
.timeline .row>:last-child{text-align:right;color:var(--soft)}
.timeline .where{display:block;color:var(--soft);font-size:.8125rem}
.timeline .axis{color:var(--soft);font-size:.8125rem}
.timeline .axis>:nth-child(2){display:flex;justify-content:space-between}
.bars{display:block;width:100%;height:14px;background:var(--sunk);border-radius:4px}
.bars rect{fill:var(--tone)}
details{border-top:1px solid var(--line);padding-top:8px}
details+details{margin-top:8px!important}
.fold{border:0;margin-top:12px}
summary{cursor:pointer;font-size:.875rem;color:var(--soft);font-weight:600}
details[open]>summary{margin-bottom:8px}
pre{background:var(--sunk);border-radius:8px;padding:12px 14px;margin:0;white-space:pre-wrap;line-height:1.45}
pre .at{color:var(--soft);margin-right:10px}
pre .bad{color:var(--fail)}
pre .odd{color:var(--warn)}
pre .gap{display:block;color:var(--soft);font-style:italic;padding:6px 0}
ol.steps{padding-left:1.5em;font-size:.875rem}
footer{color:var(--soft);font-size:.8125rem;padding-top:28px;padding-bottom:40px}
@media (max-width:640px){
body{font-size:15px}
main,.verdict>div,footer{padding-left:14px;padding-right:14px}
.card{padding:14px}
.verdict{padding:24px 0 20px}
.verdict h1{font-size:1.375rem}
.verdict .sign{width:42px;height:42px;font-size:22px}
.list a{grid-template-columns:minmax(0,1fr) max-content;gap:4px 12px}
.list .badge{grid-column:2;grid-row:1;justify-self:end}
.list .where{display:block;margin-left:0}
.list .took{grid-column:2;grid-row:2;text-align:right}
.list .name{grid-column:1;grid-row:1/3}
.timeline .row{grid-template-columns:minmax(0,1fr) max-content;gap:2px 12px}
.timeline .row>:nth-child(2){grid-column:1/3;grid-row:2}
.timeline .axis>:first-child,.timeline .axis>:last-child{display:none}
table,tbody,tr,td{display:block;width:auto}
thead{position:absolute;width:1px;height:1px;overflow:hidden;clip-path:inset(50%)}
tr{border-top:1px solid var(--line);padding:8px 0;display:grid;grid-template-columns:minmax(0,1fr) fit-content(50%);
gap:2px 12px}
tr>td:first-child{grid-column:1;grid-row:1}
td{border:0;padding:0}
td.picture{grid-column:1/3;grid-row:2;width:auto}
td.value{text-align:right}
td.picture:empty{display:none}
td.limits{grid-column:1/3}
td.limits:empty{display:none}
td.limits::before{content:"Allowed: ";color:var(--soft)}
.timeline .where{display:inline}
}
@media print{
:root{color-scheme:light;--paper:#fff;--card:#fff;--ink:#000;--soft:#444;--line:#bbb;--sunk:#f1f1ee;--pass:#1b7743;
--pass-t:#e6f2ea;--warn:#8a5800;--warn-t:#fbf0da;--fail:#b3261e;--fail-t:#fae7e5;--open:#4b5763;
--open-t:#e9edf0;--plot:#2c6288;--band:#2c628833}
@page{margin:16mm 14mm}
body{font-size:10.5pt;-webkit-print-color-adjust:exact;print-color-adjust:exact}
main,.verdict>div,footer{max-width:none;padding-left:0;padding-right:0}
.verdict{padding:18px;border-radius:12px;border:1px solid var(--line)}
.card{padding:10px 14px}
h2{margin-top:22px;break-after:avoid}
.says,.part,.list li,.timeline .row,tr,.test>header{break-inside:avoid}
.test>header{break-after:avoid}
details:not([open]):not(.fold){display:none}
a{text-decoration:none}
}
)css";

const char* const kStyleHash = "sha256-EkN8mNXvqbeEWzaFiP5ifmopKM8ux3KZjv8jxOPPmk4=";

}  // namespace reports::html
