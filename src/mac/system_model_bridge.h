#pragma once

// The C face of system_language_model.swift, which is compiled only where the
// SDK has FoundationModels; the build defines SODAM_SYSTEM_MODEL exactly then.
// Any thread may call these; the reply comes on the main thread.

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

// The text of the reply, or NULL when the model failed; `context` comes back
// as it was given.
typedef void (*SJModelReply)(void* context, const char* text);

// The system is version 26 or later and its model is ready.
bool SJSystemModelAvailable(void);
// One question in a fresh session that knows only the instructions.
void SJSystemModelRespond(const char* instructions, const char* question, void* context,
                          SJModelReply reply);

#ifdef __cplusplus
}
#endif
