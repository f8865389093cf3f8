#ifndef TOOLS_VELMORA_PROFILE_PROFILE_PREFERENCES_H
#define TOOLS_VELMORA_PROFILE_PROFILE_PREFERENCES_H

#include "tools/velmora-profile/profile/Document.h"

#include <QtCore/QStringList>

#include <functional>

namespace profile
{
// A preference of one of the two documents, under the name of its group and element:
// "proxy.hostName". Its values are the words of the file.
struct Preference {
    enum Kind { Word, Text, Base64, Base64Secret };

    DocumentKind document;
    QString group;
    QString element;
    Kind kind;
    QStringList words;    // of a Word: those that can be set
    QStringList oldWords; // those that are read besides
    int maxBytes;         // of the others, before encoding
    QString fallback;     // what the browser uses without one
    bool emptyIsFallback; // and with an empty one
    std::function<bool(const QString &value)> store;

    QString name() const;
};

const QList<Preference> &preferences();
// The preference of this name, or null.
const Preference *preferenceNamed(const QString &name);

// A preference as a document has it.
struct PreferenceValue {
    bool inFile;
    QString value;  // the file's, decoded; the fallback when it has none
    QString hidden; // why the browser uses the fallback all the same; empty when it does not
};

PreferenceValue valueOf(const Preference &preference, const Document &document);

// The value, or stars for a password.
QString shown(const Preference &preference, const QString &value, bool showSecrets);

// "true or false", "at most 253 bytes of UTF-8".
QString limitOf(const Preference &preference);
} // namespace profile

#endif
