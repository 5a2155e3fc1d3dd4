#pragma once
// A host that stands on a sound one and breaks the contract in one way.
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/Variant.h"

#include <Zul_SQL.h>

#include <servprov.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace zul::host::check {

enum class Fault
{
    None,
    NoConnection,          ///< Connection: S_OK and null
    ConnectionNotCounted,  ///< handed out without a reference
    ConnectionLeaks,       ///< handed out with two
    NoRowSet,              ///< OpenRecordset: S_OK and null
    RowSetLeaks,           ///< a row set with two references
    RowSetKeepsConnection, ///< a reference to the connection that is never given back
    AnswersEverything,     ///< a row set has every interface
    RefusesWithoutNull,    ///< the connection object refuses, and leaves a pointer
    EofNeverTrue,
    EofIsOne, ///< a truth of C, and none of automation's
    NullAsEmpty,
    NullAsZero,
    EmptyTextAsNull,
    TextCutAt255,
    CodePage, ///< what is not Latin comes as "?"
    IndexNotTaken,
    NamesInOneCase,
    ClosedGoesOn,
    CloseTwiceFails,
    LostWhenAnotherRuns, ///< a row set ends when a statement runs
    UpdateChangesNothing,
    AddNewChangesNothing,
    UpdateHidesFailures,
    NoDescription,
    FailuresSucceed,
    BrokenByFailure, ///< nothing works behind the first failure
    RowsNotCounted,
    RollbackKeeps,
    LookupNull,     ///< NULL where there is no row
    LookupSucceeds, ///< also where the field is missing
    BooleanAsNumber,
    BooleanIsOne,
    DateAsText,
    MoneyAsCurrency,
    StrayVariant, ///< a value of a type that nobody knows, at no place
    ServiceNull,  ///< QueryService: S_OK and null
    ServiceFails, ///< QueryService: a failure that does not say that there is none
    ReaderLosesARow,
    ReaderGivesStrayTexts,
    NoTable,            ///< refuses CREATE TABLE
    DecimalTakenAsNull, ///< a VT_DECIMAL that is set
    TakesTwoStatements, ///< runs what stands in front of the semicolon, and what stands behind it
    // What one row set does, that of the check of NULL.
    Exits, ///< ends the process, and says that all is well
    Crashes,
    Hangs,
    RowSetGoesEarly, ///< every row set, with a reference left
    Throws,
    ThrowsInClose,
    ThrowsInRelease ///< of the last reference
};

/// What the objects of one host share.
struct BrokenState
{
    Fault fault = Fault::None;
    bool failed = false;
    int statements = 0; ///< run so far
    std::vector<ComPtr<IUnknown>> leaked;
};

/// The connection object over a sound one.
ComPtr<_SqlConnection> makeBrokenHost(_SqlConnection* sound, const std::shared_ptr<BrokenState>& state);

} // namespace zul::host::check
