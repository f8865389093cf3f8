#include "tools/velmora-profile/output/Html.h"

#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QUrl>

namespace
{
using namespace profile;

const char kStyle[] = R"(
:root { color-scheme: light dark; --ink: #1b1f24; --paper: #ffffff; --soft: #59636e;
  --line: #d1d9e0; --card: #f6f8fa; --bar: #0a66c2; --warn: #9a3b00; --warncard: #fff4e5; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e6edf3; --paper: #0d1117; --soft: #9aa4af; --line: #30363d; --card: #161b22;
    --bar: #58a6ff; --warn: #f0a35e; --warncard: #2b1d0e; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 72rem; padding: 1rem; background: var(--paper); color: var(--ink);
  font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.6rem; margin: 0.5rem 0 0; }
h2 { font-size: 1.2rem; margin: 2rem 0 0.5rem; border-bottom: 1px solid var(--line); }
h2 small, .soft { color: var(--soft); font-weight: normal; }
h3 { font-size: 1rem; margin: 1rem 0 0.25rem; }
a { color: var(--bar); }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: 0.9rem; }
th, td { text-align: left; vertical-align: top; padding: 0.3rem 0.6rem 0.3rem 0;
  border-bottom: 1px solid var(--line); }
th { color: var(--soft); font-weight: 600; white-space: nowrap; }
td { min-width: 5rem; }
td:first-child { white-space: nowrap; width: 1%; padding-right: 1.5rem; }
.changed { font-weight: 600; }
.finding { background: var(--warncard); border-left: 4px solid var(--warn); padding: 0.5rem 0.75rem;
  margin: 0.5rem 0; break-inside: avoid; }
.finding p { margin: 0; }
.marks { display: grid; grid-template-columns: repeat(auto-fill, minmax(10rem, 1fr)); gap: 0.75rem;
  padding: 0; list-style: none; }
.marks li { background: var(--card); border: 1px solid var(--line); border-radius: 6px;
  padding: 0.5rem; break-inside: avoid; }
.marks img, .nopicture { display: block; width: 100%; height: 7rem; object-fit: contain;
  background: var(--paper); margin-bottom: 0.4rem; }
.nopicture { display: grid; place-items: center; color: var(--soft); }
.fonts { columns: 16rem; padding: 0; list-style: none; }
.fonts li { break-inside: avoid; font-size: 1.1rem; }
svg { display: block; width: 100%; height: auto; max-height: 14rem; overflow: visible; }
svg rect { fill: var(--bar); }
svg text { fill: var(--soft); font: 10px system-ui, sans-serif; }
svg line { stroke: var(--line); }
@media (max-width: 40rem) { svg text { font-size: 17px; } }
@media print { body { max-width: none; padding: 0; font-size: 10pt; }
  :root { --ink: #000; --paper: #fff; --card: #fff; --bar: #444; --warncard: #fff; }
  .scroll { overflow: visible; } a { color: inherit; } }
)";

const int kChartWidth = 640;
const int kChartHeight = 160;
const int kBottom = 20;
const int kTop = 14;

bool isWeb(const QString &url)
{
    const QString scheme = QUrl(url).scheme();
    return scheme == text("http") || scheme == text("https");
}

bool isPlain(QChar character)
{
    const ushort code = character.unicode();
    return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z')
           || (code >= 'A' && code <= 'Z');
}

QString number(double value) { return QString::number(value, 'f', 1); }
} // namespace

QString profile::escaped(const QString &untrusted)
{
    return printable(withoutUserInfo(untrusted)).toHtmlEscaped();
}

QString profile::linked(const QString &url, const QString &label)
{
    const QString shown = escaped(label.trimmed().isEmpty() ? url : label);
    if (!isWeb(url)) {
        return shown;
    }
    const QByteArray target = QUrl(withoutUserInfo(url)).toEncoded(QUrl::RemoveUserInfo);
    return text("<a rel=\"noreferrer\" href=\"%1\">%2</a>")
        .arg(QString::fromLatin1(target).toHtmlEscaped(), shown);
}

QString profile::section(const char *id, const char *heading, qint64 count, const QString &body)
{
    return text("<section id=\"%1\">\n<h2>%2 <small>%3</small></h2>\n")
               .arg(text(id), text(heading))
               .arg(count)
           + body + text("</section>\n");
}

QString profile::htmlTable(const QStringList &headings, const QList<QStringList> &rows)
{
    QString html = text("<div class=\"scroll\"><table>\n<thead><tr>");
    for (const QString &heading : headings) {
        html += text("<th scope=\"col\">") + heading + text("</th>");
    }
    html += text("</tr></thead>\n<tbody>\n");
    for (const QStringList &row : rows) {
        html += text("<tr><td>") + row.join(text("</td><td>")) + text("</td></tr>\n");
    }
    return html + text("</tbody>\n</table></div>\n");
}

// Everything but letters and digits as an escape: no name can end the string or the attribute.
QString profile::fontFamily(const QString &name)
{
    QString css;
    const auto codePoints = name.toUcs4();
    for (const uint code : codePoints) {
        const bool isLetter = code < 0x80 && isPlain(QChar(ushort(code)));
        css += isLetter ? QString(QChar(ushort(code))) : text("\\%1 ").arg(code, 0, 16);
    }
    return text("font-family: '%1', monospace").arg(css);
}

QString profile::barChart(const QString &description, const QList<Bar> &bars, int labelStep)
{
    int highest = 1;
    for (const Bar &bar : bars) {
        highest = qMax(highest, bar.value);
    }
    const double room = kChartHeight - kBottom - kTop;
    const double step = double(kChartWidth) / double(qMax(1, int(bars.size())));
    QString svg = text("<svg viewBox=\"0 0 %1 %2\" preserveAspectRatio=\"xMinYMid\" role=\"img\" "
                       "aria-label=\"%3\">\n")
                      .arg(kChartWidth)
                      .arg(kChartHeight)
                      .arg(escaped(description));
    svg += text("<text x=\"0\" y=\"10\">%1</text>\n").arg(highest);
    svg += text("<line x1=\"0\" x2=\"%1\" y1=\"%2\" y2=\"%2\"/>\n")
               .arg(kChartWidth)
               .arg(kChartHeight - kBottom);
    for (int i = 0; i < bars.size(); ++i) {
        const double height = room * bars.at(i).value / highest;
        svg += text("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"><title>%5</title></rect>\n")
                   .arg(number(i * step + step * 0.1), number(kChartHeight - kBottom - height),
                        number(step * 0.8), number(height), escaped(bars.at(i).tip));
        if (i % labelStep == 0) {
            svg += text("<text x=\"%1\" y=\"%2\">%3</text>\n")
                       .arg(number(i * step), QString::number(kChartHeight - 6),
                            escaped(bars.at(i).label));
        }
    }
    return svg + text("</svg>\n");
}

// The policy keeps the page from asking anything of anybody, whatever a browser makes of it.
QString profile::page(const QString &title, const QString &body)
{
    return text("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                "style-src 'unsafe-inline'; img-src data:\">\n"
                "<link rel=\"icon\" href=\"data:,\">\n<title>")
           + escaped(title) + text("</title>\n<style>") + text(kStyle)
           + text("</style>\n</head>\n<body>\n") + body + text("</body>\n</html>\n");
}
