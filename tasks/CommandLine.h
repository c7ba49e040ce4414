#pragma once

namespace kora {

struct Subscription;

/// Notes the options that an entry subscribes to while it lives, so that they can be taken back when it fails: the
/// callbacks go with its library.
class CommandLineAttempt {
public:
    CommandLineAttempt();
    ~CommandLineAttempt();
    CommandLineAttempt(const CommandLineAttempt&) = delete;
    CommandLineAttempt& operator=(const CommandLineAttempt&) = delete;

    void undo();
};

/// Drops every subscription.
void commandLineStop();

}  // namespace kora
