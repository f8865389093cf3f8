// fonts: fontlist.xml, and the families that fontconfig knows.

#include "fonts/VLMC_FontListSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Table.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Document.h"
#include "tools/velmora-profile/profile/Families.h"

namespace
{
using namespace profile;

const int kMaxNameBytes = 256;

VLMC_FontListSetting &store() { return *VLMC_FontListSetting::getInstance(); }

int load()
{
    if (refuseToRewrite(Document(Fonts, text(kHere))) != Done) {
        return Failed;
    }
    store().loadFontList(text(kHere));
    return Done;
}

int save()
{
    const Uninterrupted uninterrupted;
    store().saveFontList(text(kHere));
    return isSaved(Fonts, contentOf(&store())) ? Done : Failed;
}

// Why a font cannot be listed; empty when it can.
QString refusalOf(const QString &name, int count)
{
    if (name.isEmpty()) {
        return text("a font needs a name");
    }
    if (utf8Bytes(name) > kMaxNameBytes) {
        return text("a name of %1 bytes is over the limit of %2")
            .arg(utf8Bytes(name))
            .arg(kMaxNameBytes);
    }
    if (!isKept(name)) {
        return text("the file cannot hold all its characters");
    }
    return count < kMaxEntries ? QString() : text("the list is full with %1").arg(kMaxEntries);
}

QStringList listed()
{
    QStringList names;
    for (int i = 0; i < store().getCount(); ++i) {
        names.append(store().getFont(i));
    }
    return names;
}

// The list in its order without what is gone, and what is new behind it.
QStringList synced(const QStringList &before, const QStringList &installed)
{
    QStringList after;
    for (const QString &name : before + installed) {
        if (!installed.contains(name) || after.contains(name)) {
            continue;
        }
        const QString refusal = refusalOf(name, int(after.size()));
        if (!refusal.isEmpty()) {
            sayLosses({{name, refusal}});
            continue;
        }
        after.append(name);
    }
    return after;
}

void sayChanges(const QStringList &before, const QStringList &after)
{
    for (const QString &name : before) {
        if (!after.contains(name)) {
            say(text("- %1").arg(printable(name)));
        }
    }
    for (const QString &name : after) {
        if (!before.contains(name)) {
            say(text("+ %1").arg(printable(name)));
        }
    }
}
} // namespace

int profile::listFonts(const Call &call)
{
    const Document document(Fonts, text(kHere));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    const QList<VLMC_XMLNode *> entries = document.children();
    Table table({text("Id"), text("Name")});
    QJsonArray array;
    for (int i = 0; i < entries.size(); ++i) {
        table.add({QString::number(i), entries.at(i)->getText()});
        QJsonObject object;
        object.insert(text("id"), i);
        object.insert(text("name"), entries.at(i)->getText());
        array.append(object);
    }
    if (call.has("json")) {
        sayJson(array);
    } else {
        sayBytes(table.toText().toUtf8());
    }
    return Done;
}

int profile::addFont(const Call &call)
{
    if (load() != Done) {
        return Failed;
    }
    for (const QString &name : call.operands) {
        const QString refusal = refusalOf(name, store().getXMLNodeCnt());
        if (!refusal.isEmpty()) {
            return fail(text("'%1': %2; nothing was changed").arg(name, refusal));
        }
        store().addFont(name);
    }
    return save();
}

int profile::syncFonts(const Call &call)
{
    const QStringList installed = installedFamilies();
    if (installed.isEmpty()) {
        return fail(text("fontconfig knows no font; nothing was changed"));
    }
    if (load() != Done) {
        return Failed;
    }
    const QStringList before = listed();
    const QStringList after = synced(before, installed);
    sayChanges(before, after);
    if (call.has("dry-run") || before == after) {
        return Done;
    }
    store().deleteAllSetting();
    for (const QString &name : after) {
        store().addFont(name);
    }
    return save();
}
