#ifndef WATCHEDCOOKIES_H
#define WATCHEDCOOKIES_H

#include "cookies/VLMC_CookieSetting.h"

#include "core/VLMC_XMLNode.h"

#include <QtCore/QByteArray>

/// A cookie store that notes the calls of its virtual operations, in order, one per line.
class WatchedCookies : public VLMC_CookieSetting
{
public:
    WatchedCookies() : refusesNodes(false) {}

    int max() const { return loadMax; }

    QByteArray takeCalls()
    {
        QByteArray taken;
        taken.swap(calls);
        return taken;
    }

    void load(QString &path) override
    {
        calls += "load " + path.toUtf8() + '\n';
        VLMC_CookieSetting::load(path);
    }
    void save(QString &path) override
    {
        calls += "save " + path.toUtf8() + '\n';
        VLMC_CookieSetting::save(path);
    }
    int getXMLRootNodeChildCntByName(QString &attributeName, QString &name) override
    {
        calls += "getXMLRootNodeChildCntByName\n";
        return VLMC_CookieSetting::getXMLRootNodeChildCntByName(attributeName, name);
    }
    void setIDforChildren(QString &attributeName) override
    {
        calls += "setIDforChildren " + attributeName.toUtf8() + '\n';
        VLMC_CookieSetting::setIDforChildren(attributeName);
    }
    void deleteXMLNodeByID(int id, QString &attributeName) override
    {
        calls +=
            "deleteXMLNodeByID " + QByteArray::number(id) + ' ' + attributeName.toUtf8() + '\n';
        VLMC_CookieSetting::deleteXMLNodeByID(id, attributeName);
    }
    void deleteAllXMLNode() override
    {
        calls += "deleteAllXMLNode\n";
        VLMC_CookieSetting::deleteAllXMLNode();
    }
    void deleteAllSetting() override
    {
        calls += "deleteAllSetting\n";
        VLMC_CookieSetting::deleteAllSetting();
    }
    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text, char &textType,
                              QXmlStreamAttributes &attributes, char prepend) override
    {
        calls += "addXMLChild " + (parent ? parent->getName().toUtf8() : QByteArray("-")) + ' '
                 + name.toUtf8() + " '" + text.toUtf8() + "' " + QByteArray::number(int(textType))
                 + ' ' + QByteArray::number(int(attributes.size())) + ' '
                 + QByteArray::number(int(prepend)) + '\n';
        return refusesNodes ? nullptr
                            : VLMC_CookieSetting::addXMLChild(parent, name, text, textType,
                                                              attributes, prepend);
    }

    bool refusesNodes;

private:
    QByteArray calls;
};

#endif
