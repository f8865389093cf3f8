#ifndef IDENTIFIER_P_H
#define IDENTIFIER_P_H

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamAttributes>

class VLMC_XMLNode;

namespace vlm
{
// At most this many children of a root get a number: "000" to "998".
const int kMaxNumbered = 999;

// The attribute by which the stores number their entries: "id".
const QString &usualIdentifier();

// The number in a text of at most nine ASCII digits and nothing else, as the library writes it; -1
// for any other, which QString::toInt may still read.
int plainNumber(const QChar *text, int size);

// The number in the first attribute of this qualified name, read as by QString::toInt in base 10.
// False when there is none or when it is no number.
bool readIdentifier(const QXmlStreamAttributes &attributes, const QString &attributeName,
                    int *number);

// True for a set that is no other than identifiers() has for this number under the usual name.
bool isUsualIdentifier(const QXmlStreamAttributes &attributes, int number);

// A list of this many nulls; an empty one for a negative count.
QList<VLMC_XMLNode *> noNodes(int count);

// For each number from 0 up to count the first child that carries it, or null: what a search for
// each would find, in one pass.
QList<VLMC_XMLNode *> childrenById(const VLMC_XMLNode &parent, const QString &attributeName,
                                   int count);

// The attribute sets of the numbers from 0 up to count: one attribute each, its value as by "%03d".
// Sets under the usual name are made once and shared. May be called from any thread.
QVector<QXmlStreamAttributes> identifiers(const QString &attributeName, int count);
} // namespace vlm

#endif
