#pragma once

#include <QString>

namespace nimbrelle {

/// How the report looks: sizes hang on the reader's own text size, and nothing has a fixed width.
inline const QString growthStyle = QStringLiteral(R"(
:root{color-scheme:light dark;--paper:#F6F1E6;--surface:#FDFBF6;--sunken:#EEE7D8;--border:#E0D6C4;--strong:#8B7F6D;
--ink:#2B2621;--ink2:#5F564B;--leaf:#DE8C38;--accent:#8F4C0B;--good:#2F6B3A}
@media screen and (prefers-color-scheme:dark){:root{--paper:#1D1A17;--surface:#27231F;--sunken:#151310;--border:#3B352D;
--strong:#857A6B;--ink:#EFE7DA;--ink2:#C2B7A7;--accent:#EBAA67;--good:#8CCB91}}
*{box-sizing:border-box}
html{background:var(--paper);color:var(--ink);-webkit-text-size-adjust:100%}
body{margin:0 auto;padding:2.5rem 1.25rem;max-width:46rem;overflow-wrap:anywhere;line-height:1.65;
font-family:Inter,"Noto Sans","DejaVu Sans","Noto Sans CJK SC","Source Han Sans SC","WenQuanYi Micro Hei",sans-serif}
h1{font-size:1.75rem;line-height:1.35;font-weight:600;margin:0}
h2{font-size:1.2rem;line-height:1.5;font-weight:600;margin:0 0 .4rem}
h3{font-size:1rem;font-weight:600;margin:1.2rem 0 .2rem}
p{margin:.4rem 0}
section{background:var(--surface);border:1px solid var(--border);border-radius:.75rem;padding:1.25rem;margin:1.25rem 0}
.lead{font-size:1.1rem}
.note,footer,summary,figcaption,.axis,.key{color:var(--ink2);font-size:.875rem}
figure{margin:1rem 0 0;width:100%}
.figures{display:flex;flex-wrap:wrap;gap:0 1.5rem}
figcaption{display:flex;flex-wrap:wrap;justify-content:space-between;gap:0 1rem}
figcaption b{color:var(--ink)}
svg{display:block;width:100%}
svg.bars{height:5.5rem;border-bottom:1px solid var(--strong);border-top:1px dotted var(--border)}
svg.tall{height:9rem}
svg.share{height:1.25rem;min-width:6rem}
svg.length{height:.6rem}
.leaf{fill:var(--leaf)}.good{fill:var(--good)}.plain{fill:var(--strong)}.track{fill:var(--sunken)}
.span{fill:var(--leaf);opacity:.5}
.seen{stroke:var(--ink);stroke-width:4;vector-effect:non-scaling-stroke}
.guess{stroke:var(--ink2);stroke-width:2;stroke-dasharray:3 3;vector-effect:non-scaling-stroke}
.axis{display:flex;justify-content:space-between;gap:.5rem}
.axis :last-child{text-align:right}
.weeks span{flex:1 1 0}.weeks :last-child{text-align:left}
.key{display:flex;flex-wrap:wrap;gap:.2rem 1rem;list-style:none;padding:0;margin:.6rem 0 0}
.key i{display:inline-block;width:.8em;height:.8em;border-radius:.2em;margin-right:.4em}
i.leaf{background:var(--leaf)}i.good{background:var(--good)}i.plain{background:var(--strong)}
i.span{background:var(--leaf)}
i.seen{width:4px;height:1em;border-radius:0;background:var(--ink)}
i.guess{width:0;height:1em;border-radius:0;border-left:2px dashed var(--ink2)}
table{border-collapse:collapse;width:100%;font-variant-numeric:tabular-nums;margin-top:.5rem}
th,td{text-align:right;padding:.3rem .4rem;border-bottom:1px solid var(--border);font-weight:400;vertical-align:top}
thead th{color:var(--ink2);font-size:.875rem}
th:first-child,td.text{text-align:left}
details{margin-top:.8rem}
summary{cursor:pointer}
:focus-visible{outline:2px solid var(--accent);outline-offset:2px;border-radius:.3rem}
.bands{list-style:none;padding:0;margin:.6rem 0 0}
.bands li{border-top:1px solid var(--border);padding:.6rem 0}
.chips,.places{list-style:none;padding:0;margin:.4rem 0 0}
.chips{display:flex;flex-wrap:wrap;gap:.4rem}
.chips li{background:var(--sunken);border-radius:1em;padding:.1rem .7rem}
.chips small,.places small{color:var(--ink2);font-size:.875rem}
.places li{padding:.3rem 0}
.places p{display:flex;flex-wrap:wrap;justify-content:space-between;gap:0 1rem;margin:0}
blockquote{margin:1rem 0 0;padding:0 0 0 1rem;border-left:3px solid var(--border)}
blockquote p{margin:.1rem 0}
blockquote b,.chips b{color:var(--accent);font-weight:600}
.zh{color:var(--ink2)}
footer ul{padding-left:1.2rem}
@media (max-width:30rem){body{padding:1.25rem .6rem}section{padding:.9rem}}
@media print{html{background:#fff;color-scheme:light}body{max-width:none;padding:0;font-size:11pt}
section{background:none;border-width:1px 0 0;border-radius:0;padding:.8rem 0;margin:.8rem 0}
h2,h3,figcaption{break-after:avoid}th,td{padding:.1rem .4rem}summary{list-style:none}
figure,blockquote,li,tr{break-inside:avoid}
details::details-content{content-visibility:visible;block-size:auto}
*{-webkit-print-color-adjust:exact;print-color-adjust:exact}
@page{margin:16mm}}
)");

} // namespace nimbrelle
