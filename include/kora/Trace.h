#pragma once

#include <kora/Kora.h>

KORA_API void TraceInit();
KORA_API void TraceData(unsigned long word);
KORA_API void TraceCode(unsigned long code);
KORA_API unsigned long LastTrace();
KORA_API void TraceNote(const char* text);
KORA_API void TraceNote(const char* text, const char* second, bool force);
KORA_API void TraceNoteDate(const char* text, bool force);
KORA_API void TraceDump(const char* text, bool force);
KORA_API void TraceException(const char* text);
KORA_API void TraceRecordSet(bool on);
KORA_API bool TraceRecordGet();
KORA_API void TraceToFileSet(bool on);
KORA_API bool TraceToFileGet();
KORA_API void TraceTriggerSet(unsigned long code);
KORA_API unsigned long TraceTriggerGet();
