#include "core/Erasures_p.h"

#include "files/SameFile_p.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace
{
thread_local int refilling = 0;

struct Loaded {
    QString path;
    // Null while nothing is erased. A store that packs something else takes another root.
    const VLMC_XMLNode *erasedRoot = nullptr;
};

struct Stores {
    QMutex mutex;
    QHash<const VLMC_XMLSetting *, Loaded> loaded;
};

// Never destroyed: stores are destroyed while the process exits.
Stores &stores()
{
    static Stores *const instance = new Stores;
    return *instance;
}
} // namespace

void vlm::Erasures::loaded(const VLMC_XMLSetting &store, const QString &path)
{
    const QMutexLocker locker(&stores().mutex);
    Loaded known;
    known.path = path;
    stores().loaded.insert(&store, known);
}

void vlm::Erasures::erased(const VLMC_XMLSetting &store, const VLMC_XMLNode *root)
{
    const QMutexLocker locker(&stores().mutex);
    if (refilling == 0 && stores().loaded.contains(&store)) {
        stores().loaded[&store].erasedRoot = root;
    }
}

bool vlm::Erasures::reach(const VLMC_XMLSetting &store, const VLMC_XMLNode *root,
                          const QString &path)
{
    const QMutexLocker locker(&stores().mutex);
    const Loaded known = stores().loaded.value(&store);
    return known.erasedRoot && known.erasedRoot == root && SameFile(known.path) == SameFile(path);
}

void vlm::Erasures::saved(const VLMC_XMLSetting &store) { erased(store, nullptr); }

void vlm::Erasures::destroyed(const VLMC_XMLSetting &store)
{
    const QMutexLocker locker(&stores().mutex);
    stores().loaded.remove(&store);
}

vlm::NoErasure::NoErasure() { ++refilling; }

vlm::NoErasure::~NoErasure() { --refilling; }
