#include "benchmarks/profile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QXmlStreamWriter>

#include <cstdlib>

namespace
{
QString text(const char *latin1) { return QString::fromLatin1(latin1); }

// Writes a document whose root has one child per entry; write adds what is in it.
template <typename Write>
void writeDocument(const QString &path, const char *root, const char *child, int entries,
                   Write write)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(path));
    }
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(text(root));
    xml.writeAttribute(text("docInfo"), text("1.0"));
    for (int entry = 0; entry < entries; ++entry) {
        xml.writeStartElement(text(child));
        xml.writeAttribute(text("id"), text("%1").arg(entry, 3, 10, QLatin1Char('0')));
        write(xml, entry);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}
} // namespace

Profile::Profile()
{
    QByteArray path = QFile::encodeName(QDir::tempPath() + text("/velmora-bench-XXXXXX"));
    if (!mkdtemp(path.data())) {
        qFatal("cannot make %s", path.constData());
    }
    m_path = QFile::decodeName(path) + QLatin1Char('/');
}

// No store makes folders by itself.
Profile::~Profile()
{
    QDir directory(m_path);
    const QStringList names = directory.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        directory.remove(name);
    }
    directory.rmdir(m_path);
}

QString Profile::path() const { return m_path; }

QString *Profile::pathPointer() { return &m_path; }

QString Profile::file(const char *name) const { return m_path + text(name); }

QString titleOf(int entry)
{
    return text("Page %1 of a site with a title of usual length").arg(entry);
}

QString urlOf(int entry)
{
    return text("http://www.example.com/some/path/to/page-%1.html?query=1&page=2").arg(entry);
}

QDateTime timeOf(int entry)
{
    return QDateTime(QDate(2026, 1, 31), QTime(12, 0)).addSecs(-60 * entry);
}

void writeHistory(const Profile &profile, int entries)
{
    writeDocument(profile.file("visit.xml"), "history", "pageInfo", entries,
                  [](QXmlStreamWriter &xml, int entry) {
                      xml.writeTextElement(text("title"), titleOf(entry));
                      xml.writeTextElement(text("url"), urlOf(entry));
                      xml.writeTextElement(text("dateTime"),
                                           timeOf(entry).toString(text("yyyy/MM/dd hh:mm")));
                  });
}

void writeBookmarks(const Profile &profile, int entries)
{
    writeDocument(profile.file("bookmark.xml"), "bookmarks", "bookmark", entries,
                  [](QXmlStreamWriter &xml, int entry) {
                      xml.writeTextElement(text("href"), urlOf(entry));
                      xml.writeTextElement(text("title"), titleOf(entry));
                      xml.writeTextElement(text("thumbnail"),
                                           text("%1.PNG").arg(entry, 6, 10, QLatin1Char('0')));
                  });
}

void writeFonts(const Profile &profile, int entries)
{
    writeDocument(profile.file("fontlist.xml"), "fontlist", "font", entries,
                  [](QXmlStreamWriter &xml, int entry) {
                      xml.writeCharacters(text("Font family %1").arg(entry));
                  });
}

void writeCredentials(const Profile &profile, int entries)
{
    writeDocument(profile.file("authinfo.xml"), "authentication", "authInfo", entries,
                  [](QXmlStreamWriter &xml, int entry) {
                      xml.writeTextElement(text("hostName"),
                                           text("host-%1.example.com").arg(entry));
                      xml.writeTextElement(text("portNum"), text("8080"));
                      xml.writeTextElement(text("authType"), text("basic"));
                      xml.writeStartElement(text("user"));
                      xml.writeCDATA(text("dXNlciBuYW1l"));
                      xml.writeEndElement();
                      xml.writeStartElement(text("passwd"));
                      xml.writeCDATA(text("cGFzc3dvcmQ="));
                      xml.writeEndElement();
                  });
}
