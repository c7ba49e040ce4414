#include "net/ErrorTexts.h"

namespace kora {

namespace {

struct Row {
    unsigned short code;
    const char* text;
};

// Misspelled words stay: these texts are looked for in logs.
constexpr Row rows[] = {
    // the library's own
    {4096, "Unable to create NetBIOS callback window"},
    {4097, "Unable to dynamically connect to NetBIOS Post routine."},
    {4098, "Unable to dynamically connect to NetBIOSCall in kernel"},
    {4099, "Unable to allocate Page Locked Memory"},
    {4100, "Groupname already exists."},
    // the driver's
    {0, "Successful completion, good return."},
    {1, "Invalid buffer length."},
    {3, "Invalid command."},
    {5, "Command timed-out."},
    {6, "Incomplete received message."},
    {7, "Local No-Ack command failed."},
    {8, "Invalid local session number."},
    {9, "No resource available."},
    {10, "Session has been closed."},
    {11, "Command was canceled."},
    {13, "Duplicate name in local NetBIOS name table."},
    {14, "NetBIOS name table full."},
    {15, "Name has active sessions and is now deregistered."},
    {17, "NetBIOS local session table full."},
    {18, "Session open rejected because no listen is outstanding."},
    {19, "Illegal name number."},
    {20, "Cannot find name called or no answer."},
    {21, "Name not found, illegal, or deregisterd."},
    {22, "Name in use by remote adapter."},
    {23, "Name deleted."},
    {24, "Session ended abnormally."},
    {25, "Name conflict detected."},
    {26, "Incompatible remote device (PC Network)."},
    {33, "Interface busy."},
    {34, "Too many commands outstanding."},
    {35, "Invalid number for LANA."},
    {36, "Command completed while cancel occurring."},
    {37, "Reserved name specified for Add Group Name."},
    {38, "Command not valid to cancel."},
    {48, "Name defined by another process (OS/2 Extended Edition only)."},
    {52, "NetBIOS environment not defined (OS/2 Extended Edition only)."},
    {53, "Required operating system resources (OS/2 Extended Edition only)."},
    {54, "Maximum applications exceeded (OS/2 Extended Edition only)."},
    {55, "No SAP's available for NetBIOS (OS/2 Extended Edition only)."},
    {56, "Requested resources not available (OS/2 Extended Edition only)."},
    {64, "System error (PC Network)."},
    {65, "Hot carrier from a remote adapter detected (PC Network)."},
    {66, "Hot carrier from this adapter detected (PC Network)."},
    {67, "No carrier detected (PC Network)."},
    {78, "Status bit 12, 14, or 15 on longer than one minute (Token-Ring)."},
    {79, "One or more of status bits 8-11 on (Token Ring)."},
    {80, "Adapter Malfunction--call the plumber!"},
    {247, "Error on implicit DIR.INITIALIZE."},
    {248, "Error on implicit DIR.OPEN.ADAPTER."},
    {249, "IBM LAN Support Program internal error."},
    {250, "Adapter check."},
    {251, "NetBIOS program not loaded in PC."},
    {252, "DIR.OPEN.ADAPTER or DLC.OPEN.SAP failed--check parameters."},
    {253, "Unexpected adapter close."},
    {255, "Command-pending status."},
};

}  // namespace

const char* netErrorText(unsigned short code) {
    for (const Row& row : rows)
        if (row.code == code) return row.text;
    return "unknown";
}

}  // namespace kora
