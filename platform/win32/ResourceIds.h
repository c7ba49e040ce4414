#pragma once

// The numbers that the resource script and the sources share; read by the resource compiler too.

#define KORA_DIALOG_ERROR 1612
#define KORA_DIALOG_ERROR_ADVANCED 1616
#define KORA_DIALOG_CONTINUE 1618

#define KORA_CONTROL_TEXT 1224
#define KORA_CONTROL_ICON 1225
#define KORA_CONTROL_SUPPRESS 1206
#define KORA_CONTROL_ADVANCED 1207
#define KORA_CONTROL_CONTINUE 1219
#define KORA_CONTROL_STOP 1220
#define KORA_CONTROL_TRACE_TO_FILE 1671
