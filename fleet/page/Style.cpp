#include "fleet/page/Inlays.h"

namespace fleet::page {

const Inlay kStyle = {R"css(
.fleet main,.fleet .verdict>div,.fleet footer{max-width:1280px}
.unseen{position:absolute;width:1px;height:1px;overflow:hidden;clip-path:inset(50%)}
.groups{list-style:none;display:grid;grid-template-columns:repeat(auto-fill,minmax(min(360px,100%),1fr));gap:12px}
.group{border-left:4px solid var(--fail)}
.group p{font-size:.875rem;margin-top:6px}
.group .top,.failed .top{display:flex;justify-content:space-between;gap:8px;align-items:center}
.group .do::before{content:"\2192\00a0"}
.failed,.complaints,.legend{list-style:none}
.failed li+li,.complaints li+li{border-top:1px solid var(--line)}
.failed li,.complaints li{padding:8px 0}
.failed p{font-size:.875rem;color:var(--soft)}
.complaints li{display:flex;gap:12px;align-items:baseline;font-size:.875rem}
.complaints .badge{flex:none}
table.plain th[scope=row]{border-top:1px solid var(--line);color:var(--ink);font-size:.875rem;padding:6px 12px 6px 0}
.scripted{font-size:.875rem;text-decoration-color:currentColor}
.peers .odd{fill:var(--warn)}
.controls{display:flex;flex-wrap:wrap;gap:12px;align-items:flex-end;margin-bottom:8px}
.controls label{display:grid;gap:2px;font-size:.8125rem;color:var(--soft);max-width:100%}
input,select,button{font:inherit;font-size:.875rem;color:var(--ink);background:var(--card);
border:1px solid var(--line);border-radius:8px;padding:5px 10px;max-width:100%}
button{cursor:pointer}
button:disabled{color:var(--soft);cursor:default;opacity:.6}
h2:focus{outline:0}
:focus-visible{outline:2px solid var(--plot);outline-offset:1px}
.pager{display:flex;flex-wrap:wrap;gap:12px;align-items:center;margin-top:12px;font-size:.875rem}
.pager[hidden],.controls [hidden]{display:none}
.scroller{overflow-x:auto;background:var(--card);border:1px solid var(--line);border-radius:12px;margin-top:8px}
.scroller table{display:table;width:auto;min-width:min(100%,420px);font-size:.8125rem}
.scroller thead{display:table-header-group;position:static;width:auto;height:auto;overflow:visible;clip-path:none}
.scroller tbody{display:table-row-group}
.scroller tr{display:table-row;padding:0;border:0}
.scroller th,.scroller td{display:table-cell;padding:3px 4px;border-top:1px solid var(--line);width:auto}
.scroller thead th{border-top:0;vertical-align:bottom;padding:8px 4px}
.scroller .name{position:sticky;left:0;background:var(--card);z-index:1;padding-left:12px;min-width:110px;max-width:260px}
.scroller th.name button{border:0;background:none;padding:2px 0;text-align:left;font-size:.8125rem;font-weight:600;
display:block;max-width:240px;overflow:hidden;text-overflow:ellipsis;white-space:nowrap}
.scroller th.name button[aria-expanded=true]{white-space:normal}
#slow th.value{width:36%}
.scroller th.name button::before{content:"\25b8\00a0";content:"\25b8\00a0"/"";color:var(--soft)}
.scroller th.name button[aria-expanded=true]::before{content:"\25be\00a0";content:"\25be\00a0"/""}
.scroller .verdict-of{white-space:nowrap;padding-right:12px}
.scroller .verdict-of .badge+.badge{margin-left:4px}
.scroller th.test{width:26px;padding:8px 0}
.scroller th.test button{border:0;background:none;padding:4px 2px;display:block;margin:0 auto;
height:150px;text-align:left;writing-mode:vertical-rl;transform:rotate(180deg);font-size:.75rem;font-weight:600;color:var(--soft)}
.scroller th.test button span{display:block;max-height:142px;overflow:hidden;text-overflow:ellipsis;white-space:nowrap}
.scroller th.test[aria-sort=descending] button{color:var(--ink);text-decoration:underline}
.cell{text-align:center;color:var(--tone)}
.scroller td.cell{min-width:26px;text-align:center}
td.cell.fail,td.cell.warn,td.cell.open,.legend .cell{background:var(--tint);font-weight:700}
.scroller .details>td{padding:0}
.open-box{padding:12px 16px;position:sticky;left:0;width:min(1180px,calc(100vw - 80px));background:var(--sunk);
display:grid;gap:8px;font-size:.875rem}
.open-box .says{padding:8px 12px}
.legend{display:flex;flex-wrap:wrap;gap:6px 18px;margin-top:8px;padding:0;font-size:.8125rem;color:var(--soft)}
.legend .cell{display:inline-block;min-width:22px;border-radius:4px}
@media (scripting:none){.scripted{display:none}}
@media (max-width:640px){
.plain tr>th[scope=row]{border-top:0;width:auto;grid-column:1;grid-row:1;padding:0}
.plain tr>td:first-of-type{text-align:right;grid-column:2;grid-row:1}
.plain tr>td:nth-of-type(2){grid-column:1/3}
.scroller .name{max-width:150px}
.scroller th.name button{max-width:130px}
#slow th.value{width:auto}
.scroller .verdict-of{white-space:normal;width:90px;padding-right:4px}
.scroller .verdict-of .badge+.badge{margin:2px 0 0}
.open-box{width:calc(100vw - 40px)}
}
@media print{
.controls,.pager button,.scripted{display:none}
.scroller{overflow:visible;border-radius:0}
.scroller table{font-size:6.5pt}
.scroller th,.scroller td{padding:1px}
.scroller .name,.open-box{position:static}
.scroller .name{min-width:0;max-width:110px;padding-left:4px}
.scroller th.name button{font-size:6.5pt}
.scroller th.test,.scroller td.cell{width:9px;min-width:9px}
.scroller th.test button{font-size:6pt;padding:0;height:120px}
.scroller .verdict-of .badge{font-size:6pt;padding:0 3px;white-space:nowrap}
.open-box{width:auto}
.group,.complaints li,.failed li{break-inside:avoid}
}
)css",
                      "sha256-kHeqXzz5TepQa1u/UIfpwd1wZ0E9uIKQtXZ/oqk4+0g="};

}  // namespace fleet::page
