#include "examples/kiosk/Commands.h"

#include "examples/kiosk/Text.h"
#include "examples/kiosk/Window.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWebKit/QWebHistory>
#include <QtWebKitWidgets/QWebFrame>
#include <QtWebKitWidgets/QWebView>

#include <cstdio>

namespace
{
const int kPatienceMilliseconds = 30000;
}

struct Commands::Command {
    const char *name;
    void (Commands::*run)(const QString &argument);
};

const Commands::Command Commands::kCommands[] = {
    {"open", &Commands::open},
    {"wait", &Commands::wait},
    {"wait-failure", &Commands::waitFailure},
    {"sleep", &Commands::sleep},
    {"start", &Commands::openStart},
    {"bookmark", &Commands::bookmark},
    {"bookmarks", &Commands::bookmarks},
    {"delete-bookmark", &Commands::deleteBookmark},
    {"zoom", &Commands::zoom},
    {"font", &Commands::font},
    {"credentials", &Commands::enterCredentials},
    {"change-user", &Commands::changeUser},
    {"screenshot", &Commands::screenshot},
    {"state", &Commands::state},
    {"quit", &Commands::quit},
};

Commands::Commands(const QStringList &lines, Window &window)
    : m_lines(lines),
      m_window(window),
      m_loading(true),
      m_wentWell(false),
      m_waiting(false),
      m_success(true)
{
    m_next.setSingleShot(true);
    m_patience.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &Commands::step);
    connect(&m_patience, &QTimer::timeout, this, [this] { stop(text("the page takes too long")); });
    connect(&window, &Window::loaded, this, &Commands::takeLoad);
    connect(&window.view(), &QWebView::loadStarted, this, [this] { m_loading = true; });
    window.credentials().setQuestion([this](VLMS_AuthInfo &info) {
        if (m_credentials.size() != 2) {
            return false;
        }
        info.user = m_credentials.takeFirst().toUtf8();
        info.passwd = m_credentials.takeFirst().toUtf8();
        return true;
    });
}

void Commands::start() { goOn(); }

void Commands::step()
{
    if (m_lines.isEmpty()) {
        return; // the window stays
    }
    const QString line = m_lines.takeFirst().trimmed();
    const QString name = line.section(QLatin1Char(' '), 0, 0);
    if (name.isEmpty()) {
        return goOn();
    }
    for (const Command &command : kCommands) {
        if (name == text(command.name)) {
            return (this->*command.run)(line.section(QLatin1Char(' '), 1));
        }
    }
    stop(text("no such command: %1").arg(name));
}

// Through the event loop, which frees what the stores have released.
void Commands::goOn() { m_next.start(0); }

void Commands::stop(const QString &complaint)
{
    fprintf(stderr, "velmora-kiosk: %s\n", complaint.toUtf8().constData());
    m_lines.clear();
    QCoreApplication::exit(1);
}

void Commands::takeLoad(bool wentWell)
{
    m_loading = false;
    m_wentWell = wentWell;
    if (m_waiting) {
        m_waiting = false;
        m_patience.stop();
        waitFor(m_success);
    }
}

void Commands::waitFor(bool success)
{
    if (m_loading) {
        m_waiting = true;
        m_success = success;
        m_patience.start(kPatienceMilliseconds);
    } else if (m_wentWell == success) {
        goOn();
    } else {
        stop(text(success ? "the page could not be loaded" : "the page could be loaded"));
    }
}

void Commands::open(const QString &url)
{
    m_loading = true;
    m_window.open(QUrl(url));
    goOn();
}

void Commands::wait(const QString &) { waitFor(true); }

void Commands::waitFailure(const QString &) { waitFor(false); }

void Commands::sleep(const QString &milliseconds) { m_next.start(milliseconds.toInt()); }

void Commands::openStart(const QString &)
{
    m_loading = true;
    m_window.openStartPage();
    goOn();
}

void Commands::bookmark(const QString &)
{
    m_window.addBookmark();
    goOn();
}

void Commands::bookmarks(const QString &)
{
    m_window.showBookmarks();
    goOn();
}

void Commands::deleteBookmark(const QString &id)
{
    m_window.removeBookmark(id.toInt());
    goOn();
}

void Commands::zoom(const QString &code)
{
    m_window.setZoom(code.toInt());
    goOn();
}

void Commands::font(const QString &family)
{
    m_window.setFont(family);
    goOn();
}

void Commands::enterCredentials(const QString &userAndPassword)
{
    m_credentials = userAndPassword.split(QLatin1Char(' '));
    goOn();
}

void Commands::changeUser(const QString &)
{
    m_loading = true;
    m_window.changeUser();
    goOn();
}

void Commands::screenshot(const QString &file)
{
    if (!m_window.grab().save(file, "PNG")) {
        return stop(text("the picture cannot be written: %1").arg(file));
    }
    goOn();
}

void Commands::state(const QString &)
{
    const QWebView &view = m_window.view();
    QJsonObject shown;
    shown[text("url")] = view.url().toString();
    shown[text("title")] = view.title();
    shown[text("text")] = view.page()->mainFrame()->toPlainText();
    shown[text("zoom")] = view.zoomFactor();
    shown[text("font")] = m_window.font();
    shown[text("plug-ins")] = view.settings()->testAttribute(QWebSettings::PluginsEnabled);
    shown[text("way back")] = view.history()->canGoBack();
    shown[text("local")] = m_window.isLocal(view.url());
    shown[text("mark")] = m_window.mark();
    printf("%s\n", QJsonDocument(shown).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
    goOn();
}

void Commands::quit(const QString &) { QCoreApplication::quit(); }
