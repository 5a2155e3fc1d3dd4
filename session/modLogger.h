// The component's log file and the one way in which a procedure reports an error.
#pragma once

#include "hostlib/Error.h"

#include <QString>
#include <exception>
#include <utility>

namespace zul {

/// Appends one line to "Zul_Messagebuilder.log" beside the library, or where dataFile says: time stamp, application name,
/// procedure name, message text, detail text, separated by " | ". Line breaks inside a text are written as
/// blanks. The file is opened at the first entry and stays open until the component is unloaded; a new one can be
/// read by its owner alone. An entry that cannot be written is lost without a word and without waiting: an error
/// report must never become an error of the host.
///
/// @param owner the name of the form in which the error occurred, empty for modules and classes
/// @param flag 0 in every call
void LogError(const QString& procedureName, const QString& messageText, const QString& owner, long flag,
              const QString& detailText) noexcept;

/// A procedure that traps its errors: its name in the report, and the tail of the report's text, which says
/// where it stands. The two may differ, where the system's reports differ.
struct Procedure
{
    QString name;
    QString tail;  ///< ") in procedure NAME of Form frmSMS"
    QString owner; ///< the form's name, empty for modules and classes
};

/// The procedure NAME of a form: tail ") in procedure NAME of Form FORM".
Procedure formProcedure(const QString& form, const QString& name);
/// The procedure NAME of a module: tail ") in procedure NAME of Modulo MODULE".
Procedure moduleProcedure(const QString& module, const QString& name);
/// The procedure NAME of a class module: tail ") in procedure NAME of Modulo di classe CLASS".
Procedure classProcedure(const QString& className, const QString& name);

/// "Error " + number + " (" + description + tail.
QString errorText(const Error& error, const QString& tail);

/// Reports an error of a procedure to the log.
void report(const Procedure& procedure, const Error& error, const QString& detailText = {}) noexcept;

/// Whatever is being thrown, as the house's error. Call inside a catch block.
Error currentError() noexcept;

/// Runs the body of a procedure. An error ends it, goes to the log and leaves the default result; nothing
/// leaves the procedure as an exception.
template <class Result, class Body>
Result trapped(const Procedure& procedure, Result defaultResult, Body&& body) noexcept
{
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        report(procedure, currentError());
        return defaultResult;
    }
}

/// The same for a procedure without a result.
template <class Body>
void trapped(const Procedure& procedure, Body&& body) noexcept
{
    try {
        std::forward<Body>(body)();
    } catch (...) {
        report(procedure, currentError());
    }
}

} // namespace zul
