#ifndef TESTS_DIFFERENTIAL_HOSTILE_H
#define TESTS_DIFFERENTIAL_HOSTILE_H

#include "tests/differential/PlainStore.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"

#include <QtCore/QPointer>
#include <QtCore/QXmlStreamAttributes>

#include <functional>

/// The attributes as a node takes them.
QXmlStreamAttributes attributesOf(const PlainAttributes &attributes);

/**
 * Does to a store's tree, and to its plain counterpart, what a caller can do to it through its
 * nodes: ids with blanks and signs, doubled and missing ones, foreign elements, entries moved,
 * removed, deleted, or listed in two places, and references that were lent long ago and are used
 * late.
 *
 * A node that has lent a reference is never trusted again by the library, so that trees are only
 * read in ways that do not lend, and acts that lend are rare.
 */
class Hostile
{
public:
    /// Some acts pass through states that must not last; compare is called in them.
    Hostile(VLMC_XMLSetting &store, PlainStore &plain, Random &random, bool lends,
            std::function<void()> compare);

    /// One act, and its name; does nothing without a root.
    QByteArray act();

    /// Another document, where entries go and come from.
    VLMC_XMLSetting &other() { return m_other; }
    PlainStore &plainOther() { return m_plainOther; }

private:
    struct Child {
        VLMC_XMLNode *node;
        ElementPointer element;
    };

    PlainAttributes attributes();
    /// Null in a list that is empty and where it holds null.
    Child anyChild();
    bool belongsToRoot(const Child &child);

    void setAttributes(const Child &child);
    void addForeign();
    void addPrepared();
    void move(const Child &child);
    void remove(const Child &child);
    void removeByAnother(const Child &child);
    void destroy(const Child &child);
    void hold(const Child &child);
    void giveBack();
    void listTwice(const Child &child);
    void listElsewhere(const Child &child);
    void leaveEitherWay(const Child &child);
    void changeField(const Child &child);
    void dropField(const Child &child);

    void lendAttributes(const Child &child);
    void lendChildren();
    void useLentAttributes();
    void useLentChildren();

    VLMC_XMLNode *root();

    VLMC_XMLSetting &m_store;
    PlainStore &m_plain;
    Random &m_random;
    const bool m_lends;
    const std::function<void()> m_compare;
    VLMC_XMLSetting m_other;
    PlainStore m_plainOther;
    VLMC_XMLNode *const m_holder;
    const ElementPointer m_plainHolder;
    // References that were lent earlier, and to whom they lead as long as that lives.
    QPointer<QObject> m_lender;
    VLMC_XMLNode *m_lenderNode = nullptr;
    ElementPointer m_plainLender;
    QXmlStreamAttributes *m_lentAttributes = nullptr;
    QPointer<QObject> m_listLender;
    QList<VLMC_XMLNode *> *m_lentChildren = nullptr;
};

#endif
