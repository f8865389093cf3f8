#include "text/Utf8_p.h"

#include <QtCore/QByteArray>

bool vlm::fitsUtf8(const QString &text, int maxBytes)
{
    // A UTF-16 unit takes at most three bytes of UTF-8, so most texts need no conversion.
    return text.size() <= maxBytes / 3 || text.toUtf8().size() <= maxBytes;
}

QString vlm::clipped(const QString &text, int maxBytes)
{
    if (maxBytes < 1) {
        return text;
    }
    QString kept = QString::fromUtf8(text.toUtf8().left(maxBytes).constData());
    while (!fitsUtf8(kept, maxBytes)) {
        kept.chop(1);
    }
    return kept;
}
