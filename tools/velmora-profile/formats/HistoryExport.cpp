#include "tools/velmora-profile/formats/Formats.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{
using profile::text;

// Quoted where it has to be: at commas, quotes and line ends.
QByteArray csvField(const QString &field)
{
    QByteArray bytes = field.toUtf8();
    if (!bytes.contains(',') && !bytes.contains('"') && !bytes.contains('\n')
        && !bytes.contains('\r')) {
        return bytes;
    }
    return '"' + bytes.replace("\"", "\"\"") + '"';
}
} // namespace

QByteArray profile::writeHistoryCsv(const QList<VisitRecord> &visits)
{
    QByteArray csv = "dateTime,title,url\r\n";
    for (const VisitRecord &visit : visits) {
        csv += csvField(visit.dateTime) + ',' + csvField(visit.title) + ',' + csvField(visit.url)
               + "\r\n";
    }
    return csv;
}

QByteArray profile::writeHistoryJson(const QList<VisitRecord> &visits)
{
    QJsonArray array;
    for (const VisitRecord &visit : visits) {
        array.append(QJsonObject{{text("dateTime"), visit.dateTime},
                                 {text("title"), visit.title},
                                 {text("url"), visit.url}});
    }
    return QJsonDocument(array).toJson();
}
