#ifndef HOSTILE_H
#define HOSTILE_H

#include "tests/differential/PlainStore.h"

#include <QtCore/QXmlStreamAttributes>

#include <random>

class VLMC_XMLNode;
class VLMC_XMLSetting;

/// Numbers that depend on the seed alone, on every machine.
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}

    /// From 0 up to, not including, the bound.
    int below(int bound) { return int(m_engine() % unsigned(bound)); }
    bool oneIn(int count) { return below(count) == 0; }
    QString word();

private:
    std::mt19937 m_engine;
};

/**
 * Does to a store's tree, and to its plain counterpart, what a caller can do to it through the
 * references that nodes lend: ids with blanks and signs, doubled and missing ones, foreign
 * elements, moved and removed entries, and references that were lent long ago and are used late.
 */
class Hostile
{
public:
    Hostile(VLMC_XMLSetting &store, PlainStore &plain, Random &random);

    /// One act; does nothing without a root.
    void act();

private:
    void changeAttributes(VLMC_XMLNode *node, const ElementPointer &element);
    void addForeign(VLMC_XMLNode *root);
    void move(VLMC_XMLNode *root, int index);
    void remove(VLMC_XMLNode *root, int index);
    void swap(VLMC_XMLNode *root, int index);
    void useKept();

    VLMC_XMLSetting &m_store;
    PlainStore &m_plain;
    Random &m_random;
    // A reference that was lent earlier, as long as its entry is in the tree.
    QXmlStreamAttributes *m_kept = nullptr;
    VLMC_XMLNode *m_keptNode = nullptr;
    ElementPointer m_keptElement;
};

#endif
