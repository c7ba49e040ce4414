#include <kora/Test.h>

#include <iostream>

#include "PulseEvents.h"

// Runs the module as a host does, with a clock that stands still until told and nobody to answer.

namespace {

int failures = 0;

template <class Found, class Wanted>
void expect(const char* what, const Found& found, const Wanted& wanted) {
    if (found == wanted) return;
    std::cerr << what << " is " << found << ", and should be " << wanted << '\n';
    ++failures;
}

// The beats heard, and whether the last one was.
long heard = 0;
bool done = false;

bool pulseHeard(long, long, long, long events, long beats) {
    heard = beats;
    done = (static_cast<unsigned long>(events) & PulseDone) != 0;
    return true;  // and hear of the next one
}

void beatsAsOftenAsToldAndTellsOthers() {
    TestHost host;
    host.profile.Set({"[Pulse]", "Interval = 50"});
    host.ModuleAdd(KORA_MODULE_FILE);
    host.Start();
    expect("what fails at the start", host.Failures(), "");
    std::vector<IniFinding> findings;
    IniCheck(eIniMain, findings, /*unknownSections=*/true);
    expect("how many settings are unknown", findings.size(), 0u);

    const unsigned long module = TskKoraHandleGet("pulse");
    const auto getter = reinterpret_cast<PulseNotifyGetter>(TskKoraConnect(module, "pulse", kPulseNotifyGet));
    expect("the broadcasts are there", getter != nullptr, true);
    if (getter == nullptr) return;
    getter()->Attach(0, 0, pulseHeard, 0, PulseBeat | PulseDone);

    expect("the option is taken", host.CommandLine({"-puls", "3"}), true);
    host.Run(5, 10);
    expect("beats after 50 milliseconds", heard, 0);
    host.Run(1, 1);
    expect("beats after 51 milliseconds", heard, 1);
    host.Run(100, 10);
    expect("beats in the end", heard, 3);
    expect("the last was told as such", done, true);
    expect("how many messages there are", host.presenter.alerts.size(), 1u);
    if (!host.presenter.alerts.empty()) {
        expect("the message", host.presenter.alerts[0].text, "3 beats");
    }

    getter()->Detach(0, 0, pulseHeard, 0, PulseBeat | PulseDone);
    expect("the exit code", host.End(), 0);
    expect("what fails in the end", host.Failures(), "");
    expect("the state is kept", host.places.State().find("Beats = 3") != std::string::npos, true);
}

void complainsOfWhatIsNoCount() {
    for (const char* count : {"", "0", "1001", "3x", "many"}) {
        TestHost host;
        host.ModuleAdd(KORA_MODULE_FILE);
        host.Start();
        host.CommandLine({"-puls", count});
        host.Run(10, 1000);
        expect("how many messages there are", host.presenter.alerts.size(), 1u);
        if (!host.presenter.alerts.empty()) {
            expect(count, host.presenter.alerts[0].text, "-puls needs a number of beats from 1 to 1000");
        }
        expect("the exit code", host.End(), 1);
    }
}

}  // namespace

int main() {
    beatsAsOftenAsToldAndTellsOthers();
    complainsOfWhatIsNoCount();
    if (failures == 0) std::cout << "all is well\n";
    return failures == 0 ? 0 : 1;
}
