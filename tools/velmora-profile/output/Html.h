#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_HTML_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_HTML_H

#include <QtCore/QStringList>

// Pieces of the report's page. Every text from a profile goes through escaped().
namespace profile
{
// A text as it stands between tags or in a quoted attribute. Addresses in it lose user names and
// passwords: the page is passed around.
QString escaped(const QString &untrusted);

// A link when the URL leads to a page of the network, otherwise the text alone: what a profile
// holds must not run.
QString linked(const QString &url, const QString &label);

// A section with an id and a heading that counts.
QString section(const char *id, const char *heading, qint64 count, const QString &body);

// A table under headings; the cells are HTML already.
QString htmlTable(const QStringList &headings, const QList<QStringList> &rows);

// A name as the value of font-family in a quoted attribute.
QString fontFamily(const QString &name);

struct Bar {
    QString label;
    QString tip;
    int value;
};

// A bar chart as inline SVG. Labels are written below every labelStep-th bar.
QString barChart(const QString &description, const QList<Bar> &bars, int labelStep);

// The page around a body.
QString page(const QString &title, const QString &body);
} // namespace profile

#endif
