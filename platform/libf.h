#ifndef LIBF_H
#define LIBF_H

/**
 * @file
 * The functions that the settings library takes from the device's platform library. On the device
 * they come with the system; on a host platform/host/ stands in for them. A program that defines
 * one of them itself takes precedence over either library.
 */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Appends one line to the system log. text is zero-terminated and stays the caller's, as does
 * value. The settings library always passes 1, 1, 255 and a value of 0xFFFF.
 */
int LIBF_WriteSystemLog(int, int, int, const char *text, unsigned short *value);

/** Attaches the calling process to the device's shared memory. */
int LIBF_AttachMemory(void);

/** Installs the device's signal handler for the signals in the mask. */
int LIBF_SetSignalHandler01(int);

/** Tells the device whether the signal information of an API call is left unsaved. */
int LIBF_SetApiSignalInfoNonSave(int);

#ifdef __cplusplus
}
#endif

#endif
