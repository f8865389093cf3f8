#ifndef TESTS_KIOSK_KIOSK_H
#define TESTS_KIOSK_KIOSK_H

#include "tests/support/Files.h"

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QStringList>

/// The browser as a process on a profile of its own.
class Kiosk
{
public:
    explicit Kiosk(const QString &profile);

    /// Options before the profile's folder.
    void setOptions(const QStringList &options);
    void setEnvironment(const char *name, const QString &value);

    /// Plays the commands, with "quit" behind them, while this process goes on serving pages. The
    /// exit status, -1 when the browser did not end by itself.
    int play(const QStringList &commands);
    /// Starts playing, and returns.
    void start(const QStringList &commands);
    void kill();

    /// What the last run printed: a line for each "state".
    QJsonObject state(int number = 0) const;
    QByteArray errors() const;

private:
    QStringList m_arguments;
    QString m_profile;
    TestDirectory m_files;
    QProcess m_process;
    QProcessEnvironment m_environment;
    QByteArray m_output;
    QByteArray m_errors;
};

#endif
