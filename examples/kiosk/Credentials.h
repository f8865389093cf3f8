#ifndef EXAMPLES_KIOSK_CREDENTIALS_H
#define EXAMPLES_KIOSK_CREDENTIALS_H

#include "cookies/VLMC_AuthSetting.h"

#include <QtCore/QHash>
#include <QtCore/QObject>

#include <functional>

class QAuthenticator;
class QNetworkAccessManager;
class QNetworkReply;

/**
 * HTTP credentials: challenges are answered from the store, and what the user enters is stored once
 * a server has accepted it. The user is asked when a page was refused, not in the middle of its
 * transfer: the engine's network waits for the answer to a challenge.
 */
class Credentials : public QObject
{
    Q_OBJECT

public:
    /// Fills in user and password for info's host; false when the user gives none.
    typedef std::function<bool(VLMS_AuthInfo &info)> Question;

    Credentials(const QString &directory, QNetworkAccessManager &network);

    void setQuestion(const Question &question);
    /// Forgets all of them, in the file as well.
    void clear();

signals:
    /// The user has entered something for a page that was refused. Emitted before the engine hears
    /// how the page ended: load the page again after that.
    void entered();

private:
    void answer(QNetworkReply *reply, QAuthenticator *authenticator);
    void lookAtOutcome(QNetworkReply *reply);
    void ask(QNetworkReply *reply);
    void keep(VLMS_AuthInfo info);
    int find(const QString &host, const QString &port) const;

    QString m_directory;
    Question m_question;
    QHash<QString, VLMS_AuthInfo> m_entered; // by host and port, until a server has accepted them
};

#endif
