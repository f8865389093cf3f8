#include "tests/identical/Script.h"

#include <cstdlib>
#include <ctime>

namespace
{
const int kStepsOfPart = 25;
}

const char kWorldTime[] = "UTC";
const char kSummerTime[] = "CET-1CEST,M3.5.0,M10.5.0/3";

void setZone(const char *zone)
{
    setenv("TZ", zone, 1);
    tzset();
}

void playDocuments(const char *fileName, const QByteArray &document,
                   const std::function<void(QString &folder)> &load)
{
    const QList<Document> variants = variantsOf(document);
    for (const Document &variant : variants) {
        const Part part(QByteArray(fileName) + ", " + variant.name);
        QString folder = newFolder();
        writeFile(folder + QString::fromLatin1(fileName), variant.bytes);
        load(folder);
        showFolder(folder);
        showLog();
    }
}

void playSteps(const char *store, int parts, const std::function<void()> &step,
               const std::function<void(QString &folder)> &save)
{
    for (int i = 0; i < parts; ++i) {
        const QByteArray first = QByteArray::number(i * kStepsOfPart + 1);
        {
            const Part part(QByteArray(store) + ", changes from " + first);
            for (int j = 0; j < kStepsOfPart; ++j) {
                step();
            }
            showLog();
        }
        const Part part(QByteArray(store) + ", saved after changes from " + first);
        QString folder = newFolder();
        save(folder);
        showFolder(folder);
        showLog();
    }
}
