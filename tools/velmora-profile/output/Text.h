#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_TEXT_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_TEXT_H

#include <QtCore/QString>

// Texts, and what is done to one before it is printed or stored.
namespace profile
{
QString text(const char *utf8);

// "1 entry", "3 entries".
QString counted(qint64 count, const char *one, const char *many);

// A text from a profile or a file, on one line and without characters that steer a terminal.
QString printable(const QString &untrusted);

// Stars in place of a secret, unless it is to be shown or empty.
QString masked(const QString &secret, bool showSecrets = false);

// A text in which no address has a user name or a password any more.
QString withoutUserInfo(const QString &address);

// Bytes of a text's UTF-8 form, by which all limits count.
int utf8Bytes(const QString &text);

// Whether a text comes back whole out of a document: XML cannot carry every character.
bool isKept(const QString &text);
} // namespace profile

#endif
