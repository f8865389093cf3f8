#include "examples/kiosk/Window.h"

#include "core/VLMC_OlpUrl.h"
#include "examples/kiosk/BookmarksPage.h"
#include "examples/kiosk/PreferencesDialog.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWebKit/QWebHistory>
#include <QtWebKitWidgets/QWebFrame>
#include <QtWebKitWidgets/QWebView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>

namespace
{
const QSize kWindowSize(1024, 720);
const QSize kThumbnailSize(160, 120);
const int kListedVisits = 20;
const int kMessageMilliseconds = 5000;

// The stores' code for a deletion at a change of the user.
const char kAtUserChange = 3;

// In this mode no second host of the device's own is looked for.
const char kOneHost = 0;

bool isWebPage(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}
} // namespace

Window::Window(const QString &directory, const QByteArray &localHost)
    : m_preferences(directory),
      m_network(directory, m_preferences),
      m_cookies(new CookieJar(directory, m_preferences)),
      m_credentials(directory, m_network),
      m_visits(directory),
      m_bookmarks(directory),
      m_localHost(localHost),
      m_refused(false),
      m_userChanged(false),
      m_pages(new QStackedWidget(this)),
      m_view(new QWebView(m_pages)),
      m_bookmarksPage(new BookmarksPage(m_pages)),
      m_address(new QLineEdit(this)),
      m_mark(new QLabel(this))
{
    m_network.setCookieJar(m_cookies);
    m_view->page()->setNetworkAccessManager(&m_network);
    m_pages->addWidget(m_view);
    m_pages->addWidget(m_bookmarksPage);
    setCentralWidget(m_pages);
    buildTools();
    statusBar()->addPermanentWidget(m_mark);
    connectView();
    applyPreferences();
    m_preferences.save(); // a new profile gets its defaults
    resize(kWindowSize);
}

// The page uses the network until its end, and children go after members.
Window::~Window()
{
    disconnect(m_view, nullptr, this, nullptr);
    delete m_pages;
    m_cookies->stop();
}

Credentials &Window::credentials() { return m_credentials; }

QWebView &Window::view() { return *m_view; }

bool Window::isLocal(const QUrl &url) const
{
    QByteArray host = m_localHost; // which is only read
    return VLMC_OlpUrl::IsOlpContents(url, kOneHost, nullptr, host.data());
}

QString Window::mark() const { return m_mark->text(); }

QString Window::font() const { return m_view->settings()->fontFamily(QWebSettings::StandardFont); }

void Window::open(const QUrl &url)
{
    m_pages->setCurrentWidget(m_view);
    m_view->load(url);
}

void Window::openStartPage() { open(m_preferences.startPage()); }

bool Window::addBookmark()
{
    const bool added =
        isWebPage(m_view->url()) && m_bookmarks.add(m_view->url(), m_view->title(), picture());
    statusBar()->showMessage(added ? tr("Bookmarked")
                                   : tr("This page is bookmarked already, or cannot be"),
                             kMessageMilliseconds);
    m_bookmarksPage->refresh();
    return added;
}

bool Window::removeBookmark(int id)
{
    const bool removed = m_bookmarks.remove(id);
    m_bookmarksPage->refresh();
    return removed;
}

void Window::showBookmarks()
{
    m_bookmarksPage->refresh();
    m_pages->setCurrentWidget(m_bookmarksPage);
}

bool Window::setZoom(int code)
{
    const bool accepted = m_preferences.setZoom(code);
    m_preferences.applyTo(*m_view);
    return accepted;
}

bool Window::setFont(const QString &family)
{
    const bool accepted = m_preferences.setFont(family);
    m_preferences.applyTo(*m_view);
    return accepted;
}

void Window::editPreferences()
{
    PreferencesDialog dialog(m_preferences.fonts(), this);
    if (dialog.exec() == QDialog::Accepted) {
        m_preferences.save();
        applyPreferences();
    }
}

void Window::changeUser()
{
    VLMC_BrowserUserSetting *const user = VLMC_BrowserUserSetting::getInstance();
    if (user->getCookieDeleteTiming() == kAtUserChange) {
        m_cookies->clear();
    }
    if (user->getCertificationDeleteTiming() == kAtUserChange) {
        m_credentials.clear();
    }
    if (VLMC_BrowserCommonSetting::getInstance()->getCacheDeleteTiming() == kAtUserChange) {
        m_network.clearDiskCache();
        QWebSettings::clearMemoryCaches();
    }
    m_network.forgetConnections();
    m_userChanged = true;
    open(m_preferences.homePage());
}

