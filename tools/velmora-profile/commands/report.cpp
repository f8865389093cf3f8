// report: the profile as one page that needs nothing else.

#include "bookmarks/HistoryElements_p.h"
#include "cookies/AuthElements_p.h"
#include "text/TimeText_p.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Html.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Findings.h"
#include "tools/velmora-profile/profile/Preferences.h"
#include "tools/velmora-profile/profile/Thumbnails.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QMap>
#include <QtGui/QImageReader>

namespace
{
using namespace profile;

const int kDays = 60;
const int kHours = 24;
const int kVisitsShown = 200;

QString findingsSection()
{
    const QList<Finding> findings = findingsOf(text(kProfileFolder));
    QString body;
    for (const Finding &finding : findings) {
        body += text("<div class=\"finding\"><p><strong>") + escaped(finding.file)
                + text("</strong>: ") + escaped(finding.what) + text("</p><p>For the browser: ")
                + escaped(finding.meaning) + text(".</p><p>To do: ") + escaped(finding.action)
                + text(".</p></div>\n");
    }
    return section("findings", "Findings", findings.size(),
                   findings.isEmpty() ? text("<p>Nothing is wrong.</p>\n") : body);
}

// The file as it is, when it is an image that browsers draw.
QString picture(const QString &name)
{
    const QString path = text(kProfileFolder) + text(kThumbnailFolder) + name;
    QFile file(path);
    if (!isPictureFile(path) || QImageReader(path).format() != "png"
        || !file.open(QIODevice::ReadOnly)) {
        return text("<span class=\"nopicture\">no picture</span>");
    }
    return text("<img alt=\"\" src=\"data:image/png;base64,")
           + QString::fromLatin1(file.readAll().toBase64()) + text("\">");
}

QString bookmarksSection()
{
    const Document document(Bookmarks, text(kProfileFolder));
    const QList<VLMC_XMLNode *> &bookmarks = document.children();
    Progress progress("bookmark", bookmarks.size());
    QString body = bookmarks.isEmpty() ? QString() : text("<ul class=\"marks\">\n");
    for (VLMC_XMLNode *const bookmark : bookmarks) {
        body += text("<li>")
                + picture(thumbnailName(fieldText(bookmark, vlm::bookmarks::kThumbnail)))
                + linked(fieldText(bookmark, vlm::bookmarks::kUrl),
                         fieldText(bookmark, vlm::bookmarks::kTitle))
                + text("</li>\n");
        progress.step();
    }
    return section("bookmarks", "Bookmarks", bookmarks.size(),
                   bookmarks.isEmpty() ? body : body + text("</ul>\n"));
}

QList<QDateTime> timesOf(const QList<VLMC_XMLNode *> &visits)
{
    QList<QDateTime> times;
    for (VLMC_XMLNode *const visit : visits) {
        const QDateTime time =
            vlm::timeOfText(fieldText(visit, vlm::history::kDateTime), vlm::ToMinute);
        if (time.isValid()) {
            times.append(time);
        }
    }
    return times;
}

QString daysChart(const QList<QDateTime> &times)
{
    QMap<QDate, int> perDay;
    for (const QDateTime &time : times) {
        ++perDay[time.date()];
    }
    const QDate last = perDay.lastKey();
    const QDate first = qMax(perDay.firstKey(), last.addDays(1 - kDays));
    QList<Bar> bars;
    for (QDate day = first; day <= last; day = day.addDays(1)) {
        const int count = perDay.value(day);
        bars.append(
            {day.toString(text("MM-dd")),
             text("%1: %2").arg(day.toString(Qt::ISODate), counted(count, "visit", "visits")),
             count});
    }
    return text("<h3>Visits per day <span class=\"soft\">%1 to %2</span></h3>\n")
               .arg(first.toString(Qt::ISODate), last.toString(Qt::ISODate))
           + barChart(text("Visits per day"), bars, qMax(1, int(bars.size()) / 10));
}

QString hoursChart(const QList<QDateTime> &times)
{
    QList<Bar> bars;
    for (int hour = 0; hour < kHours; ++hour) {
        bars.append({QString::number(hour), QString(), 0});
    }
    for (const QDateTime &time : times) {
        ++bars[time.time().hour()].value;
    }
    for (int hour = 0; hour < kHours; ++hour) {
        bars[hour].tip = text("%1 to %2 o'clock: %3")
                             .arg(hour)
                             .arg(hour + 1)
                             .arg(counted(bars.at(hour).value, "visit", "visits"));
    }
    return text("<h3>Visits per hour of the day</h3>\n")
           + barChart(text("Visits per hour of the day"), bars, 3);
}

QString historySection()
{
    const Document document(History, text(kProfileFolder));
    const QList<VLMC_XMLNode *> &visits = document.children();
    const QList<QDateTime> times = timesOf(visits);
    QString body = times.isEmpty() ? QString() : daysChart(times) + hoursChart(times);
    QList<QStringList> rows;
    for (VLMC_XMLNode *const visit : visits.mid(0, kVisitsShown)) {
        rows.append(
            {escaped(fieldText(visit, vlm::history::kDateTime)),
             linked(fieldText(visit, vlm::history::kUrl), fieldText(visit, vlm::history::kTitle))});
    }
    if (!rows.isEmpty()) {
        body += htmlTable({text("Visited"), text("Page")}, rows);
    }
    if (visits.size() > kVisitsShown) {
        body += text("<p class=\"soft\">%1 more are not shown.</p>\n")
                    .arg(visits.size() - kVisitsShown);
    }
    return section("history", "History", visits.size(), body);
}

QString preferencesSection()
{
    const Document common(CommonPreferences, text(kProfileFolder));
    const Document user(UserPreferences, text(kProfileFolder));
    QList<QStringList> rows;
    for (const Preference &preference : preferences()) {
        const PreferenceValue value =
            valueOf(preference, preference.document == CommonPreferences ? common : user);
        // A page that is passed around shows neither name nor password.
        const bool isSecret =
            preference.kind == Preference::Base64 || preference.kind == Preference::Base64Secret;
        const QString shownValue = isSecret ? masked(value.value) : value.value;
        const bool isChanged = value.value != preference.fallback;
        rows.append(
            {escaped(preference.name()),
             text(isChanged ? "<span class=\"changed\">%1</span>" : "%1").arg(escaped(shownValue)),
             escaped(preference.fallback),
             value.inFile ? escaped(value.hidden) : text("not in the file")});
    }
    return section("preferences", "Preferences", rows.size(),
                   htmlTable({text("Name"), text("Value"), text("Default"), text("Note")}, rows));
}

QString fontsSection()
{
    const Document document(Fonts, text(kProfileFolder));
    const QList<VLMC_XMLNode *> &fonts = document.children();
    QString body = fonts.isEmpty() ? QString() : text("<ul class=\"fonts\">\n");
    for (VLMC_XMLNode *const font : fonts) {
        body += text("<li style=\"%1\">").arg(fontFamily(font->getText()))
                + escaped(font->getText()) + text("</li>\n");
    }
    return section("fonts", "Fonts", fonts.size(), fonts.isEmpty() ? body : body + text("</ul>\n"));
}

QString expiryOf(const QNetworkCookie &cookie)
{
    if (cookie.isSessionCookie()) {
        return text("end of the session");
    }
    const QDateTime expiry = cookie.expirationDate().toUTC();
    return expiry.toString(text("yyyy-MM-dd hh:mm"))
           + text(expiry < QDateTime::currentDateTimeUtc() ? " UTC, expired" : " UTC");
}

// By site, in a site by expiry. Their values are sessions, and stay out of the page.
QString cookiesSection()
{
    const CookieFile file = readCookieFile(text(kProfileFolder));
    QMap<QString, QMultiMap<QDateTime, QNetworkCookie>> sites;
    for (const QNetworkCookie &cookie : file.cookies) {
        sites[cookie.domain()].insert(cookie.expirationDate(), cookie);
    }
    QString body;
    for (auto site = sites.begin(); site != sites.end(); ++site) {
        QList<QStringList> rows;
        const QList<QNetworkCookie> cookies = site.value().values();
        for (const QNetworkCookie &cookie : cookies) {
            rows.append({escaped(QString::fromUtf8(cookie.name())), escaped(cookie.path()),
                         expiryOf(cookie), text(cookie.isSecure() ? "secure" : ""),
                         text(cookie.isHttpOnly() ? "HttpOnly" : "")});
        }
        body += text("<h3>") + escaped(site.key()) + text("</h3>\n")
                + htmlTable(
                    {text("Name"), text("Path"), text("Expires"), text("Secure"), text("HttpOnly")},
                    rows);
    }
    return section("cookies", "Cookies", file.cookies.size(), body);
}

QString credentialsSection()
{
    const Document document(profile::Credentials, text(kProfileFolder));
    QList<QStringList> rows;
    for (VLMC_XMLNode *const entry : document.children()) {
        rows.append({escaped(fieldText(entry, vlm::auth::kHostName)),
                     escaped(fieldText(entry, vlm::auth::kPortNum)),
                     escaped(fieldText(entry, vlm::auth::kAuthType)), text("********"),
                     text("********")});
    }
    return section("credentials", "Credentials", rows.size(),
                   rows.isEmpty() ? QString()
                                  : htmlTable({text("Host"), text("Port"), text("Scheme"),
                                               text("User"), text("Password")},
                                              rows));
}

int report(const Call &call)
{
    if (!call.has("output")) {
        return fail(text("name the page to write: -o FILE.html"));
    }
    const QString name = QDir::current().absolutePath();
    const QString body =
        text("<h1>Profile</h1>\n<p class=\"soft\">%1, as of %2</p>\n")
            .arg(escaped(name), QDateTime::currentDateTime().toString(text("yyyy-MM-dd hh:mm")))
        + findingsSection() + bookmarksSection() + historySection() + preferencesSection()
        + fontsSection() + cookiesSection() + credentialsSection();
    const QString title = text("Profile %1").arg(name);
    return writeFile(call.path(call.option("output")), page(title, body).toUtf8(), OwnerAlone)
               ? Done
               : Failed;
}
} // namespace

namespace profile
{
QList<Command> reportCommands()
{
    return {
        {"report", nullptr, "DIR", 0, 0, "output", "the profile as one HTML page", Reads, report},
    };
}
} // namespace profile
