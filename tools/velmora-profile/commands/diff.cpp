// diff: two profiles entry by entry, in the terms of the stores.

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Preferences.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Thumbnails.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMap>

namespace
{
using namespace profile;

struct Field {
    QString name;
    QString value;
    bool isSecret;
};

// An entry: what it is known by, and what may differ.
struct Record {
    QString key;
    QList<Field> fields;
};

// One line of the result.
struct Difference {
    QString file;
    QString change; // "removed", "added", "changed" or "moved"
    QString entry;
    Field before;
    Field after;
};

Field field(const char *name, const QString &value) { return {text(name), value, false}; }

Field secret(const char *name, const QString &value) { return {text(name), value, true}; }

QString pictureOf(const QString &directory, VLMC_XMLNode *bookmark)
{
    const QString name = thumbnailName(fieldText(bookmark, vlm::bookmarks::kThumbnail));
    QFile file(directory + text(kThumbnailFolder) + name);
    if (!isPictureFile(file.fileName()) || !file.open(QIODevice::ReadOnly)) {
        return text(name.isEmpty() ? "none" : "missing");
    }
    const QByteArray digest =
        QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
    return text("picture %1").arg(QString::fromLatin1(digest.left(12)));
}

QString valueOf(const ComparedField &compared, VLMC_XMLNode *entry, const QString &directory)
{
    switch (compared.form) {
    case ComparedField::Picture:
        return pictureOf(directory, entry);
    case ComparedField::Encoded:
        return decodedText(entry, compared.element);
    case ComparedField::Plain:
        break;
    }
    return fieldText(entry, compared.element);
}

Record recordOf(const DocumentType &type, VLMC_XMLNode *entry, const QString &directory)
{
    Record record = {type.key(entry), QList<Field>()};
    for (const ComparedField &compared : type.compared) {
        record.fields.append(
            {text(compared.name), valueOf(compared, entry, directory), compared.isSecret});
    }
    return record;
}

QList<Record> recordsOf(const Document &document, const QString &directory)
{
    QList<Record> records;
    if (document.type().entryName) {
        for (VLMC_XMLNode *const entry : document.children()) {
            records.append(recordOf(document.type(), entry, directory));
        }
        return records;
    }
    for (const Preference &preference : preferences()) {
        if (preference.document == document.type().kind) {
            const bool isSecret = preference.kind == Preference::Base64Secret;
            records.append({preference.name(),
                            {{text("value"), valueOf(preference, document).value, isSecret}}});
        }
    }
    return records;
}

QList<Record> recordsOf(const CookieFile &file)
{
    QList<Record> records;
    for (const QNetworkCookie &cookie : file.cookies) {
        records.append({text("%1 of %2%3")
                            .arg(QString::fromUtf8(cookie.name()), cookie.domain(), cookie.path()),
                        {field("secure", text(cookie.isSecure() ? "true" : "false")),
                         field("httpOnly", text(cookie.isHttpOnly() ? "true" : "false")),
                         field("expires", cookie.expirationDate().toUTC().toString(Qt::ISODate)),
                         secret("value", QString::fromUtf8(cookie.value()))}});
    }
    return records;
}

// Several entries can have one key; the first is compared with the first, and so on.
QMap<QString, QList<Record>> byKey(const QList<Record> &records)
{
    QMap<QString, QList<Record>> map;
    for (const Record &record : records) {
        map[record.key].append(record);
    }
    return map;
}

void compareFields(const QString &file, const Record &one, const Record &other,
                   QList<Difference> *differences)
{
    for (int i = 0; i < one.fields.size(); ++i) {
        if (one.fields.at(i).value != other.fields.at(i).value) {
            differences->append(
                {file, text("changed"), one.key, one.fields.at(i), other.fields.at(i)});
        }
    }
}

QStringList keysOf(const QList<Record> &records)
{
    QStringList keys;
    for (const Record &record : records) {
        keys.append(record.key);
    }
    return keys;
}

QList<Difference> compare(const QString &file, const QList<Record> &ones,
                          const QList<Record> &others)
{
    QList<Difference> differences;
    const Field none = {QString(), QString(), false};
    QMap<QString, QList<Record>> left = byKey(others);
    for (const Record &one : ones) {
        QList<Record> &same = left[one.key];
        if (same.isEmpty()) {
            differences.append({file, text("removed"), one.key, none, none});
        } else {
            compareFields(file, one, same.takeFirst(), &differences);
        }
    }
    QMap<QString, QList<Record>> right = byKey(ones);
    for (const Record &other : others) {
        QList<Record> &same = right[other.key];
        if (same.isEmpty()) {
            differences.append({file, text("added"), other.key, none, none});
        } else {
            same.removeFirst();
        }
    }
    if (differences.isEmpty() && keysOf(ones) != keysOf(others)) {
        differences.append({file, text("moved"), QString(), none, none});
    }
    return differences;
}

QString valueOf(const Field &field, bool showSecrets)
{
    return field.isSecret ? masked(field.value, showSecrets) : field.value;
}

QString toLine(const Difference &difference, const Call &call)
{
    if (difference.change == text("moved")) {
        return text("the same entries in a different order");
    }
    if (difference.change != text("changed")) {
        const bool isRemoved = difference.change == text("removed");
        return text("%1 %2").arg(text(isRemoved ? "-" : "+"), difference.entry);
    }
    const bool secrets = call.has("show-secrets");
    return text("~ %1: %2 '%3' is '%4'")
        .arg(difference.entry, difference.before.name, valueOf(difference.before, secrets),
             valueOf(difference.after, secrets));
}

QJsonObject jsonOf(const Difference &difference, const Call &call)
{
    const bool secrets = call.has("show-secrets");
    QJsonObject object = {{text("file"), difference.file},
                          {text("change"), difference.change},
                          {text("entry"), difference.entry}};
    if (difference.change == text("changed")) {
        object.insert(text("field"), difference.before.name);
        object.insert(text("before"), valueOf(difference.before, secrets));
        object.insert(text("after"), valueOf(difference.after, secrets));
    }
    return object;
}

void sayDifferences(const Call &call, const QList<Difference> &differences)
{
    QJsonArray array;
    QString file;
    for (const Difference &difference : differences) {
        array.append(jsonOf(difference, call));
        if (call.has("json")) {
            continue;
        }
        if (difference.file != file) {
            file = difference.file;
            say(file);
        }
        say(text("  %1").arg(printable(toLine(difference, call))));
    }
    if (call.has("json")) {
        sayJson(array);
    }
}

// Both sides of one document; false when one cannot be read.
bool compareDocument(DocumentKind kind, const QString &other, QList<Difference> *differences)
{
    const QString here = text(kProfileFolder);
    const Document one(kind, here);
    const Document two(kind, other);
    warnOfDamage(one);
    warnOfDamage(two);
    *differences += compare(text(one.type().fileName), recordsOf(one, here), recordsOf(two, other));
    return one.state() != Document::Unreadable && two.state() != Document::Unreadable;
}

int diff(const Call &call)
{
    const QString other = call.path(call.operands.at(0)) + QLatin1Char('/');
    if (!QDir(other).exists() || !QDir(other).isReadable()) {
        return fail(
            text("'%1' cannot be read; name the folder of a profile").arg(call.operands.at(0)));
    }
    QList<Difference> differences;
    bool readable = true;
    for (const DocumentType &type : documentTypes()) {
        readable = compareDocument(type.kind, other, &differences) && readable;
    }
    const CookieFile one = readCookieFile(text(kProfileFolder));
    const CookieFile two = readCookieFile(other);
    readable = readable && one.state != Document::Unreadable && two.state != Document::Unreadable;
    differences += compare(text(kIniFileName), recordsOf(one), recordsOf(two));
    sayDifferences(call, differences);
    if (!readable) {
        return fail(text("not everything can be read; check owners and modes"));
    }
    return differences.isEmpty() ? Done : Differs;
}
} // namespace

namespace profile
{
QList<Command> diffCommands()
{
    return {
        {"diff", nullptr, "DIR DIR2", 1, 1, "json show-secrets",
         "compare two profiles entry by entry", Reads, diff},
    };
}
} // namespace profile