void Window::buildTools()
{
    QToolBar *const tools = addToolBar(tr("Tools"));
    tools->setMovable(false);
    tools->addAction(m_view->pageAction(QWebPage::Back));
    tools->addAction(m_view->pageAction(QWebPage::Forward));
    tools->addAction(m_view->pageAction(QWebPage::Reload));
    tools->addAction(tr("Home"), this, [this] { open(m_preferences.homePage()); });
    tools->addWidget(m_address);
    tools->addAction(tr("Bookmark"), this, &Window::addBookmark);
    tools->addAction(tr("Bookmarks"), this, &Window::showBookmarks);
    QToolButton *const visits = new QToolButton(tools);
    visits->setText(tr("History"));
    visits->setPopupMode(QToolButton::InstantPopup);
    visits->setMenu(new QMenu(visits));
    tools->addWidget(visits);
    tools->addAction(tr("Preferences"), this, &Window::editPreferences);
    tools->addAction(tr("Change user"), this, &Window::changeUser);

    QMenu *const menu = visits->menu();
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { listVisits(menu); });
    connect(m_address, &QLineEdit::returnPressed, this,
            [this] { open(QUrl::fromUserInput(m_address->text())); });
    connect(m_bookmarksPage, &BookmarksPage::chosen, this, &Window::open);
    connect(m_bookmarksPage, &BookmarksPage::removalWanted, this, &Window::removeBookmark);
}

void Window::connectView()
{
    connect(m_view, &QWebView::loadFinished, this, &Window::takeNote);
    connect(m_view, &QWebView::titleChanged, this, &Window::setWindowTitle);
    connect(m_view, &QWebView::urlChanged, this, [this](const QUrl &url) {
        m_address->setText(url.toDisplayString(QUrl::RemoveUserInfo));
        markLocal(url);
    });
    connect(&m_credentials, &Credentials::entered, this, [this] { m_refused = true; });
}

void Window::applyPreferences()
{
    m_preferences.applyTo(*m_view);
    m_network.forgetConnections();
}

// The visit, with title and address after all redirections. A page that was refused, and for which
// the user has entered something meanwhile, is not a visit yet.
void Window::takeNote(bool wentWell)
{
    const QUrl url = m_view->url();
    if (m_refused) {
        m_refused = false;
        QTimer::singleShot(0, m_view, SLOT(reload()));
        return;
    }
    if (wentWell && m_userChanged) {
        m_userChanged = false;
        m_view->history()->clear(); // which keeps the page that is shown
    }
    if (!wentWell) {
        statusBar()->showMessage(tr("The page could not be loaded"), kMessageMilliseconds);
    } else if (isWebPage(url)) {
        m_visits.add(url, m_view->title());
        m_preferences.rememberPage(url);
    }
    emit loaded(wentWell);
}

void Window::markLocal(const QUrl &url)
{
    const bool local = isLocal(url);
    m_mark->setText(local ? tr("On this device") : tr("Network"));
    m_mark->setStyleSheet(local ? QLatin1String("color: white; background: #1d6b38; padding: 2px")
                                : QLatin1String("padding: 2px"));
}

void Window::listVisits(QMenu *menu)
{
    menu->clear();
    const QList<VLMS_History> visits = m_visits.latest(kListedVisits);
    for (const VLMS_History &visit : visits) {
        const QUrl url(visit.url);
        QString label = fontMetrics().elidedText(visit.title, Qt::ElideRight, width() / 2);
        label.replace(QLatin1Char('&'), QLatin1String("&&")); // no shortcuts from a page's title
        menu->addAction(label, this, [this, url] { open(url); });
    }
}

// The visible part of the page, its upper edge kept.
QImage Window::picture() const
{
    QImage page(m_view->size(), QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    m_view->page()->mainFrame()->render(&painter, QRegion(page.rect()));
    painter.end();
    return page.scaled(kThumbnailSize, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation)
        .copy(QRect(QPoint(0, 0), kThumbnailSize));
}
