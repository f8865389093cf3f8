#include "tools/velmora-profile/commands/Removal.h"

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/profile/Stores.h"

#include <algorithm>

namespace
{
using namespace profile;

// The operands as ids below count, each once, from the highest down: each removal renumbers. False,
// and said so, when one is none.
bool readIds(const Call &call, int count, QList<int> *ids)
{
    for (const QString &operand : call.operands) {
        bool isNumber = false;
        const int id = operand.toInt(&isNumber);
        if (!isNumber || id < 0 || id >= count) {
            warn(text("'%1' is no id; there are %2, the first is 0, 'list' shows them")
                     .arg(operand, QString::number(count)));
            return false;
        }
        if (!ids->contains(id)) {
            ids->append(id);
        }
    }
    std::sort(ids->begin(), ids->end());
    std::reverse(ids->begin(), ids->end());
    return true;
}
} // namespace

int profile::removeEntries(const Call &call, DocumentKind kind, void (*remove)(int id))
{
    QList<int> ids;
    if (!readIds(call, documentType(kind).store()->getXMLNodeCnt(), &ids)) {
        return Failed;
    }
    for (const int id : qAsConst(ids)) {
        remove(id);
    }
    return saveStore(kind);
}
