#ifndef CORE_STATICINIT_P_H
#define CORE_STATICINIT_P_H

// The library's static initialisers run in this order, whatever order its objects are linked in:
// first the text codec, which everything else may need, then the log, then the rest. Numbers up
// to 100 belong to the compiler.
#define VLM_INIT_CODEC 1001
#define VLM_INIT_LOG 1002

#define VLM_INIT_PRIORITY(priority) __attribute__((init_priority(priority)))

#endif
