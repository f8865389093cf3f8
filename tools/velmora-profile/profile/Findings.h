#ifndef TOOLS_VELMORA_PROFILE_PROFILE_FINDINGS_H
#define TOOLS_VELMORA_PROFILE_PROFILE_FINDINGS_H

#include <QtCore/QJsonArray>
#include <QtCore/QList>
#include <QtCore/QString>

namespace profile
{
// Something wrong in a profile.
struct Finding {
    QString file;
    QString what;    // what is wrong, and where
    QString meaning; // what it means for the browser
    QString action;  // what to do
};

// Everything that is wrong in the profile in the directory, which ends with "/".
QList<Finding> findingsOf(const QString &directory);

QString toText(const QList<Finding> &findings);
QJsonArray toJson(const QList<Finding> &findings);
} // namespace profile

#endif
