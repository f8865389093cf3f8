#ifndef TESTS_SUPPORT_WATCHEDSTORE_H
#define TESTS_SUPPORT_WATCHEDSTORE_H

#include "core/VLMC_XMLNode.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QXmlStreamAttributes>

/// A store that notes the calls of its virtual operations, in order, one per line, and the nodes
/// that it makes.
template <typename Store>
class WatchedStore : public Store
{
public:
    WatchedStore() : refusesNodes(false) {}

    QByteArray takeCalls()
    {
        QByteArray taken;
        taken.swap(calls);
        return taken;
    }

    int livingNodes() const
    {
        int living = 0;
        for (const QPointer<QObject> &node : nodes) {
            living += node ? 1 : 0;
        }
        return living;
    }

    /// In the stores that record it at a load.
    int max() const { return Store::loadMax; }

    void load(QString &path) override
    {
        calls += "load " + path.toUtf8() + '\n';
        Store::load(path);
    }
    void save(QString &path) override
    {
        calls += "save " + path.toUtf8() + '\n';
        Store::save(path);
    }
    int getXMLRootNodeChildCntByName(QString &attributeName, QString &name) override
    {
        calls +=
            "getXMLRootNodeChildCntByName " + attributeName.toUtf8() + ' ' + name.toUtf8() + '\n';
        return Store::getXMLRootNodeChildCntByName(attributeName, name);
    }
    void setIDforChildren(QString &attributeName) override
    {
        calls += "setIDforChildren " + attributeName.toUtf8() + '\n';
        Store::setIDforChildren(attributeName);
    }
    void deleteXMLNodeByID(int id, QString &attributeName) override
    {
        calls +=
            "deleteXMLNodeByID " + QByteArray::number(id) + ' ' + attributeName.toUtf8() + '\n';
        Store::deleteXMLNodeByID(id, attributeName);
    }
    void deleteAllXMLNode() override
    {
        calls += "deleteAllXMLNode\n";
        Store::deleteAllXMLNode();
    }
    void deleteAllSetting() override
    {
        calls += "deleteAllSetting\n";
        Store::deleteAllSetting();
    }
    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text, char &textType,
                              QXmlStreamAttributes &attributes, char prepend) override
    {
        calls += "addXMLChild " + (parent ? parent->getName().toUtf8() : QByteArray("-")) + ' '
                 + name.toUtf8() + " '" + text.toUtf8() + "' " + QByteArray::number(int(textType))
                 + ' ' + QByteArray::number(int(attributes.size())) + ' '
                 + QByteArray::number(int(prepend)) + '\n';
        if (refusesNodes) {
            return nullptr;
        }
        VLMC_XMLNode *const node =
            Store::addXMLChild(parent, name, text, textType, attributes, prepend);
        nodes.append(QPointer<QObject>(node));
        return node;
    }

    bool refusesNodes;

private:
    QByteArray calls;
    QList<QPointer<QObject>> nodes;
};

#endif
