#ifndef WATCHEDCREDENTIALS_H
#define WATCHEDCREDENTIALS_H

#include "cookies/VLMC_AuthSetting.h"

#include "core/VLMC_XMLNode.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPointer>

/// A credentials store that notes the calls of its virtual operations, in order, one per line, and
/// the nodes that it makes.
class WatchedCredentials : public VLMC_AuthSetting
{
public:
    WatchedCredentials() : refusesNodes(false) {}

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

    void load(QString &path) override
    {
        calls += "load " + path.toUtf8() + '\n';
        VLMC_AuthSetting::load(path);
    }
    void save(QString &path) override
    {
        calls += "save " + path.toUtf8() + '\n';
        VLMC_AuthSetting::save(path);
    }
    int getXMLRootNodeChildCntByName(QString &attributeName, QString &name) override
    {
        calls +=
            "getXMLRootNodeChildCntByName " + attributeName.toUtf8() + ' ' + name.toUtf8() + '\n';
        return VLMC_AuthSetting::getXMLRootNodeChildCntByName(attributeName, name);
    }
    void setIDforChildren(QString &attributeName) override
    {
        calls += "setIDforChildren " + attributeName.toUtf8() + '\n';
        VLMC_AuthSetting::setIDforChildren(attributeName);
    }
    void deleteXMLNodeByID(int id, QString &attributeName) override
    {
        calls +=
            "deleteXMLNodeByID " + QByteArray::number(id) + ' ' + attributeName.toUtf8() + '\n';
        VLMC_AuthSetting::deleteXMLNodeByID(id, attributeName);
    }
    void deleteAllXMLNode() override
    {
        calls += "deleteAllXMLNode\n";
        VLMC_AuthSetting::deleteAllXMLNode();
    }
    void deleteAllSetting() override
    {
        calls += "deleteAllSetting\n";
        VLMC_AuthSetting::deleteAllSetting();
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
            VLMC_AuthSetting::addXMLChild(parent, name, text, textType, attributes, prepend);
        nodes.append(QPointer<QObject>(node));
        return node;
    }

    bool refusesNodes;

private:
    QByteArray calls;
    QList<QPointer<QObject>> nodes;
};

#endif
