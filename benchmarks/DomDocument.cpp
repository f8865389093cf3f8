// The history in a QDomDocument, which keeps all of it, as the stores do.

#include "benchmarks/measure.h"
#include "benchmarks/profile.h"

#include <QtCore/QFile>
#include <QtXml/QDomDocument>

namespace
{
QDomDocument domOf(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file)) {
        qFatal("cannot read %s", qPrintable(path));
    }
    return document;
}

class DomLoad
{
public:
    static const int kCallsPerTurn = 1;

    explicit DomLoad(int entries) { writeHistory(m_profile, entries); }

    void operator()() { benchmark::DoNotOptimize(domOf(m_profile.file("visit.xml"))); }

private:
    Profile m_profile;
};

class DomSave
{
public:
    static const int kCallsPerTurn = 1;

    explicit DomSave(int entries)
    {
        writeHistory(m_profile, entries);
        m_document = domOf(m_profile.file("visit.xml"));
    }

    void operator()()
    {
        QFile file(m_profile.file("saved.xml"));
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("cannot write %s", qPrintable(file.fileName()));
        }
        file.write(m_document.toByteArray(4));
    }

private:
    Profile m_profile;
    QDomDocument m_document;
};

BENCHMARK(alone<DomLoad>)->Name("DomDocument_load")->Apply(allSizes);
BENCHMARK(alone<DomSave>)->Name("DomDocument_save")->Apply(allSizes);
} // namespace
