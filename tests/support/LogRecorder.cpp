#include "tests/support/LogRecorder.h"

#include "core/VLMG_Debug.h"

#include <QtCore/QString>

#include <cstdarg>
#include <cstdio>

namespace
{
LogLines &recorded()
{
    // Never destroyed: stores log while the process exits.
    static LogLines *const lines = new LogLines;
    return *lines;
}

QByteArray formatted(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int size = vsnprintf(nullptr, 0, format, again);
    va_end(again);
    QByteArray text(size + 1, '\0');
    vsnprintf(text.data(), size_t(text.size()), format, arguments);
    text.chop(1);
    return text;
}
} // namespace

// Takes the place of the library's own.
__attribute__((visibility("default"))) void VLMG_DebugPrint(unsigned long level, const char *format,
                                                            ...)
{
    if (!format || !*format) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    const LogLine line = {level, formatted(format, arguments)};
    va_end(arguments);
    recorded().append(line);
}

LogLines takeLog()
{
    LogLines lines;
    lines.swap(recorded());
    return lines;
}

QByteArray toText(const LogLines &lines)
{
    QByteArray text;
    for (const LogLine &line : lines) {
        text += QByteArray::number(qulonglong(line.level)) + ' ' + line.text + '\n';
    }
    return text;
}

QByteArray loggedText() { return toText(takeLog()); }

QByteArray hexAddress(const void *pointer)
{
    return "0x" + QByteArray::number(uint(reinterpret_cast<quintptr>(pointer)), 16).toUpper();
}
