#include "tools/velmora-profile/commands/Losses.h"

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QJsonObject>

void profile::sayLosses(const QList<Loss> &losses)
{
    for (const Loss &loss : losses) {
        warn(text("lost: %1: %2").arg(loss.entry, loss.reason));
    }
}

QJsonArray profile::toJson(const QList<Loss> &losses)
{
    QJsonArray array;
    for (const Loss &loss : losses) {
        array.append(QJsonObject{{text("entry"), loss.entry}, {text("reason"), loss.reason}});
    }
    return array;
}

int profile::tellLosses(const Call &call, const QList<Loss> &losses)
{
    if (!call.has("json")) {
        sayLosses(losses);
    }
    if (losses.isEmpty() || !call.has("strict")) {
        return Done;
    }
    return fail(text("%1, and --strict was asked for; nothing was changed")
                    .arg(counted(losses.size(), "loss", "losses")));
}

QString profile::imported(const Call &call, int added)
{
    if (call.has("dry-run")) {
        return text("would be");
    }
    return text(added == 1 ? "was" : "were");
}
