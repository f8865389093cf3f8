#ifndef CORE_NUMBERING_P_H
#define CORE_NUMBERING_P_H

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamAttributes>

// The numbers by which entries are addressed, as sets of attributes.
namespace vlm
{
// At most this many children of a root get a number: "000" to "998".
const int kMaxNumbered = 999;

// The name of the attribute in which the stores keep the number of an entry: "id".
const QString &idName();

// The number in a text of at most nine ASCII digits and nothing else, as the library writes it; -1
// for any other, which QString::toInt may still read.
int plainNumber(const QChar *text, int size);

// The number in the first attribute of this qualified name, read as by QString::toInt in base 10.
// False if there is none or it is not a number.
bool readNumber(const QXmlStreamAttributes &attributes, const QString &attributeName, int *number);

// True for a set that is no other than numberSets() has for this number under idName().
bool isNumberSet(const QXmlStreamAttributes &attributes, int number);

// The attribute sets of the numbers from 0 up to count, and maybe of some more: one attribute each,
// its value as by "%03d". Sets under idName() are made once and shared. May be called from any
// thread.
QVector<QXmlStreamAttributes> numberSets(const QString &attributeName, int count);
} // namespace vlm

#endif
