#include "geometry/PreferredUnit.h"

#include <kora/Ini.h>
#include <kora/Utl.h>

#include "platform/Platform.h"
#include "strings/Bytes.h"

using namespace kora;

namespace {

constexpr int kInchText = 1279;
constexpr int kCmText = 1280;

struct PreferredUnit {
    eUtlUnit unit = UtlUnitPreferred;  // not asked for yet
    char text[512] = "";
};

constinit PreferredUnit preferred;

eUtlUnit readUnit() {
    CString value;
    const bool found = IniGetString(eIniMain, "System", "LengthUnit", value, /*unquote=*/false);
    return !found || equalIgnoringCase(value, "inch") ? UtlUnitInch : UtlUnitCm;
}

}  // namespace

void kora::preferredUnitForget() { preferred.unit = UtlUnitPreferred; }

eUtlUnit UtlGetPreferredUnit() {
    if (preferred.unit == UtlUnitPreferred) preferred.unit = readUnit();
    return preferred.unit;
}

const char* UtlGetPreferredUnitText() {
    const int id = UtlGetPreferredUnit() == UtlUnitInch ? kInchText : kCmText;
    if (platform::moduleString(platform::ownModule(), id, preferred.text, sizeof preferred.text) <= 0)
        preferred.text[0] = '\0';
    return preferred.text;
}
