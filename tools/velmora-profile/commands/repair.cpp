// repair: gets back what damaged files still hold. Each file that is changed is copied first.

#include "core/DocumentRoot_p.h"
#include "preferences/CommonRows_p.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/profile/Backup.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Preferences.h"
#include "tools/velmora-profile/profile/Recovery.h"
#include "tools/velmora-profile/profile/Secrets.h"
#include "tools/velmora-profile/profile/Stores.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>

namespace
{
using namespace profile;

// What was done to one file, or would be.
struct Repaired {
    QString file;
    QString reason;
    QStringList kept;
    QStringList lost;
    QString copy;
};

QString labelOf(VLMC_XMLNode *entry)
{
    QStringList texts;
    const QList<VLMC_XMLNode *> fields = entry->getXMLNodeChildren();
    for (VLMC_XMLNode *const field : fields) {
        if (isLabel(field) && texts.size() < 2) {
            texts.append(field->getText());
        }
    }
    return texts.isEmpty() ? entry->getText() : texts.join(text(", "));
}

// Puts the entries into a store as its document and has the store write it. Over-long entries and
// dates that do not parse are kept as they are: a repair gets back, it does not judge.
int write(const DocumentType &type, const QList<VLMC_XMLNode *> &entries)
{
    VLMC_XMLSetting *const store = type.store();
    store->createXMLRootNode();
    vlm::nameRoot(*store->getXMLRootNode(), type.rootName);
    char atEnd = 0;
    for (VLMC_XMLNode *const entry : entries) {
        store->getXMLRootNode()->addXMLNode(entry, atEnd);
    }
    if (type.entryName) {
        QString id = text("id");
        store->setIDforChildren(id);
    }
    return saveStore(type.kind);
}

int rewrite(const DocumentType &type, const QList<VLMC_XMLNode *> &entries, bool dryRun,
            Repaired *repaired)
{
    if (dryRun) {
        return Done;
    }
    repaired->copy = keepCopy(text(type.fileName));
    return repaired->copy.isEmpty() ? int(Failed) : write(type, entries);
}

void tell(const QList<VLMC_XMLNode *> &kept, const QList<LostEntry> &lost, Repaired *repaired)
{
    for (VLMC_XMLNode *const entry : kept) {
        repaired->kept.append(labelOf(entry));
    }
    for (const LostEntry &entry : lost) {
        const QString what = entry.what.isEmpty() ? text("an entry") : entry.what;
        repaired->lost.append(
            text("%1, line %2: %3").arg(what, QString::number(entry.line), entry.reason));
    }
}

// Those that the library can number.
QList<VLMC_XMLNode *> numbered(const QList<VLMC_XMLNode *> &entries, Repaired *repaired)
{
    for (int i = kMaxEntries; i < entries.size(); ++i) {
        repaired->lost.append(text("%1: it comes after the %2th, where the library cannot reach "
                                   "it")
                                  .arg(labelOf(entries.at(i)), QString::number(kMaxEntries)));
    }
    return entries.mid(0, kMaxEntries);
}

// Every entry that can be found in the bytes; where bytes cannot be searched, those that the reader
// got to.
int repairEntries(const Document &document, bool dryRun, Repaired *repaired)
{
    if (document.state() == Document::Whole || !canBeScanned(document.content())) {
        const QList<VLMC_XMLNode *> entries = numbered(document.children(), repaired);
        tell(entries, QList<LostEntry>(), repaired);
        return rewrite(document.type(), entries, dryRun, repaired);
    }
    const Recovery recovery(document.content(), text(document.type().entryName));
    const QList<VLMC_XMLNode *> entries = numbered(recovery.kept(), repaired);
    tell(entries, recovery.lost(), repaired);
    return rewrite(document.type(), entries, dryRun, repaired);
}

// The preference in a group of its name, which is made where it is missing. What is made belongs to
// the node made until it is written.
void put(const Preference &preference, VLMC_XMLNode *element, const QByteArray &content,
         VLMC_XMLNode *made, QList<VLMC_XMLNode *> *groups)
{
    QString name = preference.group;
    VLMC_XMLNode *group = nullptr;
    for (VLMC_XMLNode *const other : qAsConst(*groups)) {
        group = other->getName() == name ? other : group;
    }
    char atEnd = 0;
    if (!group) {
        group = new VLMC_XMLNode(made, atEnd);
        group->setName(name);
        groups->append(group);
        // Without its version the group would be taken for one of old, and SSL 3.0 switched off.
        if (name == text(vlm::commonPreferences::kSecurity)
            && content.contains("<security version=")) {
            QXmlStreamAttributes attributes;
            attributes.append(text(vlm::commonPreferences::kVersion),
                              text(vlm::commonPreferences::kSecurityVersion));
            group->setAttribute(attributes);
        }
    }
    group->addXMLNode(element, atEnd);
}

// Without what the damage is in: a last element that is not whole.
QList<VLMC_XMLNode *> wholeGroups(const Document &document)
{
    const QList<VLMC_XMLNode *> entries = document.entries();
    const QSet<VLMC_XMLNode *> whole(entries.begin(), entries.end());
    QList<VLMC_XMLNode *> groups = document.children();
    for (VLMC_XMLNode *const group : qAsConst(groups)) {
        const QList<VLMC_XMLNode *> elements = group->getXMLNodeChildren();
        for (VLMC_XMLNode *const element : elements) {
            if (!whole.contains(element)) {
                delete element;
            }
        }
    }
    return groups;
}

QStringList namesIn(const Document &document)
{
    QStringList names;
    for (const Preference &preference : preferences()) {
        if (preference.document == document.type().kind && valueOf(preference, document).inFile) {
            names.append(preference.name());
        }
    }
    return names;
}

int repairPreferences(const Document &document, bool dryRun, Repaired *repaired)
{
    QList<VLMC_XMLNode *> groups = wholeGroups(document);
    char atEnd = 0;
    VLMC_XMLNode made(nullptr, atEnd);
    const QStringList whole = namesIn(document);
    repaired->kept = whole;
    for (const Preference &preference : preferences()) {
        const QString name = preference.name();
        if (preference.document != document.type().kind || whole.contains(name)) {
            continue;
        }
        const Recovery recovery(document.content(), preference.element);
        if (!recovery.kept().isEmpty()) {
            put(preference, recovery.kept().last(), document.content(), &made, &groups);
            repaired->kept.append(name);
        } else if (!recovery.lost().isEmpty()) {
            repaired->lost.append(text("%1, line %2: %3")
                                      .arg(name)
                                      .arg(recovery.lost().at(0).line)
                                      .arg(recovery.lost().at(0).reason));
        }
    }
    return rewrite(document.type(), groups, dryRun, repaired);
}

bool isNumbered(const Document &document)
{
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (int i = 0; i < entries.size(); ++i) {
        bool isNumber = false;
        if (idOf(entries.at(i)).toInt(&isNumber) != i || !isNumber) {
            return false;
        }
    }
    return true;
}

bool isNameOfAnother(const QString &rootName)
{
    for (const DocumentType &type : documentTypes()) {
        if (rootName == text(type.rootName)) {
            return true;
        }
    }
    return false;
}

// Why a document is to be written anew; empty when it is not.
QString reasonFor(const Document &document)
{
    if (document.state() == Document::Damaged) {
        return damageText(document.damage());
    }
    // Another document's content is not to be made into this one's.
    if (document.state() != Document::Whole
        || (document.rootName() != text(document.type().rootName)
            && isNameOfAnother(document.rootName()))) {
        return QString();
    }
    if (document.rootName() != text(document.type().rootName)) {
        return text("its root is named '%1'").arg(document.rootName());
    }
    if (!document.type().entryName) {
        return QString();
    }
    if (document.children().size() > kMaxEntries) {
        return text("it holds more than %1 entries").arg(kMaxEntries);
    }
    return isNumbered(document) ? QString() : text("its entries are not numbered from 0");
}

// A file that could not be copied is as it was.
void addWhatWasDone(const Repaired &repaired, bool dryRun, QList<Repaired> *all)
{
    if (dryRun || !repaired.copy.isEmpty()) {
        all->append(repaired);
    }
}

int repairDocument(const Document &document, bool dryRun, QList<Repaired> *all)
{
    if (document.state() == Document::Unreadable) {
        return fail(text("%1 cannot be read; check its owner and mode")
                        .arg(text(document.type().fileName)));
    }
    Repaired repaired = {text(document.type().fileName), reasonFor(document), QStringList(),
                         QStringList(), QString()};
    if (repaired.reason.isEmpty()) {
        return Done;
    }
    const int status = document.type().entryName ? repairEntries(document, dryRun, &repaired)
                                                 : repairPreferences(document, dryRun, &repaired);
    addWhatWasDone(repaired, dryRun, all);
    return status;
}

int repairCookieFile(bool dryRun, QList<Repaired> *all)
{
    const CookieFile file = readCookieFile(text(kProfileFolder));
    if (file.state == Document::Unreadable) {
        return fail(text("%1 cannot be read; check its owner and mode").arg(text(kIniFileName)));
    }
    if (file.state != Document::Damaged) {
        return Done;
    }
    Repaired repaired = {text(kIniFileName),
                         text("damaged: %1").arg(file.damage),
                         QStringList(),
                         {text("what follows the damage or cannot be read")},
                         QString()};
    for (const QNetworkCookie &cookie : file.cookies) {
        repaired.kept.append(
            text("%1 of %2").arg(QString::fromUtf8(cookie.name()), cookie.domain()));
    }
    int status = Done;
    if (!dryRun) {
        repaired.copy = keepCopy(text(kIniFileName));
        status = repaired.copy.isEmpty() ? int(Failed) : writeCookieFile(file.cookies);
    }
    addWhatWasDone(repaired, dryRun, all);
    return status;
}

// Passwords and sessions are their owner's alone.
int repairModes(bool dryRun, QList<Repaired> *all)
{
    const QStringList files = secretFiles(text(kProfileFolder));
    for (const QString &file : files) {
        if (!isOpenToOthers(text(kProfileFolder) + file)) {
            continue;
        }
        if (!dryRun
            && !QFile::setPermissions(text(kProfileFolder) + file,
                                      QFile::ReadOwner | QFile::WriteOwner)) {
            return fail(
                text("the mode of %1 cannot be changed; it belongs to someone else").arg(file));
        }
        all->append(
            {file, text("users other than its owner could read or write it: its mode is now 0600"),
             QStringList(), QStringList(), QString()});
    }
    return Done;
}

void sayRepaired(const Repaired &repaired)
{
    say(text("%1: %2").arg(repaired.file, printable(repaired.reason)));
    for (const QString &entry : repaired.kept) {
        say(text("  kept: %1").arg(printable(entry)));
    }
    for (const QString &entry : repaired.lost) {
        say(text("  lost: %1").arg(printable(entry)));
    }
    if (!repaired.copy.isEmpty()) {
        say(text("  copy: %1").arg(repaired.copy));
    }
}

QJsonObject jsonOf(const Repaired &repaired)
{
    return {{text("file"), repaired.file},
            {text("reason"), repaired.reason},
            {text("kept"), QJsonArray::fromStringList(repaired.kept)},
            {text("lost"), QJsonArray::fromStringList(repaired.lost)},
            {text("copy"), repaired.copy}};
}

// True when something was lost.
bool sayAll(const Call &call, const QList<Repaired> &all, int status)
{
    bool lost = false;
    QJsonArray array;
    for (const Repaired &repaired : all) {
        lost = lost || !repaired.lost.isEmpty();
        array.append(jsonOf(repaired));
        if (!call.has("json")) {
            sayRepaired(repaired);
        }
    }
    if (call.has("json")) {
        sayJson(array);
    } else if (all.isEmpty() && status == Done) {
        say(text("nothing to repair"));
    } else if (call.has("dry-run")) {
        say(text("nothing was changed: this was a dry run"));
    }
    return lost;
}

int repair(const Call &call)
{
    const bool dryRun = call.has("dry-run");
    QList<Repaired> all;
    int status = Done;
    for (const DocumentType &type : documentTypes()) {
        status =
            qMax(status, repairDocument(Document(type.kind, text(kProfileFolder)), dryRun, &all));
    }
    status = qMax(status, repairCookieFile(dryRun, &all));
    status = qMax(status, repairModes(dryRun, &all));
    const bool lost = sayAll(call, all, status);
    return qMax(status, int(lost ? Differs : Done));
}
} // namespace

namespace profile
{
QList<Command> repairCommands()
{
    return {
        {"repair", nullptr, "DIR", 0, 0, "dry-run json", "recover what damaged files still hold",
         Writes, repair},
    };
}
} // namespace profile
