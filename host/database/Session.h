#pragma once
// What the connection object, its row sets and the services share: one open database.
#include "automation/ErrorInfo.h"
#include "base/Utf8.h"
#include "host/database/Engine.h"
#include "host/database/Journal.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace zul::host {

/// Is told of a program that the component starts: the path in the platform's form and the parameter text.
using ProgramStarted = std::function<void(const std::string& path, const std::string& parameters)>;

/// How long the app's service is waited for.
struct AppPatience
{
    std::chrono::milliseconds answer{15'000};
    /// After so many messages in a row that were not answered in time, the others of a run fail at once; 0: never.
    int timeOutsInARow = 3;
};

struct Session
{
    // The engine goes last: nothing of the rest outlives it.
    std::unique_ptr<Engine> engine;
    Journal journal;
    std::string userName;
    std::string appUrl;
    AppPatience appPatience;
    ProgramStarted programStarted;
    bool startsPrograms = true;
};

using SessionPtr = std::shared_ptr<Session>;

/// Runs the body of a member that the component calls: an EngineError becomes its number with the driver's text
/// as the description, everything else what comGuard makes of it.
template <typename Body>
HRESULT hostGuard(std::u16string_view source, Body&& body) noexcept
{
    return comGuard(source, [&] {
        try {
            return body();
        } catch (const EngineError& error) {
            throw ComError(static_cast<HRESULT>(error.code()), utf16FromUtf8(error.what()), source);
        }
    });
}

/// Runs an operation and hands the text of its failure, empty when there is none, to `log` in both cases.
template <typename Operation, typename Log>
void journaled(Operation&& operation, Log&& log)
{
    try {
        operation();
    } catch (const std::exception& error) {
        log(std::string_view(error.what()));
        throw;
    }
    log(std::string_view());
}

} // namespace zul::host
