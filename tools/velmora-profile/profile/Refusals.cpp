#include "tools/velmora-profile/profile/Refusals.h"

#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QFileInfo>

int profile::failUnreadable(const QString &path)
{
    const QFileInfo file(path);
    return fail(text(file.exists() && !file.isFile()
                         ? "%1 cannot be read: it is no file; move it out of the way"
                         : "%1 cannot be read; see to its permissions")
                    .arg(file.fileName()));
}

int profile::warnOfDamage(const Document &document)
{
    if (document.state() == Document::Unreadable) {
        return failUnreadable(document.path());
    }
    if (document.state() == Document::Damaged) {
        warn(text("%1 is %2; run 'velmora-profile repair'")
                 .arg(text(document.type().fileName), damageText(document.damage())));
    }
    return Done;
}

int profile::refuseToRead(const Document &document)
{
    const QString name = text(document.type().fileName);
    if (document.state() == Document::Unreadable) {
        return fail(
            text("%1 cannot be read; nothing was changed, see to its permissions").arg(name));
    }
    if (document.state() == Document::Damaged) {
        return fail(text("%1 is %2; nothing was changed, run 'velmora-profile repair' first")
                        .arg(name, damageText(document.damage())));
    }
    return Done;
}

int profile::refuseToRewrite(const Document &document)
{
    const QString name = text(document.type().fileName);
    if (refuseToRead(document) != Done) {
        return Failed;
    }
    if (document.type().entryName && document.children().size() > kMaxEntries) {
        return fail(text("%1 holds %2, %3 at most can be written; nothing was changed, run "
                         "'velmora-profile repair' first")
                        .arg(name, counted(document.children().size(), "entry", "entries"))
                        .arg(kMaxEntries));
    }
    if (document.state() != Document::Missing && !QFileInfo(document.path()).isWritable()) {
        return fail(
            text("%1 cannot be written to; nothing was changed, see to its permissions").arg(name));
    }
    return Done;
}
