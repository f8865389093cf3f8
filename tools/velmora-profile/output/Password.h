#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_PASSWORD_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_PASSWORD_H

#include <QtCore/QByteArray>

namespace profile
{
// A password from standard input: its first line. False, and said so, when there is none that can
// be taken. A terminal is asked without echo, and gets it back also when Ctrl-C ends the tool
// meanwhile.
bool readSecret(const char *prompt, QByteArray *secret);
} // namespace profile

#endif
