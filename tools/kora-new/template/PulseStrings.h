#pragma once

// The module's string table: a row for each text that people see. The resource compiler reads this file too, so there
// is nothing here that it does not know.
#define PULSE_STRING_DONE 1
#define PULSE_STRING_COUNT 2

#define PULSE_STRINGS(S)             \
    S(PULSE_STRING_DONE, "%d beats") \
    S(PULSE_STRING_COUNT, "-puls needs a number of beats from 1 to %d")
