#include "tools/velmora-profile/output/Table.h"

#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QVector>

#include <cwchar>

namespace
{
const int kGapColumns = 2;

// Rows are padded as far as this at most, and many rows less far: a single long cell among many
// rows would otherwise come to more than memory holds.
const int kMaxWidth = 4096;
const int kMaxPaddedColumns = 8 * 1024 * 1024;

QString padded(const QString &text, int columns)
{
    return text + QString(qMax(0, columns - profile::columnsOf(text)), QLatin1Char(' '));
}

QString lineOf(const QStringList &row, const QVector<int> &widths)
{
    QString line;
    for (int i = 0; i < row.size(); ++i) {
        line += padded(row.at(i), widths.at(i)) + QString(kGapColumns, QLatin1Char(' '));
    }
    while (line.endsWith(QLatin1Char(' '))) {
        line.chop(1);
    }
    return line + QLatin1Char('\n');
}
} // namespace

int profile::columnsOf(const QString &text)
{
    int columns = 0;
    const auto codePoints = text.toUcs4();
    for (const uint code : codePoints) {
        columns += qMax(0, wcwidth(wchar_t(code)));
    }
    return columns;
}

profile::Table::Table(const QStringList &headings) : m_headings(headings) {}

void profile::Table::add(const QStringList &row)
{
    QStringList safe;
    for (const QString &cell : row) {
        safe.append(printable(cell));
    }
    m_rows.append(safe);
}

bool profile::Table::isEmpty() const { return m_rows.isEmpty(); }

QString profile::Table::toText() const
{
    QList<QStringList> lines = m_rows;
    lines.prepend(m_headings);
    const int maxWidth = qMin(kMaxWidth, kMaxPaddedColumns / int(lines.size()));
    QVector<int> widths(int(m_headings.size()), 0);
    for (const QStringList &row : qAsConst(lines)) {
        for (int i = 0; i < row.size(); ++i) {
            widths[i] = qMin(maxWidth, qMax(widths.at(i), columnsOf(row.at(i))));
        }
    }
    QString all;
    for (const QStringList &row : qAsConst(lines)) {
        all += lineOf(row, widths);
    }
    return all;
}
