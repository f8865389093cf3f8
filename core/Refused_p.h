#ifndef CORE_REFUSED_P_H
#define CORE_REFUSED_P_H

#include <QtCore/QString>

namespace vlm
{
// Logs the message as a warning when the condition holds, and returns the condition. Only whole
// messages, so that a search for the text finds the call.
bool refused(bool condition, const char *format, ...) __attribute__((format(printf, 2, 3)));

inline bool isNullOrEmpty(const QString *text) { return !text || text->isEmpty(); }
} // namespace vlm

#endif
