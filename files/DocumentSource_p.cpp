#include "files/DocumentSource_p.h"

#include <cstring>

namespace
{
const char kEntity[] = "<!ENTITY";
const char kAttributes[] = "<!ATTLIST";

const int kMaxExpanded = 4096;
const int kTooMuch = kMaxExpanded + 1;
const int kMaxDeclarationBytes = 64 * 1024;
// Enough to hold a name; a longer one counts as unknown.
const int kMaxRecentBytes = 256;
const int kMaxNesting = 8;

// Finds out how long an entity is when expanded, with the entities in its value.
class Expansion
{
public:
    explicit Expansion(const QXmlStreamEntityDeclarations &entities)
    {
        for (const QXmlStreamEntityDeclaration &entity : entities) {
            const QString name = entity.name().toString();
            if (!m_values.contains(name)) {
                m_values.insert(name, entity.value().toString());
            }
        }
    }

    // In characters; kTooMuch if too long or nested too deeply.
    // NOLINTNEXTLINE(misc-no-recursion): not deeper than kMaxNesting
    int size(const QString &name, int nesting = 0)
    {
        if (m_sizes.contains(name)) {
            return m_sizes.value(name);
        }
        const int found = nesting > kMaxNesting ? kTooMuch : sizeOfValue(name, nesting);
        m_sizes.insert(name, found);
        return found;
    }

private:
    // NOLINTNEXTLINE(misc-no-recursion): not deeper than kMaxNesting
    int sizeOfValue(const QString &name, int nesting)
    {
        const QString value = m_values.value(name);
        int total = int(value.size());
        int start = int(value.indexOf(QLatin1Char('&')));
        while (start >= 0 && total <= kMaxExpanded) {
            const int stop = int(value.indexOf(QLatin1Char(';'), start));
            if (stop < 0) {
                break;
            }
            const QString inner = value.mid(start + 1, stop - start - 1);
            if (m_values.contains(inner)) {
                total += size(inner, nesting + 1);
            }
            start = int(value.indexOf(QLatin1Char('&'), stop));
        }
        return qMin(total, kTooMuch);
    }

    QHash<QString, QString> m_values;
    QHash<QString, int> m_sizes;
};

bool isBuiltIn(const QByteArray &name)
{
    return name.startsWith('#') || name == "amp" || name == "lt" || name == "gt" || name == "quot"
           || name == "apos";
}
} // namespace

int vlm::defaultedSize(const QXmlStreamAttributes &attributes)
{
    int defaulted = 0;
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.isDefault()) {
            defaulted += int(attribute.qualifiedName().size() + attribute.value().size());
        }
    }
    return defaulted;
}

bool vlm::isUtf8(const QXmlStreamReader &reader)
{
    const QString encoding = reader.documentEncoding().toString();
    return encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0;
}

vlm::DocumentSource::DocumentSource(QIODevice *device)
    : QIODevice(device),
      m_device(device),
      m_left(device->isSequential() ? -1 : qMax(device->size() - device->pos(), qint64(0))),
      m_largest(0),
      m_expanded(0),
      m_declarationBytes(0),
      m_state(Prolog),
      m_ended(false)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

// In other encodings references cannot be told from the bytes.
void vlm::DocumentSource::declare(const QXmlStreamEntityDeclarations &entities, bool isUtf8)
{
    if (entities.isEmpty()) {
        return;
    }
    if (m_state != Declarations || !isUtf8) {
        end();
        return;
    }
    Expansion expansion(entities);
    for (const QXmlStreamEntityDeclaration &entity : entities) {
        const QString name = entity.name().toString();
        const int size = expansion.size(name);
        m_entities.insert(name.toUtf8(), size);
        m_largest = qMax(m_largest, size);
    }
    m_recent.clear();
    m_state = Counting;
}

void vlm::DocumentSource::endProlog()
{
    if (m_state != Counting) {
        m_state = Plain;
    }
}

bool vlm::DocumentSource::isSequential() const { return true; }

