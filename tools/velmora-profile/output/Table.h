#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_TABLE_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_TABLE_H

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace profile
{
// The columns that a text takes on a terminal: wide characters take two, combining ones none.
int columnsOf(const QString &text);

// Rows under headings, aligned by the columns that their texts take.
class Table
{
public:
    explicit Table(const QStringList &headings);

    void add(const QStringList &row);
    bool isEmpty() const;
    QString toText() const;

private:
    QStringList m_headings;
    QList<QStringList> m_rows;
};
} // namespace profile

#endif
