// fonts: fontlist.xml, and the families that fontconfig knows.

#include "fonts/FontElements_p.h"
#include "fonts/VLMC_FontListSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/profile/Families.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Stores.h"

namespace
{
using namespace profile;

using vlm::fonts::kMaxNameBytes;

VLMC_FontListSetting &store() { return *VLMC_FontListSetting::getInstance(); }

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
        return text("it has characters that the file cannot hold");
    }
    return count < kMaxEntries ? QString()
                               : text("the list already holds %1 entries").arg(kMaxEntries);
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

int listFonts(const Call &call)
{
    const Document document(Fonts, text(kProfileFolder));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    Listing listing({{"id", "Id"}, {"name", "Name"}});
    for (VLMC_XMLNode *const entry : document.children()) {
        listing.add({listing.json().size(), entry->getText()});
    }
    return listing.say(call.has("json"));
}

int addFont(const Call &call)
{
    if (loadStore(Fonts) != Done) {
        return Failed;
    }
    for (const QString &name : call.operands) {
        const QString refusal = refusalOf(name, store().getXMLNodeCnt());
        if (!refusal.isEmpty()) {
            return fail(text("'%1': %2; nothing was changed").arg(name, refusal));
        }
        store().addFont(name);
    }
    return saveStore(Fonts);
}

int syncFonts(const Call &call)
{
    const QStringList installed = installedFamilies();
    if (installed.isEmpty()) {
        return fail(text("fontconfig knows no fonts; nothing was changed"));
    }
    if (loadStore(Fonts) != Done) {
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
    return saveStore(Fonts);
}
} // namespace

namespace profile
{
QList<Command> fontsCommands()
{
    return {
        {"fonts", "list", "DIR", 0, 0, "json", "the fonts that the browser offers", Reads,
         listFonts},
        {"fonts", "add", "DIR NAME...", 1, kMaxEntries, "", "add fonts", Writes, addFont},
        {"fonts", "sync", "DIR", 0, 0, "dry-run", "make the list match what fontconfig knows",
         Writes, syncFonts},
    };
}
} // namespace profile
