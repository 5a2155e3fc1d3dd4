#pragma once
// The way of a push notification to the app's service: one signed HTTP POST.
//
// Body: a JSON object with "slug", "email" (null: everybody), "text" and "date" (ISO 8601, local time with its
// offset). Header "X-Signature": the HMAC-SHA256 of the body's bytes under the salt, in lower-case hex.
#include "host/database/Session.h"

#include <chrono>
#include <optional>
#include <string>

namespace zul::host {

struct AppMessage
{
    std::string slug;
    std::optional<std::string> email; ///< nothing: to everybody
    std::string text;
    double when = 0.0; ///< an automation date, local time
};

/// The body, UTF-8.
std::string appMessageBody(const AppMessage& message);

/// The signature of a body.
std::string appSignature(const std::string& body, const std::string& salt);

/// Posts the message and waits for the answer, as long as the patience says. The result is empty when the service answered
/// 2xx, else a text for the operator that says why not. Redirections are not followed: a signed message goes
/// where it was addressed. Only http and https.
/// @param timedOut when given, says whether the time was up
std::string postAppMessage(const std::string& url, const std::string& salt, const AppMessage& message,
                           std::chrono::milliseconds patience = AppPatience().answer,
                           bool* timedOut = nullptr);

} // namespace zul::host
