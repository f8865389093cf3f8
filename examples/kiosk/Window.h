#ifndef EXAMPLES_KIOSK_WINDOW_H
#define EXAMPLES_KIOSK_WINDOW_H

#include "examples/kiosk/Bookmarks.h"
#include "examples/kiosk/CookieJar.h"
#include "examples/kiosk/Credentials.h"
#include "examples/kiosk/Network.h"
#include "examples/kiosk/Preferences.h"
#include "examples/kiosk/Visits.h"

#include <QtWidgets/QMainWindow>

class BookmarksPage;
class QLabel;
class QLineEdit;
class QMenu;
class QStackedWidget;
class QWebView;

/**
 * The browser: one window that shows a page, or the list of bookmarks. It owns everything that
 * keeps the profile, and every action of the user is a slot here.
 */
class Window : public QMainWindow
{
    Q_OBJECT

public:
    /// Pages of localHost, which may be empty, count as the device's own, like those of the
    /// loopback host.
    Window(const QString &directory, const QByteArray &localHost);
    ~Window() override;

    Credentials &credentials();
    QWebView &view();
    /// Whether the page is the device's own.
    bool isLocal(const QUrl &url) const;
    /// What tells the user so.
    QString mark() const;
    QString font() const;

public slots:
    void open(const QUrl &url);
    void openStartPage();
    /// False when the page cannot be bookmarked.
    bool addBookmark();
    bool removeBookmark(int id);
    void showBookmarks();
    bool setZoom(int code);
    bool setFont(const QString &family);
    void editPreferences();
    /// Another user takes over: what the delete timings name is deleted.
    void changeUser();

signals:
    /// The page has been loaded, or could not be.
    void loaded(bool wentWell);

private:
    void buildTools();
    void connectView();
    void applyPreferences();
    void takeNote(bool wentWell);
    void markLocal(const QUrl &url);
    void listVisits(QMenu *menu);
    QImage picture() const;

    Preferences m_preferences;
    Network m_network;
    CookieJar *m_cookies; // the network's
    Credentials m_credentials;
    Visits m_visits;
    Bookmarks m_bookmarks;
    QByteArray m_localHost;
    bool m_refused;     // the page that is being loaded, until the user's answer to that
    bool m_userChanged; // until the first page of the next one is there

    QStackedWidget *m_pages;
    QWebView *m_view;
    BookmarksPage *m_bookmarksPage;
    QLineEdit *m_address;
    QLabel *m_mark;
};

#endif
