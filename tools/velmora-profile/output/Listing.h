#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_LISTING_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_LISTING_H

#include "tools/velmora-profile/output/Table.h"

#include <QtCore/QJsonArray>
#include <QtCore/QList>

namespace profile
{
// Entries for people and for programs, as a table and as JSON, from one description of the columns.
class Listing
{
public:
    struct Column {
        const char *name;    // null: in the table alone
        const char *heading; // null: in JSON alone
    };

    explicit Listing(const QList<Column> &columns);

    // A value for each column. A table has yes and no for bools, and arrays in one cell.
    void add(const QList<QJsonValue> &values);
    bool isEmpty() const;
    const QJsonArray &json() const;
    // Done, for whoever has nothing else to do.
    int say(bool asJson) const;

private:
    QList<Column> m_columns;
    Table m_table;
    QJsonArray m_json;
};
} // namespace profile

#endif
