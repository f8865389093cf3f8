#ifndef VLM_EXPORT_H
#define VLM_EXPORT_H

// Marks what the shared library shows to its callers; everything else in it is hidden.
#define VLM_EXPORT __attribute__((visibility("default")))

// Marks the helpers inside an exported class that are none of its callers' business.
#define VLM_HIDDEN __attribute__((visibility("hidden")))

#endif
