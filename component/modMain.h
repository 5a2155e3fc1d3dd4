// The procedures that load, show, query and unload the component's windows. They stand on top of everything
// and know every window; the state they work on is the session's.
#pragma once

#include "session/ComponentObject.h"

#include <Zul_SQL.h>

#include <QString>

namespace zul {

/// Holds a new reference to the host's connection object, or to none.
void setConnessione(_SqlConnection* connection) noexcept;

void SetWhatToShow(bool showSendSms, bool showSendMail, bool showPushNotify) noexcept;
void SetWhatToSearch(bool searchBy_Ricorrenze, bool searchBy_Classificazioni) noexcept;

/// Makes the main form if there is none and hands it the object that is about to show it. A form left over
/// from an earlier showing is discarded first; one that is being shown is left alone.
void prepareForm(ComponentObject* object);

/// Shows the main form modally and returns when the operator closes it. The form stays loaded, hidden, so
/// that its choice can be read; isFormLoaded is set only then.
/// @return false after an error, which is logged; error 5 while the form is being shown already
bool funShowForm(bool ShowTouchMode) noexcept;
/// What the main form left when it was closed; empty when it is not loaded.
QString funGetFormChoice() noexcept;
/// Unloads the main form if it is loaded.
void funDiscardForm() noexcept;

/// Shows the options dialog modally. @return true after it was shown
bool funShowOptionsForm(bool ShowTouchMode) noexcept;
/// The choice of the options dialog, which is loaded if it is not.
QString funGetOptionsFormChoice() noexcept;
void funDiscardOptionsForm() noexcept;

/// Loads the send-error check, shows it modally and unloads it. @throws whatever it fails with
void showCheckSendError();

/// Whether a window was ever shown: the component's library stays loaded then.
bool anyWindowShown() noexcept;

} // namespace zul
