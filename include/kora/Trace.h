#pragma once

#include <kora/Kora.h>

/// @file
/// The trace: a ring of the last 1024 words in memory, written to a log only when something went wrong.
///
/// Every module drops 32-bit words into the ring all the time; that costs a flag test, a store and an increment. The
/// ring goes to the log when a fault is filed (ERR), when an exception is reported, when a chosen trigger code passes,
/// or at exit, and only while tracing to file is on (or the call forces it).
///
/// The log is "ts_error_log.txt" in the user's documents folder, else in the program's own. It is opened for each
/// write, in append mode, and closed right after; a log that cannot be written is passed over in silence. Lines end in
/// a line feed on every platform.

/// Empties the ring: all words, the count and the last code are zero. The switches and the trigger stay.
KORA_API void TraceInit();

/// Puts a data word into the ring while recording is on. Bits beyond 32 are cut off.
KORA_API void TraceData(unsigned long word);

/// Puts a trace code into the ring while recording is on and remembers it as the last one. A code equal to the trigger
/// dumps the ring (without text, not forced).
KORA_API void TraceCode(unsigned long code);

/// The last value given to TraceCode() while recording was on; 0 after TraceInit().
KORA_API unsigned long LastTrace();

/// Appends @p text as a line of the log while tracing to file is on.
KORA_API void TraceNote(const char* text);

/// Appends one line, @p text directly followed by @p second, while tracing to file is on or when @p force is true.
/// Null texts count as empty.
KORA_API void TraceNote(const char* text, const char* second, bool force);

/// As TraceNote(), with the local date and time in front: "Nov 05, 2026 - 19:12:30 - Hello!".
KORA_API void TraceNoteDate(const char* text, bool force);

/// Writes the whole ring to the log while tracing to file is on or when @p force is true:
///
///     $STARTDUMP(406) text              the count of words ever written, in hexadecimal; the text if there is one
///     0000abcd 00000000 ...             1024 words, oldest first, eight to a line
///     $ENDDUMP
///
/// Slots that were never written print as 00000000. docs/trace.md shows how codes are read.
KORA_API void TraceDump(const char* text, bool force);

/// Reports an internal exception: dumps the ring with @p text (not forced), then shows the user "Internal Error (...)"
/// with the text (null: "Undefined exception") and the last trace code, in the presenter's error dialog. A message that
/// the user asked not to see again, the code included, is not shown again by this process. Recording is off while the
/// dialog stands and on afterwards, even if it had been off before.
KORA_API void TraceException(const char* text);

/// Recording into the ring; on at start.
KORA_API void TraceRecordSet(bool on);
KORA_API bool TraceRecordGet();  ///< whether that is on

/// Tracing to file: lets notes and dumps write without being forced; off at start.
KORA_API void TraceToFileSet(bool on);
KORA_API bool TraceToFileGet();  ///< whether that is on

/// The code that dumps the ring when TraceCode() sees it; 0 at start, and TraceCode(0) dumps then.
KORA_API void TraceTriggerSet(unsigned long code);
KORA_API unsigned long TraceTriggerGet();  ///< the code that was set; 0 for none
