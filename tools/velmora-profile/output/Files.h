#ifndef OUTPUT_FILES_H
#define OUTPUT_FILES_H

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/formats/Formats.h"

#include <QtCore/QJsonArray>
#include <QtCore/QList>

// Files beside the profile's, and what reading and writing them has in common.
namespace profile
{
const qint64 kMebibyte = Q_INT64_C(1048576);

// What is read at most. The library saves no larger document; an import has files of browsers,
// whose lists are far below even with all their icons.
const qint64 kMaxFileBytes = 256 * kMebibyte;
const qint64 kMaxImportBytes = 64 * kMebibyte;

// The file whole, "-" for standard input. False, and said so, when it cannot be read or is larger.
bool readFile(const QString &path, QByteArray *content, qint64 maxBytes = kMaxFileBytes);

// Replaces the file as a whole; a new file is the owner's alone when asked. False, and said so,
// when it cannot be written; the file is then as it was.
enum Readers { Everyone, OwnerAlone };
bool replaceFile(const QString &path, const QByteArray &content, Readers readers = Everyone);

// The same for a file that somebody named: "-" stands for standard output, and a pipe or a device
// stays what it is and gets the content.
bool writeFile(const QString &path, const QByteArray &content, Readers readers = Everyone);

// Says what could not be carried, each on a line of standard error.
void sayLosses(const QList<Loss> &losses);
QJsonArray toJson(const QList<Loss> &losses);

// With --strict any loss is an error: says so and gives Failed, otherwise Done.
int refuseLosses(const Call &call, const QList<Loss> &losses);

// "was", "were" or, on a dry run, "would be".
QString imported(const Call &call, int added);

// The operands as ids below count, each once, from the highest down: each removal renumbers. False,
// and said so, when one is none.
bool readIds(const Call &call, int count, QList<int> *ids);

// What a text loses on its way through a document: characters that XML cannot carry.
bool isKept(const QString &text);
} // namespace profile

#endif
