// The row sets of the fake host.
#pragma once

#include "tests/support/fake/State.h"

namespace zul::test {

/// A row set over the rows of a statement or table, standing on the first. What is added to the settings goes
/// into the state's map.
ComPtr<IRecordset> makeRecordset(StatePtr state, std::string source, Rows rows);

} // namespace zul::test
