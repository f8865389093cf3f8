#include "core/Entries_p.h"

#include "core/DocumentRoot_p.h"
#include "core/NodeView_p.h"
#include "core/Numbering_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLSetting.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace
{
// The names of all elements that were ever added, of which there are a few dozen. Never destroyed:
// stores may be used while the process exits.
struct Names {
    QMutex mutex;
    QHash<QByteArray, QString> texts;
};
} // namespace

QXmlStreamAttributes vlm::oneAttribute(const char *name, const QString &value)
{
    QXmlStreamAttributes attributes;
    attributes.append(QEXC_TextCodec::fromSJIS(name), value);
    return attributes;
}

VLMC_XMLNode *vlm::entryById(VLMC_XMLSetting &store, int id)
{
    VLMC_XMLNode *const root = store.getXMLRootNode();
    if (!root) {
        return nullptr;
    }
    QString attributeName = idName();
    return root->getXMLNodeChildByID(id, attributeName);
}

QList<VLMC_XMLNode *> vlm::entriesById(VLMC_XMLSetting &store, int count)
{
    VLMC_XMLNode *const root = store.getXMLRootNode();
    return root ? NodeView::childrenByNumber(*root, idName(), count) : NodeView::nullNodes(count);
}

int vlm::countEntries(VLMC_XMLSetting &store, const char *name)
{
    QString attributeName = idName();
    QString entryName = elementName(name);
    return store.getXMLRootNodeChildCntByName(attributeName, entryName);
}

QString vlm::elementName(const char *name)
{
    static Names *const names = new Names;
    const QMutexLocker locker(&names->mutex);
    QString &text = names->texts[QByteArray(name)];
    if (text.isEmpty()) {
        text = QEXC_TextCodec::fromSJIS(name);
    }
    return text;
}

VLMC_XMLNode *vlm::addElement(VLMC_XMLSetting &store, VLMC_XMLNode *parent, const char *name,
                              const QString &text, char textType, char place)
{
    QString nodeName = elementName(name);
    QString elementText = text;
    QXmlStreamAttributes attributes;
    return store.addXMLChild(parent, nodeName, elementText, textType, attributes, place);
}

void vlm::releaseUnattached(VLMC_XMLNode *node)
{
    if (node && !node->getXMLNodeParent()) {
        node->deleteLater();
    }
}

void vlm::numberEntries(VLMC_XMLSetting &store)
{
    QString attributeName = idName();
    store.setIDforChildren(attributeName);
}

void vlm::removeEntry(VLMC_XMLSetting &store, int id)
{
    QString attributeName = idName();
    store.deleteXMLNodeByID(id, attributeName);
    numberEntries(store);
}

void vlm::loadEntries(VLMC_XMLSetting &store, const QString &directory, const char *fileName)
{
    store.deleteAllSetting();
    loadFile(store, directory, fileName);
    numberEntries(store);
}

void vlm::loadFile(VLMC_XMLSetting &store, const QString &directory, const char *fileName)
{
    QString path = directory + QEXC_TextCodec::fromSJIS(fileName);
    store.load(path);
}

void vlm::saveFile(VLMC_XMLSetting &store, const QString &directory, const char *fileName)
{
    QString path = directory + QEXC_TextCodec::fromSJIS(fileName);
    store.save(path);
}

void vlm::nameRoot(VLMC_XMLSetting &store, const char *name)
{
    VLMC_XMLNode *const root = store.getXMLRootNode();
    if (root) {
        nameRoot(*root, name);
    }
}
