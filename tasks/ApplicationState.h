#pragma once

namespace kora {

/// What start-up, the loop and the end of the process know of each other.
struct ApplicationState {
    bool prepareOnce;  ///< the one-time preparation step has been asked for
    bool started;      ///< start-up got as far as the modules, and the end has not come
    bool ending;       ///< a quit request was agreed to
    int staying;       ///< how many want the loop to go on although nothing is left to do
    int exitCode;      ///< of the first failure; 0 while there was none
};

extern ApplicationState applicationState;

/// Sets the exit code for a module that failed.
void failureNote();
/// Reports an exception that reached an outer entry: nobody is there to catch it further up.
void exceptionNote(const char* text);

}  // namespace kora
