#ifndef EXAMPLES_KIOSK_PREFERENCES_H
#define EXAMPLES_KIOSK_PREFERENCES_H

#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtNetwork/QSslConfiguration>

class QWebView;

/**
 * The two stores of preferences and the list of fonts, and what they mean to the engine. What is
 * set here is saved at once: a kiosk is switched off at the wall.
 */
class Preferences
{
public:
    explicit Preferences(const QString &directory);

    /// The last page or the home page, as the user chose.
    QUrl startPage() const;
    QUrl homePage() const;
    void rememberPage(const QUrl &url);

    /// The zoom in the store's codes, 1 to 11; false for any other.
    bool setZoom(int code);
    /// False for a family that is not in the list of fonts.
    bool setFont(const QString &family);
    QStringList fonts() const;

    bool acceptsCookies() const;
    bool usesCache() const;
    /// The versions of SSL and TLS that are switched on, as far as Qt can be told.
    QSslConfiguration security() const;

    /// Fonts, zoom, scripts and plug-ins as they are set now.
    void applyTo(QWebView &view) const;
    void save();

private:
    void offerInstalledFonts();

    QString m_directory;
};

#endif
