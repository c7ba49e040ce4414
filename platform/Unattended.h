#pragma once

/// What people are told, and taken to answer, where nobody can see a window.
namespace kora::platform {

/// Writes a line to standard error. Null is the empty line.
void tellUnattended(const char* text);

/// The default button of a Windows message-box style, as a Windows button id.
int defaultButton(unsigned style);

}  // namespace kora::platform
