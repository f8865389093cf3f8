#ifndef VLM_EXPORT_H
#define VLM_EXPORT_H

// Marks what the shared library exports; everything else in it is hidden.
#define VLM_EXPORT __attribute__((visibility("default")))

// Marks private helpers of an exported class, which are hidden.
#define VLM_HIDDEN __attribute__((visibility("hidden")))

#endif
