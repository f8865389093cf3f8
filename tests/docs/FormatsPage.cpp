#include "tests/docs/FormatsPage.h"

#include "tests/support/Files.h"

QByteArray formatsPage() { return readFile(QString::fromUtf8(FILE_FORMATS_PAGE)); }

QByteArray section(const QByteArray &title)
{
    const QByteArray page = formatsPage();
    const int start = int(page.indexOf("\n## " + title + "\n"));
    if (start < 0) {
        return QByteArray();
    }
    const int end = int(page.indexOf("\n## ", start + 1));
    return page.mid(start, end < 0 ? -1 : end - start);
}

QByteArray sample(const QByteArray &title)
{
    const QByteArray text = section(title);
    const int fence = int(text.indexOf("\n```"));
    const int start = int(text.indexOf('\n', fence + 1)) + 1;
    const int end = int(text.indexOf("\n```\n", start)) + 1;
    return fence < 0 || end < start ? QByteArray() : text.mid(start, end - start);
}
