#ifndef EXAMPLES_KIOSK_COOKIEJAR_H
#define EXAMPLES_KIOSK_COOKIEJAR_H

#include <QtCore/QTimer>
#include <QtNetwork/QNetworkCookieJar>

class Preferences;

/**
 * The engine's cookies. While the browser runs they are in "cookie.ini", written after each change;
 * between two runs in "cookie.xml". So a "cookie.ini" at the start is that of a run that was
 * killed, and is converted before anything else.
 */
class CookieJar : public QNetworkCookieJar
{
public:
    CookieJar(const QString &directory, const Preferences &preferences);

    bool setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url) override;
    /// Forgets all cookies, on the disk as well.
    void clear();
    /// Carries what outlives the session over to "cookie.xml".
    void stop();

private:
    void takeOverFromKilledRun();
    void keepWithinLimit();
    void dropSessionCookies();
    void save();
    void convertToDocument();

    QString m_directory;
    const Preferences &m_preferences;
    QTimer m_saving;
};

#endif