bool vlm::DocumentSource::atEnd() const { return m_ended; }

qint64 vlm::DocumentSource::readData(char *data, qint64 size)
{
    if (m_ended || size <= 0) {
        return 0;
    }
    const qint64 got = fetch(data, m_state == Declarations ? 1 : size);
    if (got <= 0) {
        return end();
    }
    switch (m_state) {
    case Prolog:
        return upToDeclaration(data, got);
    case Declarations:
        return declarationByte(*data);
    case Counting:
        return upToBound(data, got);
    case Plain:
        break;
    }
    return got;
}

qint64 vlm::DocumentSource::writeData(const char *, qint64) { return -1; }

qint64 vlm::DocumentSource::fetch(char *data, qint64 size)
{
    if (!m_held.isEmpty()) {
        const int taken = int(qMin(size, qint64(m_held.size())));
        memcpy(data, m_held.constData(), size_t(taken));
        m_held.remove(0, taken);
        return taken;
    }
    const qint64 got = m_device->read(data, m_left < 0 ? size : qMin(size, m_left));
    if (m_left > 0 && got > 0) {
        m_left -= got;
    }
    return got;
}

qint64 vlm::DocumentSource::upToDeclaration(char *data, qint64 size)
{
    const qint64 taken = memchr(data, '\0', size_t(size)) ? declarationAmongZeros(data, size)
                                                          : declarationIn(data, size);
    if (taken < 0) {
        return size;
    }
    m_state = Declarations;
    m_held = QByteArray(data + taken, int(size - taken));
    return taken;
}

// Where the word that declares an entity ends, or -1. It may have begun in earlier bytes.
qint64 vlm::DocumentSource::declarationIn(const char *data, qint64 size)
{
    const int wordSize = int(sizeof kEntity) - 1;
    const QByteArray before = m_recent.right(wordSize - 1);
    const QByteArray bytes = before + QByteArray::fromRawData(data, int(size));
    const int start = int(bytes.indexOf(kEntity));
    m_recent = bytes.right(wordSize - 1);
    return start < 0 ? -1 : start + wordSize - before.size();
}

// The same in UTF-16.
qint64 vlm::DocumentSource::declarationAmongZeros(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        remember(data[i]);
        if (endsWith(kEntity)) {
            return i + 1;
        }
    }
    return -1;
}

// Default values of attributes may use entities before the document type is complete.
qint64 vlm::DocumentSource::declarationByte(char byte)
{
    remember(byte);
    if (endsWith(kAttributes) || ++m_declarationBytes > kMaxDeclarationBytes) {
        return end();
    }
    return 1;
}

qint64 vlm::DocumentSource::upToBound(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        if (exceedsBound(data[i])) {
            end();
            return i;
        }
    }
    return size;
}

// What follows the last "&" is collected; its ";" makes it a reference.
bool vlm::DocumentSource::exceedsBound(char byte)
{
    if (byte == '&') {
        m_recent.clear();
    }
    remember(byte);
    if (byte != ';' || !m_recent.startsWith('&')) {
        return false;
    }
    const QByteArray name = m_recent.mid(1, m_recent.size() - 2);
    m_recent.clear();
    if (!isBuiltIn(name) || m_entities.contains(name)) {
        m_expanded += m_entities.value(name, m_largest);
    }
    return m_expanded > kMaxExpanded;
}

bool vlm::DocumentSource::endsWith(const char *text) const { return m_recent.endsWith(text); }

// Without the zero bytes that UTF-16 puts between ASCII characters.
void vlm::DocumentSource::remember(char byte)
{
    if (byte == '\0') {
        return;
    }
    if (m_recent.size() == kMaxRecentBytes) {
        m_recent.remove(m_recent.startsWith('&') ? 1 : 0, 1);
    }
    m_recent.append(byte);
}

qint64 vlm::DocumentSource::end()
{
    m_ended = true;
    m_held.clear();
    return 0;
}
