#ifndef VLMC_OLPURL_H
#define VLMC_OLPURL_H

#include "core/VLM_Export.h"

class QUrl;

/// Distinguishes pages that the device itself serves from pages of the network. Reentrant.
class VLM_EXPORT VLMC_OlpUrl
{
public:
    /**
     * True if the host of url is local: it begins with "127.0.0.", is "localhost", equals firstHost
     * (considered only if mode is 1) or equals secondHost. Case never matters. The hosts are
     * zero-terminated ASCII names that stay the caller's; null and empty ones are skipped.
     */
    static bool IsOlpContents(const QUrl &url, char mode, char *firstHost, char *secondHost);
};

#endif
