#ifndef DRAW_H
#define DRAW_H

#include <QtCore/QDateTime>
#include <QtCore/QString>

#include <cstddef>

/// Numbers, texts and times that depend on the seed alone, whatever the processor and the standard
/// library.
class Draw
{
public:
    explicit Draw(quint32 seed) : m_state(seed) {}

    /// From 0 up to, not including, the bound.
    int below(int bound);
    bool oneIn(int count) { return below(count) == 0; }

    template <typename Value, std::size_t count>
    Value oneOf(const Value (&values)[count])
    {
        return values[below(int(count))];
    }

    /// Any text: in several scripts, with markup, with what XML cannot carry, and now and then one
    /// at a limit of the stores.
    QString text();
    /// As text(), but only what has one form in UTF-8, of which Qt's versions count the same bytes.
    QString utf8Text();
    /// Bytes of any value.
    QByteArray bytes();
    /// Invalid, far away, beside a change of the clock or at any minute of a few days.
    QDateTime time();
    /// An id around those of so many entries.
    int id(int entries) { return below(entries + 3) - 1; }

private:
    quint64 m_state;
};

#endif
