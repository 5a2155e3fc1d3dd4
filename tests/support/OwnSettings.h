// The user's settings of a test: none of the user who runs it, and none of the test before.
#pragma once

#include <QString>

namespace zul::test {

/// From now on the process's settings of the user are empty and kept where no other process looks; `folder` is an
/// empty one that lasts as long as they do.
void useOwnSettings(const QString& folder);

/// From now on nothing can be stored in them, until they are begun anew.
void loseOwnSettings();

} // namespace zul::test
