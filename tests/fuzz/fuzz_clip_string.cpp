// ClipString: the limit holds, and the text is cut at its end alone. An input is the kind of text,
// two bytes of limit, and the text as UTF-16 units or as UTF-8.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "tests/fuzz/Fuzz.h"

#include <cstring>

namespace
{
// Of the character that the limit cuts.
const int kMaxCutBytes = 3;
const int kMarkBytes = 3;

QString textOfUnits(const QByteArray &bytes)
{
    QString text(bytes.size() / 2, QChar());
    memcpy(static_cast<void *>(text.data()), bytes.constData(), size_t(text.size()) * 2);
    return text;
}

bool hasUnpairedSurrogate(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size()
            && text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (text.at(i).isHighSurrogate() || text.at(i).isLowSurrogate()) {
            return true;
        }
    }
    return false;
}

// A text that is cut ends at a zero character, and Qt removes a byte order mark from its start.
QString cutFrom(QString text)
{
    const int zero = int(text.indexOf(QChar(0)));
    text.truncate(zero < 0 ? int(text.size()) : zero);
    return text.startsWith(QChar(0xFEFF)) ? text.mid(1) : text;
}

void checkCut(const QString &text, const QString &clipped, int maxBytes)
{
    const int bytes = int(clipped.toUtf8().size());
    require(bytes <= maxBytes, "the limit holds");
    if (hasUnpairedSurrogate(text)) {
        return;
    }
    const QString whole = cutFrom(text);
    QString kept = clipped;
    while (kept.endsWith(QChar(0xFFFD)) && !whole.startsWith(kept)) {
        kept.chop(1);
    }
    require(whole.startsWith(kept), "what is kept is the start of the text");
    if (text.toUtf8().size() <= maxBytes) {
        require(clipped == whole, "a text that fits is kept");
    }
    const int given = maxBytes - (text.startsWith(QChar(0xFEFF)) ? kMarkBytes : 0);
    require(clipped == whole || kept.toUtf8().size() + kMaxCutBytes >= given,
            "no more is cut than the limit asks for");
}
} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static VLMC_BookmarksSetting bookmarks;
    static VLMC_HistorySetting history;
    Input input(data, size);
    const bool isUnits = input.choice(2) == 1;
    const int high = input.choice(256);
    const int maxBytes = (high > 127 ? -1 : high) * 16 + input.choice(256);
    const QString text = isUnits ? textOfUnits(input.rest()) : QString::fromUtf8(input.rest());

    const QString clipped = bookmarks.ClipString(text, maxBytes);
    require(history.ClipString(text, maxBytes) == clipped, "both stores cut alike");
    if (maxBytes < 1) {
        require(clipped == text, "without a limit nothing is cut");
        return 0;
    }
    checkCut(text, clipped, maxBytes);
    require(bookmarks.ClipString(clipped, maxBytes) == cutFrom(clipped), "cutting is stable");
    return 0;
}
