// prefs: both preference documents under one set of names.

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/output/Password.h"
#include "tools/velmora-profile/profile/Preferences.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Stores.h"

namespace
{
using namespace profile;

QString noteOn(const PreferenceValue &value)
{
    if (!value.inFile) {
        return text("default, not in the file");
    }
    return value.hidden.isEmpty() ? QString()
                                  : text("%1: the browser uses the default").arg(value.hidden);
}

Listing listingOf(const QList<Preference> &wanted, const Document &common, const Document &user,
                  bool showSecrets)
{
    Listing listing({{"name", "Name"},
                     {"value", "Value"},
                     {"default", "Default"},
                     {nullptr, "Note"},
                     {"inFile", nullptr},
                     {"hidden", nullptr},
                     {"file", nullptr}});
    for (const Preference &preference : wanted) {
        const Document &document = preference.document == CommonPreferences ? common : user;
        const PreferenceValue value = valueOf(preference, document);
        listing.add({preference.name(), shown(preference, value.value, showSecrets),
                     preference.fallback, noteOn(value), value.inFile, value.hidden,
                     text(document.type().fileName)});
    }
    return listing;
}

int failUnknown(const QString &name)
{
    return fail(text("unknown preference '%1'; 'prefs list' names them all").arg(name));
}

int failRefused(const Preference &preference, const QString &value)
{
    if (preference.kind == Preference::Word) {
        return fail(
            text("%1 takes %2, not '%3'").arg(preference.name(), limitOf(preference), value));
    }
    return fail(text("%1 takes %2; the value has %3")
                    .arg(preference.name(), limitOf(preference))
                    .arg(utf8Bytes(value)));
}

bool isKnownWord(const Preference &preference, const QString &value)
{
    return preference.kind != Preference::Word || preference.words.contains(value);
}

// Encoded values keep every character.
QList<Loss> lossesOf(const Preference &preference, const QString &value)
{
    if (preference.kind != Preference::Text || isKept(value)) {
        return QList<Loss>();
    }
    return {{preference.name(), text("it has characters that the file cannot hold")}};
}

// A value, from the command line or, for a password, from standard input alone.
int valueFrom(const Call &call, const Preference &preference, QString *value)
{
    const bool given = call.operands.size() == 2;
    if (preference.kind == Preference::Base64Secret) {
        if (given) {
            return fail(text("%1 is read from standard input, where others cannot see it; do not "
                             "put it on the command line")
                            .arg(preference.name()));
        }
        QByteArray secret;
        if (!readSecret("Password", &secret)) {
            return Failed;
        }
        *value = QString::fromUtf8(secret);
        return Done;
    }
    if (!given) {
        return fail(text("%1 takes %2; name a value").arg(preference.name(), limitOf(preference)));
    }
    *value = call.operands.at(1);
    return Done;
}

int listPreferences(const Call &call)
{
    const Document common(CommonPreferences, text(kProfileFolder));
    const Document user(UserPreferences, text(kProfileFolder));
    if (warnOfDamage(common) != Done || warnOfDamage(user) != Done) {
        return Failed;
    }
    return listingOf(preferences(), common, user, call.has("show-secrets")).say(call.has("json"));
}

int getPreference(const Call &call)
{
    const Preference *const preference = preferenceNamed(call.operands.at(0));
    if (!preference) {
        return failUnknown(call.operands.at(0));
    }
    const Document document(preference->document, text(kProfileFolder));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    const PreferenceValue value = valueOf(*preference, document);
    if (call.has("json")) {
        const Listing listing =
            listingOf({*preference}, document, document, call.has("show-secrets"));
        sayJson(listing.json().at(0).toObject());
        return Done;
    }
    say(printable(shown(*preference, value.value, call.has("show-secrets"))));
    if (!value.hidden.isEmpty()) {
        warn(text("%1: %2: the browser uses the default '%3'")
                 .arg(preference->name(), value.hidden, preference->fallback));
    }
    return Done;
}

int setPreference(const Call &call)
{
    const Preference *const preference = preferenceNamed(call.operands.at(0));
    if (!preference) {
        return failUnknown(call.operands.at(0));
    }
    QString value;
    if (valueFrom(call, *preference, &value) != Done || loadStore(preference->document) != Done) {
        return Failed;
    }
    if (!isKnownWord(*preference, value) || !preference->store(value)) {
        return failRefused(*preference, value);
    }
    return tellLosses(call, lossesOf(*preference, value)) == Done ? saveStore(preference->document)
                                                                  : int(Failed);
}
} // namespace

namespace profile
{
QList<Command> prefsCommands()
{
    return {
        {"prefs", "list", "DIR", 0, 0, "json show-secrets", "all preferences and their defaults",
         Reads, listPreferences},
        {"prefs", "get", "DIR NAME", 1, 1, "json show-secrets", "one preference", Reads,
         getPreference},
        {"prefs", "set", "DIR NAME [VALUE]", 1, 2, "strict", "change one preference", Writes,
         setPreference},
    };
}
} // namespace profile
