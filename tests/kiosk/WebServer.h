#ifndef TESTS_KIOSK_WEBSERVER_H
#define TESTS_KIOSK_WEBSERVER_H

#include "tests/support/HttpServer.h"

#include <QtCore/QList>

/**
 * The web of the tests: a server on the loopback interface, which answers as a proxy as well.
 *
 *     /page?N        a page titled "Page N", with a picture
 *     /titles?N      pages with odd titles, see title()
 *     /bell          a page whose title has characters that XML cannot carry
 *     /red           a page that is red from edge to edge
 *     /redirect      leads to /page?redirected
 *     /cookies       sets "session" for the session and "user" for a year
 *     /counter?N     sets "count" to N
 *     /many-cookies  sets thirty
 *     /changing      has another title each time
 *     /basic, /digest   let in who knows kUser and kPassword
 *     /cached        may be kept for an hour
 *     /script        a page whose script gives it the title "scripted"
 */
class WebServer : public HttpServer
{
    Q_OBJECT

public:
    WebServer();

    /// The requests so far for pages below this path, as they came.
    QList<QByteArray> requests(const char *path) const;
    /// From now on a proxy requires an account.
    void askForProxyAccount();

    static QString title(int number);
    static int titles();

signals:
    void asked();

private:
    QByteArray answer(const QByteArray &request) override;

    QList<QByteArray> m_requests;
    bool m_asksForAccount;
};

const char kUser[] = "hanako";
const char kPassword[] = "correct-horse";
const char kProxyAccount[] = "kiosk";
const char kProxyPassword[] = "7";

#endif
