#ifndef TESTS_SUPPORT_COOKIEINI_H
#define TESTS_SUPPORT_COOKIEINI_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

/**
 * The engine's "cookie.ini", read and written byte by byte without Qt's own settings and streams.
 */

/// What a cookie.ini holds. Not valid when the file is anything but the one group with its one key,
/// or when count and raw forms do not fill the value exactly.
struct CookieIni {
    bool valid;
    int count;
    QList<QByteArray> rawForms;
};

CookieIni decodeCookieIni(const QByteArray &file);

/// A big-endian number of 32 bits.
QByteArray number32(quint32 number);

/// The value for these raw forms, under this count.
QByteArray cookieStream(int count, const QList<QByteArray> &rawForms);

/// A file that holds this value.
QByteArray cookieIniOfValue(const QByteArray &value);

/// A file that holds these raw forms, as the engine writes it.
QByteArray cookieIniOf(const QList<QByteArray> &rawForms);

#endif
