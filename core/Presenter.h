#pragma once

#include <kora/Err.h>

namespace kora {

/// Who asks and tells the user at the moment: the host's presenter, or the platform's own. Never null.
MsgPresenter& presenter();

}  // namespace kora
