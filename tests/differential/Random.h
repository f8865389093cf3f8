#ifndef TESTS_DIFFERENTIAL_RANDOM_H
#define TESTS_DIFFERENTIAL_RANDOM_H

#include <QtCore/QDateTime>
#include <QtCore/QString>

#include <cstddef>
#include <random>

/// Numbers and texts that depend on the seed alone, on every machine.
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}

    /// From 0 up to, not including, the bound.
    int below(int bound) { return int(m_engine() % unsigned(bound)); }
    bool oneIn(int count) { return below(count) == 0; }

    template <typename Value, std::size_t count>
    Value oneOf(const Value (&values)[count])
    {
        return values[below(int(count))];
    }

    /// Any text that XML can carry: empty, blank, with markup, in several scripts, and now and then
    /// one at a limit of the stores.
    QString word();
    /// What a caller or an edited file may hold as a number of an entry: mostly one as the library
    /// writes it, else with blanks, signs or fractions, too large, or none at all.
    QString idValue(int entries);
    /// A number around those of so many entries.
    int id(int entries) { return below(entries + 3) - 1; }
    /// A time as visit.xml has it, or nearly so.
    QString timeText();
    /// Valid or not, with seconds; few enough minutes that some are equal.
    QDateTime time();

private:
    std::mt19937 m_engine;
};

QString textOf(const char *utf8);

#endif
