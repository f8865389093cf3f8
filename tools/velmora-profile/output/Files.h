#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_FILES_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_FILES_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

// Files and streams as a whole: those of a profile, and those that somebody names.
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
} // namespace profile

#endif
