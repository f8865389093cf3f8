#include "text/XmlText_p.h"

namespace
{
// One character of a text: its first UTF-16 unit's position and the number of its units.
struct Character {
    uint code;
    int units;
};

bool isSurrogate(uint code) { return code >= 0xD800 && code <= 0xDFFF; }

// An unpaired surrogate comes back as it stands.
Character characterAt(const QString &text, int position)
{
    const QChar first = text.at(position);
    if (first.isHighSurrogate() && position + 1 < text.size()
        && text.at(position + 1).isLowSurrogate()) {
        return {QChar::surrogateToUcs4(first, text.at(position + 1)), 2};
    }
    return {first.unicode(), 1};
}

bool isForbidden(uint code)
{
    return isSurrogate(code) || (code < 0x20 && code != '\t' && code != '\n' && code != '\r');
}

bool isNonCharacter(uint code)
{
    return (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
}

// True for characters that no rule above touches: most texts have no others.
bool isPlain(ushort unit) { return unit >= 0x20 && unit < 0xD800; }
} // namespace

bool vlm::isXmlText(const QString &text)
{
    const int size = int(text.size());
    for (int i = 0; i < size;) {
        if (isPlain(text.at(i).unicode())) {
            ++i;
            continue;
        }
        const Character character = characterAt(text, i);
        if (isForbidden(character.code) || isNonCharacter(character.code)) {
            return false;
        }
        i += character.units;
    }
    return true;
}

QString vlm::xmlText(const QString &text)
{
    if (isXmlText(text)) {
        return text;
    }
    QString kept;
    const int size = int(text.size());
    kept.reserve(size);
    for (int i = 0; i < size;) {
        const Character character = characterAt(text, i);
        if (isNonCharacter(character.code)) {
            kept += QLatin1Char('?');
        } else if (!isForbidden(character.code)) {
            kept += text.mid(i, character.units);
        }
        i += character.units;
    }
    return kept;
}
