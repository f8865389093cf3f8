#ifndef EXAMPLES_DEMO_LOOPBACK_H
#define EXAMPLES_DEMO_LOOPBACK_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QUrl>
#include <QtNetwork/QTcpServer>

#include <functional>

class QNetworkAccessManager;

// A web server inside the program, as small as HTTP allows: one request per connection, without a
// body, answered by the function that the server is given.
class LoopbackServer : public QTcpServer
{
    Q_OBJECT

public:
    typedef std::function<QByteArray(const QByteArray &request)> Answer;

    explicit LoopbackServer(const Answer &answer);
    QUrl url() const;

private slots:
    void takeConnection();
    void read();

private:
    Answer m_answer;
};

// An answer without a page: response("200 OK", headers).
QByteArray response(const QByteArray &status, const QList<QByteArray> &headers);
// The value of a request's header, empty when there is none.
QByteArray headerOf(const QByteArray &request, const QByteArray &name);

// Fetches a page and waits for it; returns the HTTP status, or 0 if there was no answer.
int fetch(QNetworkAccessManager &browser, const QUrl &url);

#endif
