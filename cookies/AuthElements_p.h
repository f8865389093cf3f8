#ifndef COOKIES_AUTHELEMENTS_P_H
#define COOKIES_AUTHELEMENTS_P_H

// The document of the credentials.
namespace vlm
{
namespace auth
{
const char kFileName[] = "authinfo.xml";
const char kRoot[] = "authentication";
const char kEntry[] = "authInfo";
const char kHostName[] = "hostName";
const char kPortNum[] = "portNum";
const char kAuthType[] = "authType";
const char kUser[] = "user";
const char kPasswd[] = "passwd";

// The words of kAuthType, by code.
const char *const kAuthTypes[] = {"basic", "digest", "NTLM"};
const int kAuthTypeCount = 3;

// Bytes of UTF-8.
const int kMaxHostBytes = 256;
const int kMaxPortBytes = 5;
// Before they are encoded.
const int kMaxSecretBytes = 272;
} // namespace auth
} // namespace vlm

#endif
