#include "tools/velmora-profile/output/Listing.h"

#include "tools/velmora-profile/output/Console.h"

namespace
{
using namespace profile;

QStringList headingsOf(const QList<Listing::Column> &columns)
{
    QStringList headings;
    for (const Listing::Column &column : columns) {
        if (column.heading) {
            headings.append(text(column.heading));
        }
    }
    return headings;
}

QString cellOf(const QJsonValue &value)
{
    if (value.isBool()) {
        return text(value.toBool() ? "yes" : "no");
    }
    return value.isArray() ? value.toVariant().toStringList().join(text(", "))
                           : value.toVariant().toString();
}
} // namespace

profile::Listing::Listing(const QList<Column> &columns)
    : m_columns(columns), m_table(headingsOf(columns))
{
}

void profile::Listing::add(const QList<QJsonValue> &values)
{
    QStringList cells;
    QJsonObject object;
    for (int i = 0; i < values.size(); ++i) {
        if (m_columns.at(i).heading) {
            cells.append(cellOf(values.at(i)));
        }
        if (m_columns.at(i).name) {
            object.insert(text(m_columns.at(i).name), values.at(i));
        }
    }
    m_table.add(cells);
    m_json.append(object);
}

bool profile::Listing::isEmpty() const { return m_table.isEmpty(); }

const QJsonArray &profile::Listing::json() const { return m_json; }

int profile::Listing::say(bool asJson) const
{
    if (asJson) {
        sayJson(m_json);
    } else {
        sayBytes(m_table.toText().toUtf8());
    }
    return Done;
}
