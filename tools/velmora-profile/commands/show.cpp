// show: every file of the profile, and what is wrong.

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Table.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Findings.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Thumbnails.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

struct Row {
    QString file;
    QString state;
    int entries; // below 0 for none
    QString damage;
    QJsonObject json;
};

QString modeOf(const QFileInfo &file)
{
    const QFile::Permissions permissions = file.permissions();
    const struct {
        QFile::Permission permission;
        int bit;
    } bits[] = {
        {QFile::ReadOwner, 0400}, {QFile::WriteOwner, 0200}, {QFile::ExeOwner, 0100},
        {QFile::ReadGroup, 0040}, {QFile::WriteGroup, 0020}, {QFile::ExeGroup, 0010},
        {QFile::ReadOther, 0004}, {QFile::WriteOther, 0002}, {QFile::ExeOther, 0001},
    };
    int mode = 0;
    for (const auto &bit : bits) {
        mode |= permissions.testFlag(bit.permission) ? bit.bit : 0;
    }
    return text("%1").arg(mode, 4, 8, QLatin1Char('0'));
}

Row rowOf(const Document &document)
{
    Row row = {text(document.type().fileName), stateName(document.state()),
               int(document.entries().size()), QString(), QJsonObject()};
    if (document.state() == Document::Damaged) {
        const Damage &damage = document.damage();
        row.damage = damageText(damage);
        row.json.insert(text("line"), damage.line);
        row.json.insert(text("column"), damage.column);
        row.json.insert(text("reason"), damage.reason);
        row.json.insert(text("entriesBefore"), damage.entriesBefore);
    }
    return row;
}

Row rowOf(const CookieFile &file)
{
    Row row = {text(kIniFileName), stateName(file.state), int(file.cookies.size()), QString(),
               QJsonObject()};
    if (file.state == Document::Damaged) {
        row.damage = text("damaged: %1").arg(file.damage);
        row.json.insert(text("reason"), file.damage);
        row.json.insert(text("entriesBefore"), int(file.cookies.size()));
    }
    return row;
}

Row rowOfThumbnails()
{
    int files = 0;
    const QList<Thumbnail> thumbnails = thumbnailsOf(text(kProfileFolder));
    for (const Thumbnail &thumbnail : thumbnails) {
        files += thumbnail.exists ? 1 : 0;
    }
    const bool exists = QFileInfo(text(kThumbnailFolder)).isDir();
    return {text(kThumbnailFolder), text(exists ? "folder" : "missing"), files, QString(),
            QJsonObject()};
}

QList<Row> rows()
{
    QList<Row> all;
    for (const DocumentType &type : documentTypes()) {
        all.append(rowOf(Document(type.kind, text(kProfileFolder))));
    }
    all.append(rowOf(readCookieFile(text(kProfileFolder))));
    all.append(rowOfThumbnails());
    return all;
}

void add(Table *table, const Row &row)
{
    const QFileInfo file(text(kProfileFolder) + row.file);
    if (!file.exists()) {
        table->add({row.file, row.state, text("-"), text("-"), text("-"), text("-")});
        return;
    }
    table->add({row.file, row.state, QString::number(row.entries),
                file.isDir() ? text("-") : QString::number(file.size()), modeOf(file),
                file.lastModified().toString(text("yyyy-MM-dd hh:mm:ss"))});
}

QJsonObject jsonOf(const Row &row)
{
    const QFileInfo file(text(kProfileFolder) + row.file);
    QJsonObject object = {{text("file"), row.file}, {text("state"), row.state}};
    if (!row.damage.isEmpty()) {
        object.insert(text("damage"), row.json);
    }
    if (file.exists()) {
        object.insert(text("entries"), row.entries);
        object.insert(text("bytes"), file.isDir() ? 0 : file.size());
        object.insert(text("mode"), modeOf(file));
        object.insert(text("changed"), file.lastModified().toString(Qt::ISODate));
    }
    return object;
}

// Failed, and said so, when a file cannot be read.
int statusOf(const QList<Row> &all)
{
    int status = Done;
    for (const Row &row : all) {
        if (row.state == stateName(Document::Unreadable)) {
            status = failUnreadable(text(kProfileFolder) + row.file);
        }
    }
    return status;
}

void showAsJson(const Call &call, const QList<Row> &all)
{
    QJsonArray files;
    for (const Row &row : all) {
        files.append(jsonOf(row));
    }
    sayJson(QJsonObject{{text("directory"), call.directory},
                        {text("files"), files},
                        {text("findings"), toJson(findingsOf(text(kProfileFolder)))}});
}

int show(const Call &call)
{
    const QList<Row> all = rows();
    if (call.has("json")) {
        showAsJson(call, all);
        return statusOf(all);
    }
    Table table({text("File"), text("State"), text("Entries"), text("Bytes"), text("Mode"),
                 text("Changed")});
    QString damages;
    for (const Row &row : all) {
        add(&table, row);
        if (!row.damage.isEmpty()) {
            damages += text("%1 is %2\n").arg(row.file, printable(row.damage));
        }
    }
    sayBytes(table.toText().toUtf8());
    if (!damages.isEmpty()) {
        sayBytes('\n' + damages.toUtf8());
    }
    const QList<Finding> findings = findingsOf(text(kProfileFolder));
    say(text("\n%1").arg(counted(findings.size(), "finding", "findings")));
    sayBytes(toText(findings).toUtf8());
    return statusOf(all);
}
} // namespace

namespace profile
{
QList<Command> showCommands()
{
    return {
        {"show", nullptr, "DIR", 0, 0, "json", "every file of the profile, and what is wrong",
         Reads, show},
    };
}
} // namespace profile
